// The component list document: built, counted and read back.

#include <benchmark/benchmark.h>

#include "benchmarks/Sets.h"
#include "sets/ComponentList.h"

namespace {

using benchmarks::pathOf;

std::vector<Pyxis::FileSpecifier> filesOf(int count) {
    std::vector<Pyxis::FileSpecifier> files;
    for (const std::string& path : benchmarks::paths(count)) {
        files.push_back(Pyxis::fileSpecifier(path));
    }
    return files;
}

void buildList(benchmark::State& state) {
    const auto files = filesOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        kest::ComponentListBuilder list;
        for (const Pyxis::FileSpecifier& file : files) {
            list.append(file, 0);
        }
        benchmark::DoNotOptimize(list.specifier());
    }
}

void countList(benchmark::State& state) {
    const auto set = fakes::setOf(benchmarks::paths(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        benchmark::DoNotOptimize(kest::countComponents(set));
    }
}

void readList(benchmark::State& state) {
    const auto set = fakes::setOf(benchmarks::paths(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        const kest::ComponentList list(set);
        for (int i = 0; i < list.count(); ++i) {
            benchmark::DoNotOptimize(list.get(i));
        }
    }
}

/// One more component, by the function that hosts call: it reads and writes the whole document.
void appendToList(benchmark::State& state) {
    const auto set = fakes::setOf(benchmarks::paths(static_cast<int>(state.range(0))));
    const auto added = Pyxis::fileSpecifier(pathOf(0));
    for (auto _ : state) {
        Pyxis::FileSpecifier longer = set;
        kest::appendComponent(added, 0, longer);
        benchmark::DoNotOptimize(longer);
    }
}

BENCHMARK(buildList)->Name("list/build")->RangeMultiplier(10)->Range(10, 100000);
BENCHMARK(countList)->Name("list/count")->RangeMultiplier(10)->Range(10, 100000);
BENCHMARK(readList)->Name("list/read")->RangeMultiplier(10)->Range(10, 100000);
BENCHMARK(appendToList)->Name("list/append")->RangeMultiplier(10)->Range(10, 100000);

}  // namespace
