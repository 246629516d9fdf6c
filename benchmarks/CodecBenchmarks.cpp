// Every operation of the set codec over components that cost nothing to open.

#include <benchmark/benchmark.h>

#include "benchmarks/Sets.h"
#include "reader/KestMultispectralReadFile.h"

namespace {

using benchmarks::FakeSet;

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(10)->Range(10, 10000);
}

/// Runs the action on a set of so many components.
template <typename Action>
void onSet(benchmark::State& state, Action action) {
    FakeSet set(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        action(set);
        set.forget();
    }
}

template <typename Action>
void onOpenedSet(benchmark::State& state, Action action) {
    FakeSet set(static_cast<int>(state.range(0)));
    const auto image = set.open();
    for (auto _ : state) {
        action(set, *image);
        set.forget();
    }
}

void isDecodable(benchmark::State& state) {
    onSet(state, [](FakeSet& set) {
        benchmark::DoNotOptimize(set.codec().isDecodableFile(set.specifier(), nullptr));
    });
}

void purify(benchmark::State& state) {
    onSet(state, [](FakeSet& set) {
        Pyxis::FileSpecifier pure = set.specifier();
        benchmark::DoNotOptimize(set.codec().purifyFileSet(pure));
    });
}

void openImage(benchmark::State& state) {
    onSet(state, [](FakeSet& set) { benchmark::DoNotOptimize(set.open()); });
}

void cloneImage(benchmark::State& state) {
    onOpenedSet(state, [](FakeSet& set, Pyxis::ReadImageFileInterface& image) {
        delete set.codec().cloneOpenImage(&image);
    });
}

void openFrames(benchmark::State& state) {
    onOpenedSet(state, [](FakeSet& /*set*/, Pyxis::ReadImageFileInterface& image) {
        for (int i = 0; i < image.getNumFrames(); ++i) {
            delete image.openFrame(i);
        }
    });
}

void frameProperties(benchmark::State& state) {
    onOpenedSet(state, [](FakeSet& /*set*/, Pyxis::ReadImageFileInterface& image) {
        for (int i = 0; i < image.getNumFrames(); ++i) {
            const std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame(image.openFrame(i));
            delete frame->getProperties();
        }
    });
}

void bandQueries(benchmark::State& state) {
    onOpenedSet(state, [](FakeSet& /*set*/, Pyxis::ReadImageFileInterface& image) {
        const auto& set = dynamic_cast<const KestMultispectralReadFile&>(image);
        Pyxis::StringBuffer name;
        Pyxis::FileSpecifier file;
        int frame = 0;
        for (int i = 0; i < set.getNumFrames(); ++i) {
            set.getBandName(i, name);
            set.getBandBucketName(i, name);
            set.getBandComponent(i, file, frame);
        }
    });
}

BENCHMARK(isDecodable)->Name("codec/isDecodableFile")->Apply(sizes);
BENCHMARK(purify)->Name("codec/purifyFileSet")->Apply(sizes);
BENCHMARK(openImage)->Name("codec/openImage")->Apply(sizes);
BENCHMARK(cloneImage)->Name("codec/cloneOpenImage")->Apply(sizes);
BENCHMARK(openFrames)->Name("codec/openFrame-all")->Apply(sizes);
BENCHMARK(frameProperties)->Name("codec/getProperties-all")->Apply(sizes);
BENCHMARK(bandQueries)->Name("codec/band-queries-all")->Apply(sizes);

/// The cost that a set's frame adds to an operation of its component's frame.
void forwardDirect(benchmark::State& state) {
    const FakeSet set(10);
    const Pyxis::FileSpecifier file = Pyxis::fileSpecifier(benchmarks::pathOf(0));
    const std::unique_ptr<Pyxis::ReadImageFileInterface> image(set.components().openImage(&file));
    const std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame(image->openFrame(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(frame->frameOp6());
    }
}

void forwardThroughSet(benchmark::State& state) {
    const FakeSet set(10);
    const auto image = set.open();
    const std::unique_ptr<Pyxis::ReadImageFileFrameInterface> frame(image->openFrame(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(frame->frameOp6());
    }
}

BENCHMARK(forwardDirect)->Name("forward/component");
BENCHMARK(forwardThroughSet)->Name("forward/set");

}  // namespace
