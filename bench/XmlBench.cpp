#include <benchmark/benchmark.h>
#include <expat.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlDocument.h"
#include "libCommon/xml/XmlWriter.h"

// The document model beside the bare parser library with empty element handlers, on the same bytes.

namespace {

constexpr int DEVICES = 8700;  // with 15 properties each: 10 MB
constexpr int TINY = 0;

/// A machine of so many devices; none of them gives a document of one short element.
std::string makeDocument(int devices) {
    if (devices == TINY) {
        return "<device type=\"Fan\" name=\"Fan 1\"/>";
    }
    std::string text = "<inventory-check check-names=\"true\">\n";
    for (int device = 0; device < devices; ++device) {
        const std::string number = std::to_string(device);
        text += "    <device type=\"Storage\" name=\"^Disk " + number + "$\" hwlocator=\"pci/0000:" + number + "\">\n";
        for (int property = 0; property < 15; ++property) {
            text += "        <property key=\"Property " + std::to_string(property) +
                    "\" type=\"STRING\" value=\"^value " + number + "$\"/>\n";
        }
        text += "    </device>\n";
    }
    return text + "</inventory-check>\n";
}

void countBytes(benchmark::State& state, const std::string& text) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void onStart(void*, const char*, const char**) {}
void onEnd(void*, const char*) {}

bool parseBare(std::string_view text, std::size_t chunk) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(parser, onStart, onEnd);
    bool isGood = true;
    while (isGood && !text.empty()) {
        const std::string_view piece = text.substr(0, chunk);
        text.remove_prefix(piece.size());
        isGood = XML_Parse(parser, piece.data(), static_cast<int>(piece.size()), text.empty()) == XML_STATUS_OK;
    }
    XML_ParserFree(parser);
    return isGood;
}

void bareWhole(benchmark::State& state) {
    const std::string text = makeDocument(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseBare(text, text.size()));
    }
    countBytes(state, text);
}

void bareInChunks(benchmark::State& state) {
    const std::string text = makeDocument(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseBare(text, std::size_t{64} << 10));
    }
    countBytes(state, text);
}

void parseUtf8(benchmark::State& state) {
    const std::string text = makeDocument(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        vrx::XmlDocument document;
        benchmark::DoNotOptimize(document.ParseUtf8(text));
    }
    countBytes(state, text);
}

void parseUtf16(benchmark::State& state) {
    const std::string text = makeDocument(static_cast<int>(state.range(0)));
    const vrx::String wide = vrx::String::UTF8Decode(text);
    for (auto _ : state) {
        vrx::XmlDocument document;
        benchmark::DoNotOptimize(document.Parse(wide));
    }
    countBytes(state, text);
}

void writeUtf8(benchmark::State& state) {
    const std::string text = makeDocument(static_cast<int>(state.range(0)));
    vrx::XmlDocument document;
    document.ParseUtf8(text);
    for (auto _ : state) {
        std::string out;
        vrx::writeFormatted(document.Top(), 0, out);
        benchmark::DoNotOptimize(out.data());
    }
    countBytes(state, text);
}

void writeUtf16(benchmark::State& state) {
    const std::string text = makeDocument(static_cast<int>(state.range(0)));
    vrx::XmlDocument document;
    document.ParseUtf8(text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(document.toString());
    }
    countBytes(state, text);
}

BENCHMARK(bareWhole)->Arg(TINY)->Arg(DEVICES);
BENCHMARK(bareInChunks)->Arg(DEVICES);
BENCHMARK(parseUtf8)->Arg(TINY)->Arg(DEVICES);
BENCHMARK(parseUtf16)->Arg(TINY)->Arg(DEVICES);
BENCHMARK(writeUtf8)->Arg(DEVICES);
BENCHMARK(writeUtf16)->Arg(DEVICES);

}  // namespace

BENCHMARK_MAIN();
