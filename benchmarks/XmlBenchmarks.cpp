// Parsing and writing the same component list with this tree and with two others, and what
// programs do with a tree, as it grows.

#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <pugixml.hpp>

#include "benchmarks/Sets.h"
#include "sets/xml/XmlDocument.h"

namespace {

namespace xml = kest::xml;

using Sizes = benchmark::internal::Benchmark;

void sizes(Sizes* benchmark) {
    benchmark->RangeMultiplier(10)->Range(10, 100000);
}

int components(const benchmark::State& state) {
    return static_cast<int>(state.range(0));
}

/// The parser drops the last byte of its input, as hosts pass texts with their terminator.
std::string terminated(std::string text) {
    text.push_back('\0');
    return text;
}

void countBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) *
                            static_cast<std::int64_t>(state.iterations()));
}

void parseOurs(benchmark::State& state) {
    const std::string text = terminated(benchmarks::listText(components(state)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(xml::Document::parse(text));
    }
    countBytes(state, text.size());
}

void parsePugixml(benchmark::State& state) {
    const std::string text = benchmarks::listText(components(state));
    for (auto _ : state) {
        pugi::xml_document document;
        if (!document.load_buffer(text.data(), text.size())) {
            state.SkipWithError("not parsed");
        }
    }
    countBytes(state, text.size());
}

/// libxml2 counts in int and frees by a function of its own.
class LibXmlDocument {
  public:
    explicit LibXmlDocument(const std::string& text)
        : document_(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                  XML_PARSE_HUGE)) {}
    LibXmlDocument(const LibXmlDocument&) = delete;
    LibXmlDocument& operator=(const LibXmlDocument&) = delete;
    ~LibXmlDocument() { xmlFreeDoc(document_); }
    xmlDocPtr get() const { return document_; }

  private:
    xmlDocPtr document_;
};

void parseLibXml(benchmark::State& state) {
    const std::string text = benchmarks::listText(components(state));
    for (auto _ : state) {
        const LibXmlDocument document(text);
        if (document.get() == nullptr) {
            state.SkipWithError("not parsed");
        }
    }
    countBytes(state, text.size());
}

void writeOurs(benchmark::State& state) {
    const auto document = xml::Document::parse(terminated(benchmarks::listText(components(state))));
    std::size_t size = 0;
    for (auto _ : state) {
        size = document->toText(document->root()).size();
    }
    countBytes(state, size);
}

struct StringWriter : pugi::xml_writer {
    std::string text;
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }
};

void writePugixml(benchmark::State& state) {
    const std::string text = benchmarks::listText(components(state));
    pugi::xml_document document;
    document.load_buffer(text.data(), text.size());
    std::size_t size = 0;
    for (auto _ : state) {
        StringWriter writer;
        document.save(writer, "", pugi::format_raw | pugi::format_no_declaration);
        size = writer.text.size();
    }
    countBytes(state, size);
}

void writeLibXml(benchmark::State& state) {
    const LibXmlDocument document(benchmarks::listText(components(state)));
    int size = 0;
    for (auto _ : state) {
        xmlChar* text = nullptr;
        xmlDocDumpMemory(document.get(), &text, &size);
        xmlFree(text);
    }
    countBytes(state, static_cast<std::size_t>(size));
}

xml::Element* addChildren(xml::Document& document, int count) {
    xml::Element* first = nullptr;
    for (int i = 0; i < count; ++i) {
        xml::Element* added =
            document.addChild(document.root(), "component", static_cast<std::size_t>(i));
        first = first == nullptr ? added : first;
    }
    return first;
}

void add(benchmark::State& state) {
    for (auto _ : state) {
        xml::Document document("root");
        benchmark::DoNotOptimize(addChildren(document, components(state)));
    }
}

/// A different name for every child.
void addNames(benchmark::State& state) {
    const auto names = benchmarks::paths(components(state));
    for (auto _ : state) {
        xml::Document document("root");
        for (const std::string& name : names) {
            benchmark::DoNotOptimize(document.addChild(document.root(), name, 0));
        }
    }
}

void freeTree(benchmark::State& state) {
    const std::string text = terminated(benchmarks::listText(components(state)));
    for (auto _ : state) {
        state.PauseTiming();
        auto document = xml::Document::parse(text);
        state.ResumeTiming();
        document.reset();
    }
}

BENCHMARK(parseOurs)->Name("parse/ours")->Apply(sizes);
BENCHMARK(parsePugixml)->Name("parse/pugixml")->Apply(sizes);
BENCHMARK(parseLibXml)->Name("parse/libxml2")->Apply(sizes);
BENCHMARK(writeOurs)->Name("write/ours")->Apply(sizes);
BENCHMARK(writePugixml)->Name("write/pugixml")->Apply(sizes);
BENCHMARK(writeLibXml)->Name("write/libxml2")->Apply(sizes);
BENCHMARK(add)->Name("tree/add")->Apply(sizes);
// Fewer names than a hundred need no index.
BENCHMARK(addNames)->Name("tree/add-names")->RangeMultiplier(10)->Range(100, 100000);
// Each tree must be built before it is freed, which takes much longer.
BENCHMARK(freeTree)->Name("tree/free")->RangeMultiplier(10)->Range(1000, 100000)->Iterations(10);

}  // namespace
