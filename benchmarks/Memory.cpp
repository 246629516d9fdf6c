// The heap memory of the parts of an opened set, as JSON.

#include <malloc.h>

#include <cstdio>

#include "benchmarks/Sets.h"
#include "reader/KestMultispectralReadFile.h"
#include "sets/xml/XmlDocument.h"

namespace {

constexpr int kComponents = 10000;

/// Allocated bytes that were not freed.
std::size_t heap() {
    const struct mallinfo2 state = mallinfo2();
    return state.uordblks + state.hblkhd;
}

/// Bytes that the action's result holds, for each of so many parts.
template <typename Action>
double bytesEach(int parts, Action action) {
    const std::size_t before = heap();
    const auto kept = action();
    return static_cast<double>(heap() - before) / parts;
}

double bandRecord(const KestMultispectralReadFile& image) {
    return bytesEach(kComponents, [&image] {
        std::vector<kest::BandRecord> records;
        records.reserve(kComponents);
        for (int i = 0; i < kComponents; ++i) {
            records.push_back(image.band(i));
        }
        return records;
    });
}

using Frames = std::vector<std::unique_ptr<Pyxis::ReadImageFileFrameInterface>>;

/// A frame of the set without the component's image and frame that it holds.
double frame(benchmarks::FakeSet& set, KestMultispectralReadFile& image) {
    const double whole = bytesEach(kComponents, [&image] {
        Frames frames(kComponents);
        for (int i = 0; i < kComponents; ++i) {
            frames[static_cast<std::size_t>(i)].reset(image.openFrame(i));
        }
        return frames;
    });
    set.forget();
    const double component = bytesEach(kComponents, [&set] {
        std::pair<std::vector<std::unique_ptr<Pyxis::ReadImageFileInterface>>, Frames> opened;
        for (int i = 0; i < kComponents; ++i) {
            const auto file = Pyxis::fileSpecifier(benchmarks::pathOf(i));
            opened.first.emplace_back(set.components().openImage(&file));
            opened.second.emplace_back(opened.first.back()->openFrame(0));
        }
        return opened;
    });
    return whole - component;
}

double elementNode() {
    return bytesEach(kComponents, [] {
        auto document = std::make_unique<kest::xml::Document>("root");
        for (int i = 0; i < kComponents; ++i) {
            document->addChild(document->root(), "e", static_cast<std::size_t>(i));
        }
        return document;
    });
}

double listedComponent() {
    const std::string text = benchmarks::listText(kComponents);
    return bytesEach(kComponents, [&text] { return kest::xml::Document::parse(text); });
}

}  // namespace

int main() {
    benchmarks::FakeSet set(kComponents);
    const double whole = bytesEach(kComponents, [&set] {
        auto image = set.open();
        set.forget();
        return image;
    });
    const auto opened = set.open();
    auto& image = dynamic_cast<KestMultispectralReadFile&>(*opened);
    set.forget();
    std::printf(
        "{\"opened set, a component\": %.0f, \"band record\": %.0f, \"frame\": %.0f, "
        "\"element node\": %.0f, \"parsed list, a component\": %.0f, "
        "\"text of a list, a component\": %.0f}\n",
        whole, bandRecord(image), frame(set, image), elementNode(), listedComponent(),
        static_cast<double>(benchmarks::listText(kComponents).size()) / kComponents);
}
