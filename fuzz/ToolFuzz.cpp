// Runs every command of the tool in this process, on a folder of small files.

#include <cpl_minixml.h>
#include <sanitizer/allocator_interface.h>
#include <sys/resource.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/Input.h"
#include "tool/CommandLine.h"

namespace {

using fuzz::require;

/// Limits of a run: those of the tool, 1 s and 256 MB, with room for the sanitizers.
constexpr double kMostSeconds = 5;
constexpr std::ptrdiff_t kMostBytes = 256 << 20;

constexpr const char* kNames[] = {
    "b1.tif",         "b2.tif",     "b3.tif",  "b1.ntf",   "b2.ntf",
    "b1.tfw",         "header.fst", "set.xml", "list.txt", "L71195025_02520010730_B10.TIF",
    "b1.tif.aux.xml", "a.zip",      "a.tar",
};

using Arguments = std::vector<const char*>;
const Arguments kCommands[] = {
    {"info", "."},
    {"info", "--json", "."},
    {"check", "."},
    {"list", "."},
    {"list", "--purify", "."},
    {"vrt", ".", "-o", "out/set.vrt", "--overwrite"},
    {"export", ".", "-o", "out/set.tif", "--overwrite"},
    // Small, since the threads of a picture contend for the counters of the fuzzer.
    {"quicklook", ".", "-o", "out/set.png", "--overwrite", "--size", "128"},
    {"stac", ".", "-o", "out/item.json", "--overwrite", "--datetime", "2020-01-01"},
    {"info", "set.xml"},
    {"check", "set.xml"},
    {"list", "set.xml"},
    {"vrt", "set.xml", "-o", "out/set.vrt", "--overwrite"},
    {"export", "--cog", "set.xml", "-o", "out/set.tif", "--overwrite"},
    {"quicklook", "set.xml", "-o", "out/set.png", "--overwrite", "--size", "128"},
    {"info", "@list.txt"},
    {"scenes", "a.zip", "a.tar"},
    {"info", "a.zip"},
    {"list", "a.tar"},
    {"list", "--purify", "@list.txt"},
    {"scenes", "."},
    {"scenes", "--json", "."},
    {"products", "--check", "set.xml"},
    {"products", "--json", "--products", "set.xml"},
};

std::atomic<std::ptrdiff_t> held = 0;

void countMemory(const volatile void* /*block*/, std::size_t size) {
    held += static_cast<std::ptrdiff_t>(size);
    require(held < kMostBytes, "memory stays within its bound");
}

void countFreed(const volatile void* block) {
    if (block != nullptr) {
        held -= static_cast<std::ptrdiff_t>(
            __sanitizer_get_allocated_size(const_cast<const void*>(block)));
    }
}

/// A temporary folder for the tool to work in.
class Folder {
  public:
    Folder() { require(mkdtemp(path_.data()) != nullptr, "a folder"); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { std::filesystem::remove_all(path_); }

    const std::string& path() const { return path_; }

    void clear() const {
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            std::filesystem::remove_all(entry);
        }
    }

  private:
    std::string path_ = "/dev/shm/kestms-fuzz-XXXXXX";
};

/// Changes the working directory for its lifetime; the fuzzer needs its own back.
class WorkingIn {
  public:
    explicit WorkingIn(const std::string& folder) : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    WorkingIn(const WorkingIn&) = delete;
    WorkingIn& operator=(const WorkingIn&) = delete;
    ~WorkingIn() { std::filesystem::current_path(before_); }

  private:
    std::filesystem::path before_;
};

/// Writes the files of an input: for each the index of its name, two bytes of length, its content.
void writeFiles(std::string_view bytes) {
    while (bytes.size() > 3) {
        const auto at = [&bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
        const char* name = kNames[at(0) % std::size(kNames)];
        const std::string_view content = bytes.substr(3, at(1) + 256U * at(2));
        std::ofstream(name, std::ios::binary) << content;
        bytes.remove_prefix(3 + content.size());
    }
}

double processorSeconds() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

/// Whether a terminal can show a text as it is.
bool isTame(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) {
        return c == '\n' || (static_cast<unsigned char>(c) >= ' ' && c != '\x7f');
    });
}

void runTool(const Arguments& arguments) {
    Arguments words = {"kestms", "--language", "en"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    const double start = processorSeconds();
    const int code = kestms::run(static_cast<int>(words.size()), words.data(), in, out, err);
    require(processorSeconds() - start < kMostSeconds, "time stays within its bound");
    require(code >= 0 && code <= 4, "the outcome is foreseen");
    require(isTame(err.str()), "messages are for a terminal");
    const std::string command = arguments.front();
    require(command == "list" || isTame(out.str()), "answers are for a terminal");
    if (code == 0 && arguments[1] == std::string("--json")) {
        require(nlohmann::json::accept(out.str()), "JSON is well-formed");
    }
    if (code == 0 && command == "vrt") {
        CPLXMLNode* tree = CPLParseXMLFile("out/set.vrt");
        require(tree != nullptr, "the virtual raster is well-formed");
        CPLDestroyXMLNode(tree);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    __sanitizer_install_malloc_and_free_hooks(countMemory, countFreed);
    return 0;
}

/// The first byte chooses the command.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) {
        return 0;
    }
    static const Folder folder;
    folder.clear();
    const WorkingIn there(folder.path());
    std::filesystem::create_directory("out");
    writeFiles({reinterpret_cast<const char*>(data) + 1, size - 1});
    runTool(kCommands[data[0] % std::size(kCommands)]);
    return 0;
}
