#include "JobObjects/frame/ElementTable.h"

#include <catch2/catch.hpp>

namespace {

constexpr QxVersion Second(2, 0);

struct Sample {
    QxString text = L"old";
    QxString markup = L"<m/>";
    std::int32_t number = 7;
    bool flag = true;
    QxDateTime date{40000};
    QxString log; ///< text that ReadOwn found

    void WriteOwn(QxXmlWriter& writer) const { writer.Raw(L"<own/>"); }
    void ReadOwn(QxXmlParser& parser, ChildReader& children) {
        log = children.Find(L"own") ? parser.GetChildData() : QxString(L"none");
    }
};

std::wstring Written(const Sample& sample, const QxVersion& version, ElementTable<Sample> table) {
    QxXmlWriter writer;
    WriteElements(writer, version, sample, table);
    return std::wstring(writer.Text());
}

Sample Read(std::wstring_view text, const QxVersion& version, ElementTable<Sample> table) {
    QxXmlParser parser;
    RecordReading::OpenRoot(parser, text, L"r");
    ChildReader children(parser);
    Sample sample;
    ReadElements(parser, children, version, sample, table);
    return sample;
}

constexpr Element<Sample> Plain[] = {
    {L"text", &Sample::text},     Element(L"markup", &Sample::markup).AsMarkup(),
    {L"number", &Sample::number}, {L"flag", &Sample::flag},
    {L"date", &Sample::date},
};

} // namespace

TEST_CASE("ElementTable_writes_each_kind_in_the_order_of_the_rows") {
    CHECK(Written(Sample(), Second, Plain) == L"<text>old</text><m/><number>7</number><flag>true</flag>"
                                              L"<date>2009-07-06T00:00:00</date>");
}

TEST_CASE("ElementTable_reads_each_kind_in_any_order") {
    const Sample read = Read(L"<r><date>2010-03-04T05:06:07</date><flag>0</flag><number>-3</number>"
                             L"<markup a=\"1\">x</markup><text>a&amp;b</text></r>",
                             Second, Plain);
    CHECK(read.text == L"a&b");
    CHECK(read.markup == L"<markup a=\"1\">x</markup>");
    CHECK(read.number == -3);
    CHECK_FALSE(read.flag);
    CHECK(read.date.Format() == L"2010-03-04T05:06:07");
}

TEST_CASE("ElementTable_resets_the_fields_of_missing_elements") {
    const Sample read = Read(L"<r/>", Second, Plain);
    CHECK(read.text.empty());
    CHECK(read.markup.empty());
    CHECK(read.number == 0);
    CHECK_FALSE(read.flag);
    CHECK(read.date.Value() == 0);
    CHECK(read.date.IsValid());
}

TEST_CASE("ElementTable_invalid_date_reads_as_zero") {
    CHECK(Read(L"<r><date>2010-02-30T00:00:00</date></r>", Second, Plain).date.Value() == 0);
}

TEST_CASE("ElementTable_missing_element_keeps_the_field_if_its_row_requires_it") {
    static constexpr Element<Sample> rows[] = {
        Element(L"number", &Sample::number).WhenMissing(Missing::Kept),
        Element(L"flag", &Sample::flag).WhenMissing(Missing::Kept),
    };
    CHECK(Read(L"<r/>", Second, rows).number == 7);
    CHECK(Read(L"<r/>", Second, rows).flag);
    CHECK(Read(L"<r><number/></r>", Second, rows).number == 0);
}

TEST_CASE("ElementTable_raises_numbers_to_their_minimum") {
    static constexpr Element<Sample> rows[] = {Element(L"number", &Sample::number).AtLeast(1)};
    CHECK(Read(L"<r><number>-5</number></r>", Second, rows).number == 1);
    CHECK(Read(L"<r><number>5</number></r>", Second, rows).number == 5);
    CHECK(Read(L"<r/>", Second, rows).number == 1);
}

TEST_CASE("ElementTable_element_exists_from_its_first_to_before_its_end_version") {
    static constexpr Element<Sample> rows[] = {
        Element(L"text", &Sample::text).Since(Second),
        Element(L"number", &Sample::number).Until(Second),
    };
    const QxVersion below(1, 99);
    CHECK(Written(Sample(), below, rows) == L"<number>7</number>");
    CHECK(Written(Sample(), Second, rows) == L"<text>old</text>");
    const std::wstring_view both = L"<r><text>new</text><number>8</number></r>";
    CHECK(Read(both, below, rows).text == L"old");
    CHECK(Read(both, below, rows).number == 8);
    CHECK(Read(both, Second, rows).text == L"new");
    CHECK(Read(both, Second, rows).number == 7);
}

TEST_CASE("ElementTable_version_without_the_element_resets_the_field_if_its_row_requires_it") {
    static constexpr Element<Sample> rows[] = {
        Element(L"text", &Sample::text).Since(Second).WhenMissing(Missing::ResetInAnyForm)};
    CHECK(Read(L"<r><text>new</text></r>", QxVersion(1, 0), rows).text.empty());
    CHECK(Read(L"<r><text>new</text></r>", Second, rows).text == L"new");
    CHECK(Read(L"<r/>", Second, rows).text.empty());
}

TEST_CASE("ElementTable_calls_the_functions_of_a_row_in_its_place") {
    static constexpr Element<Sample> rows[] = {
        {L"number", &Sample::number}, {&Sample::WriteOwn, &Sample::ReadOwn}, {L"text", &Sample::text}};
    CHECK(Written(Sample(), Second, rows) == L"<number>7</number><own/><text>old</text>");
    CHECK(Read(L"<r><number>1</number><own>x</own><text/></r>", Second, rows).log == L"x");
    CHECK(Read(L"<r/>", Second, rows).log == L"none");
}

TEST_CASE("ElementTable_rows_may_have_only_a_writer_or_a_reader") {
    static constexpr Element<Sample> rows[] = {{&Sample::WriteOwn, nullptr}, {nullptr, &Sample::ReadOwn}};
    CHECK(Written(Sample(), Second, rows) == L"<own/>");
    CHECK(Read(L"<r><own>y</own></r>", Second, rows).log == L"y");
}
