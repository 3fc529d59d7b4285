#include "AllocationCount.h"
#include "Peers.h"
#include "Rows.h"

#include "common/xml/QxXmlParser.h"
#include "common/xml/QxXmlWriter.h"

namespace {

constexpr std::size_t Megabyte = 1'000'000;
constexpr int LongRepetitions = 15; // a third of a second each

std::string ParseName(std::size_t megabytes) {
    return "parse copy lines of " + std::to_string(megabytes) + " MB";
}

void AddMemoryRow(Table& table, std::size_t megabytes, const CopyLinesText& lines) {
    const AllocationCount count;
    QxXmlParser parser;
    Require(parser.SetDocument(lines.text), "a long document");
    const auto kept = static_cast<double>(count.Kept());
    const auto text = static_cast<double>(lines.text.size() * sizeof(wchar_t));
    const std::string work = "memory for " + std::to_string(megabytes) + " MB";
    table.Figure(work, "kept besides the text", (kept - text) / static_cast<double>(lines.elements), 36,
                 "bytes per element");
    table.Figure(work, "peak while parsing", static_cast<double>(count.Peak()) / kept, 1.05,
                 "times what is kept");
}

void AddParseRow(Table& table, std::size_t megabytes, double atMost, double keptAtMost) {
    const CopyLinesText lines = MakeCopyLines(megabytes * Megabyte);
    {
        QxXmlParser parser;
        Require(parser.SetDocument(lines.text) && parser.PositionCount() - 1 == lines.elements,
                "the number of elements that were parsed");
    }
    Require(PugiPeer::CountElements(lines.text) == lines.elements,
            "the number of elements that pugixml parsed");
    AddMemoryRow(table, megabytes, lines);
    std::vector<Goal> goals;
    if (atMost > 0)
        goals = {{"pugixml", atMost}, {"pugixml", keptAtMost, "parser used again"}};
    QxXmlParser kept;
    table.Time(ParseName(megabytes),
               {{"new parser",
                 [&lines] {
                     QxXmlParser parser;
                     Use(parser.SetDocument(lines.text));
                 }},
                {"parser used again", [&lines, &kept] { Use(kept.SetDocument(lines.text)); }},
                {"pugixml", [&lines] { Use(PugiPeer::Parse(lines.text)); }},
                {"RapidXML", [&lines] { Use(RapidPeer::Parse(lines.text)); }},
                {"plain copy of the text", [&lines] { Use(std::wstring(lines.text).size()); }}},
               goals, megabytes < 100 ? 0 : LongRepetitions);
}

std::size_t ReadAttributes(std::wstring_view text) {
    QxXmlParser parser;
    std::size_t length = 0;
    parser.SetDocument(text);
    parser.FindElement();
    while (parser.FindChildElement()) {
        for (const SoughtName& name : LineAttributes)
            length += parser.GetChildAttribute(name).size();
    }
    return length;
}

void AddAttributeRow(Table& table) {
    const CopyLinesText lines = MakeAttributes(Megabyte);
    Require(ReadAttributes(lines.text) == PugiPeer::ReadAttributes(lines.text) &&
                ReadAttributes(lines.text) == RapidPeer::ReadAttributes(lines.text),
            "the attributes that were read");
    table.Time("parse 1 MB and read four attributes per element by name",
               {{"parser", [&lines] { Use(ReadAttributes(lines.text)); }},
                {"pugixml", [&lines] { Use(PugiPeer::ReadAttributes(lines.text)); }},
                {"RapidXML", [&lines] { Use(RapidPeer::ReadAttributes(lines.text)); }}},
               {{"pugixml", 0.75}});
}

std::size_t Walk(QxXmlParser& parser) {
    std::size_t count = 0;
    parser.FindElement({}, true);
    while (parser.FindChildElement(L"CopyLine")) {
        ++count;
        parser.IntoElement();
        for (const SoughtName& name : LineElements)
            count += parser.FindChildElement(name) ? 1u : 0u;
        parser.OutOfElement();
    }
    return count;
}

void AddWalkRow(Table& table) {
    const CopyLinesText lines = MakeCopyLines(10 * Megabyte);
    QxXmlParser parser;
    parser.SetDocument(lines.text);
    const auto pugi = PugiPeer::Walker(lines.text);
    const auto rapid = RapidPeer::Walker(lines.text);
    Require(Walk(parser) == lines.elements - 1 && pugi() == lines.elements - 1 &&
                rapid() == lines.elements - 1,
            "the elements that were found");
    const auto elements = static_cast<double>(lines.elements);
    table.Time("walk all elements of 10 MB by name",
               {{"parser", [&parser] { Use(Walk(parser)); }, elements},
                {"pugixml", [&pugi] { Use(pugi()); }, elements},
                {"RapidXML", [&rapid] { Use(rapid()); }, elements}},
               {{"pugixml", 0.75}});
}

std::wstring Append(int count) {
    QxXmlParser parser;
    parser.AddElement(L"List");
    for (int i = 0; i < count; ++i)
        parser.AddChildElement(L"Item", L"some text value");
    return std::wstring(parser.GetDocument());
}

std::wstring WriteAtOnce(int count) {
    QxXmlWriter writer;
    writer.OpenStartTag(L"List");
    writer.CloseStartTag();
    for (int i = 0; i < count; ++i)
        writer.Element(L"Item", L"some text value");
    writer.EndTag(L"List");
    return std::wstring(writer.Text());
}

void AddAppendRow(Table& table, int count, double atMost) {
    Require(Append(count) == WriteAtOnce(count), "the text of appended children");
    std::vector<Goal> goals;
    if (atMost > 0)
        goals.push_back({"written at once", atMost});
    table.Time("append " + std::to_string(count) + " children",
               {{"one by one", [count] { Use(Append(count).size()); }},
                {"written at once", [count] { Use(WriteAtOnce(count).size()); }}},
               goals);
}

} // namespace

void AddLargeRows(Table& table) {
    AddAttributeRow(table);
    AddWalkRow(table);
    AddParseRow(table, 1, 0, 0);
    AddParseRow(table, 10, 0.82, 0.4);
    AddParseRow(table, 100, 0.9, 0.4);
    table.Compare("ten times the size", {ParseName(10), "new parser"}, {ParseName(1), "new parser"}, 12);
    table.Compare("ten times the size", {ParseName(100), "new parser"}, {ParseName(10), "new parser"}, 12);
    AddAppendRow(table, 10'000, 0);
    AddAppendRow(table, 100'000, 2.2);
    table.Compare("ten times the children", {"append 100000 children", "one by one"},
                  {"append 10000 children", "one by one"}, 12);
}
