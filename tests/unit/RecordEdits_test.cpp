#include "common/xml/QxXmlParser.h"
#include "tests/fuzz/RecordEdits.h"

#include <catch2/catch.hpp>

#include <set>
#include <string>

namespace {

/// Mutated bytes may be markup.
std::size_t WriteMarkup(unsigned char* bytes, std::size_t, std::size_t maxSize) {
    bytes[0] = '<';
    return maxSize;
}

} // namespace

TEST_CASE("RecordEdits_of_a_record_keep_it_parseable") {
    const std::string record =
        "<JobContents Version=\"4.0\"><JobCopyLines><CopyLine><PaperSize>A4</PaperSize><Sheets/>"
        "</CopyLine></JobCopyLines><JobPdl>PCL</JobPdl></JobContents>";
    std::set<std::string> texts;
    for (unsigned seed = 1; seed <= 500; ++seed) {
        RecordEdits edits(record, seed, WriteMarkup);
        for (int edit = 0; edit < 3; ++edit)
            REQUIRE(edits.Edit());
        REQUIRE(edits.Graft(record));
        QxXmlParser parser;
        INFO(edits.Text());
        REQUIRE(parser.SetDocument(std::wstring(edits.Text().begin(), edits.Text().end())));
        REQUIRE(parser.FindElement(L"JobContents"));
        texts.insert(edits.Text());
    }
    CHECK(texts.size() > 450);
}

TEST_CASE("RecordEdits_without_an_element_changes_nothing") {
    for (const char* const text : {"", "<", "<>", "text", "</a>", "<a>", "<!--a-->"}) {
        RecordEdits edits(text, 1, WriteMarkup);
        INFO(text);
        CHECK_FALSE(edits.Edit());
        CHECK_FALSE(edits.Graft("<a/>"));
        CHECK(edits.Text() == text);
    }
}
