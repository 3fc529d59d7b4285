// Eight shapes of documents: the time and the memory an element takes do not grow with the document.

#include "Allocations.h"

#include "common/QxXmlParser.h"

#include <catch2/catch.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <string>

#ifndef _WIN32
#include <time.h>
#endif

namespace {

/// A document is the opening, as many pieces as fit, the closings, each once a piece, and the end.
struct Shape {
    const char* name;
    const wchar_t* opening;
    const wchar_t* piece;
    const wchar_t* closing;
    const wchar_t* end;
    /// Elements in the piece, or what else the parser goes through one by one.
    std::size_t elements;
};

constexpr Shape Shapes[] = {
    {"siblings", L"<r>", L"<a>1</a>", L"", L"</r>", 1},
    {"depth", L"", L"<a>", L"</a>", L"", 1},
    {"one huge text", L"<r>", L"some text ", L"", L"</r>", 1},
    {"one huge attribute", L"<r a=\"", L"some text ", L"", L"\"/>", 1},
    {"attributes", L"<r", L" a=\"1\"", L"", L" b=\"2\"/>", 1},
    {"entities", L"<r>", L"&lt;&amp;", L"", L"</r>", 2},
    {"unknown elements", L"<PrintJob>", L"<x:Later n=\"1\"><y/></x:Later>\n", L"", L"</PrintJob>", 2},
    {"copy lines", L"<JobCopyLines>",
     L"<CopyLine><PaperSize>A4</PaperSize><PaperDimensions>2100,2970</PaperDimensions>"
     L"<Attributes>Simplex,B&amp;W</Attributes><Sheets>12</Sheets><PagesBW>12</PagesBW>"
     L"<PagesColor>0</PagesColor><PagesBlank>0</PagesBlank></CopyLine>",
     L"", L"</JobCopyLines>", 8},
};

constexpr std::size_t MegaByte = 1024 * 1024;

std::wstring MakeDocument(const Shape& shape, std::size_t bytes, std::size_t& elements) {
    const std::wstring_view piece = shape.piece, closing = shape.closing;
    const std::size_t pieces = bytes / sizeof(char16_t) / (piece.size() + closing.size());
    elements = pieces * shape.elements;
    std::wstring text = shape.opening;
    text.reserve(bytes / sizeof(char16_t) + 100);
    for (std::size_t at = 0; at < pieces; ++at)
        text += piece;
    for (std::size_t at = 0; at < pieces && !closing.empty(); ++at)
        text += closing;
    return text += shape.end;
}

double Now() {
#ifdef _WIN32
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
#else
    timespec time{}; // the thread's own time: other programs do not disturb
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
#endif
}

/// What one element takes.
struct Cost {
    double nanoseconds;
    double bytes;
};

/// Parses, and reads everything that the root and its children hold.
void ParseAndRead(QxXmlParser& parser, const std::wstring& text) {
    if (!parser.SetDocument(text))
        throw std::runtime_error("a shape does not parse");
    QxString value;
    parser.FindElement();
    parser.GetData();
    parser.FindAttribute(L"b", value);
    while (parser.FindChildElement())
        parser.GetChildData();
}

/// The best of three, each with a parser of its own.
Cost Measure(const Shape& shape, std::size_t bytes) {
    std::size_t elements = 0;
    const std::wstring text = MakeDocument(shape, bytes, elements);
    double best = std::numeric_limits<double>::max();
    std::size_t requested = 0;
    for (int attempt = 0; attempt < 3; ++attempt) {
        const std::size_t before = Allocations::BytesRequested();
        const double start = Now();
        {
            QxXmlParser parser;
            ParseAndRead(parser, text);
        }
        best = std::min(best, Now() - start);
        requested = Allocations::BytesRequested() - before;
    }
    const auto count = static_cast<double>(elements);
    return {best * 1e9 / count, static_cast<double>(requested) / count};
}

/// The largest document in megabytes: 4, or what the environment says.
std::size_t LargestSize() {
    const char* const size = std::getenv("SHAPES_MEGABYTES");
    return size ? std::max<std::size_t>(std::strtoul(size, nullptr, 10), 4) : 4;
}

} // namespace

TEST_CASE("XmlParser_time_and_memory_of_an_element_do_not_grow_with_the_document") {
    const Shape& shape = GENERATE(from_range(std::begin(Shapes), std::end(Shapes)));
    const bool print = LargestSize() > 4;

    for (int attempt = 1;; ++attempt) {
        const Cost first = Measure(shape, MegaByte);
        double slowest = 0, largest = 0;
        for (std::size_t size = 4; size <= LargestSize(); size *= 4) {
            const Cost cost = Measure(shape, size * MegaByte);
            slowest = std::max(slowest, cost.nanoseconds / first.nanoseconds);
            largest = std::max(largest, cost.bytes / first.bytes);
            if (print)
                std::printf("%-20s 1 MB: %7.1f ns %6.1f bytes an element; %2u MB: %7.1f ns %6.1f bytes\n",
                            shape.name, first.nanoseconds, first.bytes, static_cast<unsigned>(size),
                            cost.nanoseconds, cost.bytes);
        }
        INFO(shape.name << ", attempt " << attempt);
        CHECK(largest <= 1.25);
        if (slowest <= 2 || attempt == 5) {
            CHECK(slowest <= 2);
            break;
        }
    }
}
