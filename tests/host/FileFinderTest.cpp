#include <gtest/gtest.h>

#include "host/DirectoryFileFinder.h"
#include "tests/fakes/Resources.h"

namespace fs = std::filesystem;

TEST(FileFinderTest, LooksBesideTheBaseFileAndNowhereElse) {
    const fakes::TempFile place("finder", "");
    fs::remove(place.path());
    const fs::path directory = place.path();
    fs::create_directory(directory);
    const fs::path wanted = directory / "PO_1_Metadata.txt";
    std::ofstream(wanted) << "text";
    fs::create_directory(directory / "po_3_metadata.txt");
#if !defined(_WIN32)
    // Neither hides the file that differs in case.
    fs::create_directory(directory / "PO_1_METADATA.TXT");
    fs::create_symlink(directory / "nowhere", directory / "po_1_metadata.TXT");
#endif
    const std::pair<fs::path, bool> rows[] = {
        {"PO_1_Metadata.txt", true},
        {"po_1_metadata.TXT", true},
        {"elsewhere/PO_1_Metadata.txt", true},
        {"elsewhere/po_1_metadata.txt", true},
        {"PO_1_METADATA.TXT", true},
        {"po_2_metadata.txt", false},
        {"po_3_metadata.txt", false},
        {"elsewhere/", false},
        {"", false},
    };
    for (const auto& [name, isFound] : rows) {
        Pyxis::FileSpecifier file = Pyxis::fileSpecifier(name.string());
        const Pyxis::FileSpecifier base = Pyxis::fileSpecifier((directory / "a.tif").string());
        EXPECT_EQ(Pyxis::DirectoryFileFinder().findFile(nullptr, base, file, file), isFound)
            << name;
        const fs::path found = Pyxis::toUtf8(file.string());
        EXPECT_TRUE(isFound ? fs::equivalent(found, wanted) : found == name) << found;
    }
    fs::remove_all(directory);
}
