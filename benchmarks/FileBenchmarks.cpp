// Opening and reading real files through the set codec, compared with GDAL alone and with a virtual
// raster.

#include <benchmark/benchmark.h>
#include <gdal_priv.h>
#include <gdal_utils.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "benchmarks/Sets.h"
#include "host/codecs/StandardCodecs.h"

namespace {

/// The files of a set that make_files has made. Ends the program without them.
std::vector<std::string> filesOf(const std::string& set) {
    const std::string name = KEST_SAMPLES "/" + set + ".txt";
    std::ifstream list(name);
    std::vector<std::string> files;
    for (std::string path; std::getline(list, path);) {
        files.push_back(path);
    }
    if (files.empty() || !std::filesystem::exists(files.back())) {
        std::fprintf(stderr, "%s: no such samples; make_files makes them\n", name.c_str());
        std::exit(2);
    }
    return files;
}

std::vector<std::string> smallFiles(const benchmark::State& state) {
    return filesOf("small" + std::to_string(state.range(0)));
}

/// A host's calls for a new set.
void openSet(benchmark::State& state) {
    GDALAllRegister();
    const Pyxis::FileSpecifier set = fakes::setOf(smallFiles(state));
    for (auto _ : state) {
        const Pyxis::StandardCodecs components;
        const Pyxis::StandardCodecs::Operation operation;
        const KestMultispectralCodec codec;
        if (codec.isDecodableFile(set, nullptr) != Pyxis::FormatDecodability::Decodable) {
            state.SkipWithError("no set");
        }
        delete codec.openImage(&set);
    }
}

void openLoop(benchmark::State& state) {
    GDALAllRegister();
    const std::vector<std::string> files = smallFiles(state);
    for (auto _ : state) {
        for (const std::string& path : files) {
            const GDALDatasetUniquePtr dataset(GDALDataset::Open(path.c_str(), GDAL_OF_RASTER));
            benchmark::DoNotOptimize(dataset->GetRasterXSize());
        }
    }
}

void openVirtual(benchmark::State& state) {
    GDALAllRegister();
    const CPLStringList files = [&state] {
        CPLStringList list;
        for (const std::string& path : smallFiles(state)) {
            list.AddString(path.c_str());
        }
        return list;
    }();
    const char* const arguments[] = {"-separate", nullptr};
    GDALBuildVRTOptions* options = GDALBuildVRTOptionsNew(const_cast<char**>(arguments), nullptr);
    for (auto _ : state) {
        GDALClose(GDALBuildVRT("/vsimem/stack.vrt", files.size(), nullptr, files.List(), options,
                               nullptr));
        GDALClose(GDALOpen("/vsimem/stack.vrt", GA_ReadOnly));
    }
    GDALBuildVRTOptionsFree(options);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(10)->Range(10, 1000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(openSet)->Name("open/ours")->Apply(sizes);
BENCHMARK(openLoop)->Name("open/loop")->Apply(sizes);
BENCHMARK(openVirtual)->Name("open/vrt")->Apply(sizes);

constexpr int kRasterSize = 2048;

/// Windows of a size that walk over the raster.
class Windows {
  public:
    explicit Windows(int size) : size_(size) {}

    int size() const { return size_; }
    void* buffer() { return buffer_.get(); }
    std::size_t bytes() const {
        return static_cast<std::size_t>(size_) * static_cast<std::size_t>(size_) *
               sizeof(std::uint16_t);
    }
    /// Upper-left corner of the next window.
    std::array<int, 2> next() {
        const int room = kRasterSize - size_ + 1;
        step_ = (step_ + 1) % 64;
        return {step_ * 97 % room, step_ * 389 % room};
    }

  private:
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };

    int size_;
    int step_ = 0;
    // The same alignment for all, as it affects copying more than the caller does.
    std::unique_ptr<void, Free> buffer_{std::aligned_alloc(4096, bytes())};
};

bool readWindow(Pyxis::ReadImageFileFrameInterface& frame, int x, int y, Windows& windows) {
    Pyxis::PixelRequest request;
    request.x = x;
    request.y = y;
    request.width = request.height = windows.size();
    request.bufferWidth = request.bufferHeight = windows.size();
    request.buffer = windows.buffer();
    request.bufferBytes = windows.bytes();
    return frame.frameOp13(0, &request);
}

bool readWindow(GDALDataset& dataset, int x, int y, Windows& windows) {
    const int size = windows.size();
    return dataset.GetRasterBand(1)->RasterIO(GF_Read, x, y, size, size, windows.buffer(), size,
                                              size, GDT_UInt16, 0, 0, nullptr) == CE_None;
}

template <typename Source>
void readWindows(benchmark::State& state, Source& source) {
    Windows whole(kRasterSize);
    Windows windows(static_cast<int>(state.range(0)));
    bool read = readWindow(source, 0, 0, whole);  // into GDAL's cache
    for (auto _ : state) {
        const auto [x, y] = windows.next();
        read = readWindow(source, x, y, windows) && read;
    }
    if (!read) {
        state.SkipWithError("not read");
    }
}

void readThroughFrame(benchmark::State& state) {
    const Pyxis::StandardCodecs components;
    const KestMultispectralCodec codec;
    const Pyxis::FileSpecifier set = fakes::setOf(filesOf("large4"));
    const std::unique_ptr<Pyxis::ReadImageFileInterface> image(codec.openImage(&set));
    const std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame(image->openFrame(0));
    readWindows(state, *frame);
}

void readDirectly(benchmark::State& state) {
    GDALAllRegister();
    const GDALDatasetUniquePtr dataset(
        GDALDataset::Open(filesOf("large4").front().c_str(), GDAL_OF_RASTER));
    readWindows(state, *dataset);
}

void readThroughVirtual(benchmark::State& state) {
    GDALAllRegister();
    CPLStringList files;
    for (const std::string& path : filesOf("large4")) {
        files.AddString(path.c_str());
    }
    const char* const arguments[] = {"-separate", nullptr};
    GDALBuildVRTOptions* options = GDALBuildVRTOptionsNew(const_cast<char**>(arguments), nullptr);
    GDALClose(
        GDALBuildVRT("/vsimem/large.vrt", files.size(), nullptr, files.List(), options, nullptr));
    GDALBuildVRTOptionsFree(options);
    const GDALDatasetUniquePtr dataset(GDALDataset::Open("/vsimem/large.vrt", GDAL_OF_RASTER));
    readWindows(state, *dataset);
}

void windowSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(256)->Arg(kRasterSize)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(readThroughFrame)->Name("read/ours")->Apply(windowSizes);
BENCHMARK(readDirectly)->Name("read/gdal")->Apply(windowSizes);
BENCHMARK(readThroughVirtual)->Name("read/vrt")->Apply(windowSizes);

}  // namespace
