#include "common/QxException.h"
#include "common/xml/RecordReading.h"

#include <catch2/catch.hpp>

namespace {

/// A parser whose current element is the document's root.
struct Document {
    explicit Document(std::wstring_view text) {
        REQUIRE(parser.SetDocument(text));
        REQUIRE(parser.FindElement());
    }
    QxXmlParser parser;
};

} // namespace

TEST_CASE("ChildReader_reads_texts_numbers_and_flags") {
    Document document(L"<r><t>a&amp;b</t><n> -42x</n><p>7</p><f>TRUE</f><g>false</g></r>");
    ChildReader children(document.parser);
    CHECK(children.Text(L"t") == L"a&b");
    CHECK(children.Number(L"n") == -42);
    CHECK(children.PositiveNumber(L"p") == 7);
    CHECK(children.Flag(L"f"));
    CHECK_FALSE(children.Flag(L"g"));
}

TEST_CASE("ChildReader_missing_or_unusable_values_read_as_defaults") {
    Document document(L"<r><n>-1</n><e/></r>");
    ChildReader children(document.parser);
    CHECK(children.Text(L"t").empty());
    CHECK(children.Number(L"m") == 0);
    CHECK(children.PositiveNumber(L"n") == 0);
    CHECK_FALSE(children.Flag(L"f"));
    CHECK(children.Text(L"e").empty());
}

TEST_CASE("ChildReader_finds_children_in_any_order_and_the_first_of_duplicates") {
    Document document(L"<r><x>?</x><b>2</b><a>1</a><b>3</b><c>4</c><a>5</a><c>6</c></r>");
    ChildReader children(document.parser);
    CHECK(children.Number(L"c") == 4);
    CHECK(children.Number(L"missing") == 0);
    CHECK(children.Number(L"a") == 1);
    CHECK(children.Number(L"b") == 2);
    CHECK(children.Text(L"x") == L"?");
}

TEST_CASE("ChildReader_reading_in_document_order_finds_the_first_of_duplicates") {
    Document document(L"<r><a>1</a><a>2</a><b>3</b><a>4</a><c>5</c><b>6</b></r>");
    ChildReader children(document.parser);
    CHECK(children.Number(L"a") == 1);
    CHECK(children.Number(L"b") == 3);
    CHECK(children.Number(L"c") == 5);
    CHECK_FALSE(children.Find(L"d"));
}

TEST_CASE("ChildReader_resumes_after_the_parser_leaves_a_child") {
    Document document(L"<r><a>1</a><g><b>2</b><a>3</a></g><b>4</b></r>");
    ChildReader children(document.parser);
    CHECK(children.Number(L"a") == 1);
    REQUIRE(children.Find(L"g"));
    REQUIRE(document.parser.IntoElement());
    ChildReader inner(document.parser);
    CHECK(inner.Number(L"a") == 3);
    CHECK(inner.Number(L"b") == 2);
    REQUIRE(document.parser.OutOfElement());
    CHECK(children.Number(L"b") == 4);
}

TEST_CASE("ChildReader_failed_search_clears_the_current_child") {
    Document document(L"<r><a n=\"1\">1</a></r>");
    ChildReader children(document.parser);
    REQUIRE(children.Find(L"a"));
    CHECK_FALSE(children.Find(L"b"));
    CHECK(document.parser.GetChildTagName().empty());
    CHECK_FALSE(document.parser.IntoElement());
}

TEST_CASE("RecordReading_refuses_a_document_without_the_root") {
    QxXmlParser parser;
    CHECK_THROWS_AS(RecordReading::OpenRoot(parser, L"<a/>", L"b"), QxException);
    CHECK_THROWS_AS(RecordReading::OpenRoot(parser, L"", L"b"), QxException);
    RecordReading::OpenRoot(parser, L"<x:b/>", L"b");
    CHECK(parser.GetTagName() == L"x:b");
}
