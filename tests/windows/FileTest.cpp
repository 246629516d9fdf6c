#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>

#include "host/DirectoryFileFinder.h"
#include "platform/Platform.h"
#include "properties/KestMultispectralMetadataTextFileProperty.h"
#include "tests/windows/Modules.h"

namespace {

namespace fs = std::filesystem;

/// A directory outside every code page, with one file in it.
class FileTest : public testing::Test {
  protected:
    FileTest() {
        fs::create_directories(path_.parent_path());
        std::ofstream(path_, std::ios::binary) << "text";
    }
    ~FileTest() override { fs::remove_all(path_.parent_path()); }

    static bool isValid(const fs::path& path) {
        return KestMultispectralMetadataTextFileProperty(specifierOf(path)).isValid();
    }

    fs::path path_ = fs::temp_directory_path() / L"kest \u65e5\u672c \U0001F6F0" / L"m\u0151.txt";
};

/// Another process that holds a file open. It never runs: it inherits the handle and is ended.
class Holder {
  public:
    Holder(const fs::path& path, DWORD access, DWORD share) {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE file =
            CreateFileW(path.c_str(), access, share, &inherited, OPEN_EXISTING, 0, nullptr);
        EXPECT_NE(file, INVALID_HANDLE_VALUE);
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        std::wstring program = programDirectory() / L"windows_tests.exe";
        EXPECT_TRUE(CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, TRUE,
                                   CREATE_SUSPENDED, nullptr, nullptr, &startup, &process_));
        CloseHandle(file);
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;
    ~Holder() {
        TerminateProcess(process_.hProcess, 0);
        WaitForSingleObject(process_.hProcess, INFINITE);
        CloseHandle(process_.hThread);
        CloseHandle(process_.hProcess);
    }

  private:
    PROCESS_INFORMATION process_{};
};

TEST_F(FileTest, MetadataIsReadBesideReadersAndNotBesideWriters) {
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE;
    const struct {
        DWORD access, share;
        bool isReadable;
    } rows[] = {{GENERIC_READ, kShareAll, true},
                {GENERIC_WRITE, kShareAll, false},
                {GENERIC_READ, 0, false}};
    for (const auto& row : rows) {
        const Holder other(path_, row.access, row.share);
        EXPECT_EQ(isValid(path_), row.isReadable) << row.access << ' ' << row.share;
    }
    EXPECT_TRUE(isValid(path_));
}

TEST_F(FileTest, OnlyRegularFilesAreReadAndNobodyWritesMeanwhile) {
    for (const fs::path& other : {path_.parent_path(), path_ / "none", fs::path("NUL")}) {
        EXPECT_FALSE(isValid(other)) << other;
    }
    std::wstring slashes = path_;
    std::replace(slashes.begin(), slashes.end(), L'\\', L'/');
    const auto file = kest::platform::PlainFile::open(specifierOf(slashes).string());
    ASSERT_TRUE(file);
    EXPECT_FALSE(std::ofstream(path_, std::ios::app).is_open());
}

TEST_F(FileTest, TheHostFindsFilesBesideOthers) {
    Pyxis::FileSpecifier found;
    EXPECT_TRUE(Pyxis::DirectoryFileFinder().findFile(
        nullptr, specifierOf(path_.parent_path() / "a.tif"), specifierOf(path_.filename()), found));
    EXPECT_TRUE(isValid(fs::path(Pyxis::utf8ToWide(Pyxis::toUtf8(found.string())))));
}

TEST(PathTest, SplitsAsWindowsDoes) {
    using Path = std::u16string;
    const Path longName(300, u'n');
    const struct {
        Path path, name, extension;
    } rows[] = {
        {u"C:\\data\\po_1_red_0.tif", u"po_1_red_0", u".tif"},
        {u"C:/data.d/a.b.TIF", u"a.b", u".TIF"},
        {u"C:\\data/both\\B10", u"B10", u""},
        {u"C:\\data\\both/B10.", u"B10", u"."},
        {u"c:relative.ntf", u"relative", u".ntf"},
        {u"\\\\server\\share.x\\.fst", u"", u".fst"},
        {u"D:\\\u65e5\u672c\\\U0001F6F0\u0151.tif", u"\U0001F6F0\u0151", u".tif"},
        {u"C:\\data.d\\", u"", u""},
        {u"", u"", u""},
        {u"C:\\" + longName + u"." + longName, longName.substr(0, 255),
         u"." + longName.substr(0, 254)},
    };
    for (const auto& row : rows) {
        const auto [name, extension] = kest::platform::splitPathName(row.path);
        EXPECT_EQ(name, row.name) << fs::path(row.path);
        EXPECT_EQ(extension, row.extension) << fs::path(row.path);
    }
}

}  // namespace
