#include "Allocations.h"
#include "XmlDump.h"

#include "common/xml/QxXmlParser.h"

#include <catch2/catch.hpp>

#include <algorithm>
#include <chrono>
#include <functional>
#include <limits>
#include <string>

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#include <time.h>
#endif

namespace {

constexpr std::size_t SmallStack = 256 * 1024;

#ifdef _WIN32
DWORD WINAPI RunBody(void* body) {
    (*static_cast<const std::function<void()>*>(body))();
    return 0;
}
#else
void* RunBody(void* body) {
    (*static_cast<const std::function<void()>*>(body))();
    return nullptr;
}
#endif

/// Runs the body on a thread whose stack is too small for recursion by depth. The body must not assert.
void OnSmallStack(std::function<void()> body) {
#ifdef _WIN32
    const HANDLE thread =
        CreateThread(nullptr, SmallStack, RunBody, &body, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    REQUIRE(thread != nullptr);
    CHECK(WaitForSingleObject(thread, INFINITE) == WAIT_OBJECT_0);
    CloseHandle(thread);
#else
    pthread_attr_t attributes;
    REQUIRE(pthread_attr_init(&attributes) == 0);
    REQUIRE(pthread_attr_setstacksize(&attributes, SmallStack) == 0);
    pthread_t thread;
    REQUIRE(pthread_create(&thread, &attributes, RunBody, &body) == 0);
    REQUIRE(pthread_join(thread, nullptr) == 0);
    pthread_attr_destroy(&attributes);
#endif
}

std::wstring Repeated(std::wstring_view piece, std::size_t count) {
    std::wstring text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        text.append(piece);
    return text;
}

/// The thread's processor time where the system measures it finely, so that other programs do not disturb.
double Now() {
#ifdef _WIN32
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
#else
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
#endif
}

double Seconds(const std::function<void()>& body) {
    const double start = Now();
    body();
    return Now() - start;
}

/// Ten times the size takes ten times the time; quadratic time would take a hundred times. Retries, because
/// a busy machine distorts the measurement.
void CheckLinear(const std::function<void(std::size_t)>& body, std::size_t size) {
    double best = std::numeric_limits<double>::max();
    for (int attempt = 0; attempt < 10 && best >= 40; ++attempt) {
        const double once = Seconds([&] { body(size); });
        const double tenfold = Seconds([&] { body(10 * size); });
        best = std::min(best, tenfold / std::max(once, 0.001));
    }
    CHECK(best < 40);
}

} // namespace

TEST_CASE("XmlParser_million_nested_elements_need_no_stack") {
    constexpr std::size_t Depth = 1000000;
    std::wstring text = Repeated(L"<a>", Depth);
    text += Repeated(L"</a>", Depth);
    bool parsed = false, edited = false, parsedAgain = false, unclosedFails = false, unlinked = false;
    std::size_t count = 0, subDocument = 0;
    OnSmallStack([&] {
        {
            QxXmlParser parser;
            parsed = parser.SetDocument(text);
            count = parser.PositionCount();
            parser.FindChildElement();
            subDocument = parser.GetChildSubDocument().size();
            edited = parser.SetAttribute(L"b", L"1") && parser.AddChildElement(L"c");
            QxXmlParser again;
            parsedAgain = again.SetDocument(parser.GetDocument()) && FindBrokenPosition(again) == nullptr;
            unlinked = parser.SetData(L"x") && parser.GetDocument() == L"<a b=\"1\">x</a>";
        }
        QxXmlParser parser;
        unclosedFails = !parser.SetDocument(std::wstring_view(text).substr(0, 3 * Depth));
    });
    CHECK(parsed);
    CHECK(count == Depth + 1);
    CHECK(subDocument == 7 * Depth - 7);
    CHECK(edited);
    CHECK(parsedAgain);
    CHECK(unlinked);
    CHECK(unclosedFails);
}

TEST_CASE("XmlParser_parsing_takes_linear_time") {
    const wchar_t* const piece = GENERATE(L"<a/>", L"<a>x</a>", L"<a b=\"1\">", L"</a><a>", L"<!-- x -->",
                                          L"<?x?>", L"text ", L"<![CDATA[<]]>", L"<a></a \">\">");
    CheckLinear(
        [&](std::size_t count) {
            const std::wstring text = L"<r>" + Repeated(piece, count) + L"</r>";
            QxXmlParser parser;
            parser.SetDocument(text);
        },
        30000);
}

TEST_CASE("XmlParser_malformed_text_takes_linear_time") {
    const wchar_t* const piece =
        GENERATE(L"<!", L"<", L"<a>", L"<!-- ", L"<![CDATA[", L"<?", L"< ", L"<a b=\"", L"<a b=\">",
                 L"<a></a \"", L"</a>", L"-", L">", L"]]", L"<a><!-- -->", L"<a></a x");
    const wchar_t* const before = GENERATE(L"", L"<a>", L"<!--", L"<![CDATA[");
    CheckLinear(
        [&](std::size_t count) {
            const std::wstring text = before + Repeated(piece, count);
            QxXmlParser parser;
            parser.SetDocument(text);
        },
        20000);
}

TEST_CASE("XmlParser_reading_attributes_with_missing_quotes_takes_linear_time") {
    const wchar_t* const piece = GENERATE(L"<a b=\"></a>", L"<a b c=></a>", L"<a \"></a>");
    CheckLinear(
        [&](std::size_t count) {
            QxXmlParser parser;
            REQUIRE(parser.SetDocument(L"<r>" + Repeated(piece, count) + L"</r>"));
            QxString value;
            while (parser.FindChildElement())
                parser.FindChildAttribute(L"x", value);
        },
        10000);
}

TEST_CASE("XmlParser_building_by_appending_children_takes_linear_time") {
    CheckLinear(
        [&](std::size_t count) {
            QxXmlParser parser;
            parser.AddElement(L"r");
            for (std::size_t child = 0; child < count; ++child)
                parser.AddChildElement(L"child", L"data");
            CHECK(parser.GetDocument().size() == 7 + 19 * count);
        },
        10000);
}

TEST_CASE("XmlParser_large_text_needs_at_most_36_bytes_per_element_above_its_length") {
    constexpr std::size_t Count = 100000;
    const std::wstring text = L"<r>" + Repeated(GENERATE(L"<a/>", L"<b>12</b>"), Count - 1) + L"</r>";
    const std::size_t before = Allocations::BytesRequested();
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(text));
    const std::size_t bytes = Allocations::BytesRequested() - before;
    CHECK(parser.PositionCount() == Count + 1);
    CHECK(bytes <= text.size() * sizeof(wchar_t) + 36 * Count);
}

TEST_CASE("XmlParser_finds_elements_for_which_it_reserved_no_memory") {
    // Start tags with white space before the name are not counted beforehand.
    constexpr std::size_t count = 40'000;
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r>" + Repeated(L"< a/>", count) + L"</r>"));
    CHECK(parser.PositionCount() == count + 2);
    CHECK(FindBrokenPosition(parser) == nullptr);
}

TEST_CASE("XmlParser_reused_parser_keeps_its_buffers") {
    const std::wstring text = L"<r>" + Repeated(L"<a>1</a>", 100) + L"</r>";
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(text));
    const std::size_t before = Allocations::BytesRequested();
    REQUIRE(parser.SetDocument(text));
    CHECK(Allocations::BytesRequested() == before);
}

TEST_CASE("XmlParser_text_beyond_32_bit_offsets_fails") {
    // The length alone is refused, so the characters need not exist.
    const std::wstring_view tooLong(L"<a/>",
                                    static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()) + 1);
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<old/>"));
    CHECK_FALSE(parser.SetDocument(tooLong));
    CHECK(parser.PositionCount() == 1);
    CHECK(parser.GetDocument().empty());
    CHECK_FALSE(parser.FindElement());
    CHECK(parser.SetDocument(L"<a/>"));
}
