#include "Timing.h"

#include "common/QxXmlParser.h"
#include "common/QxXmlWriter.h"

#include <pugixml.hpp>

#include <cstdio>
#include <fstream>
#include <iterator>

namespace {

std::wstring ReadRecord() {
    std::ifstream file(TEST_DATA_FOLDER "/print_job_full.xml", std::ios::binary);
    Require(file.is_open(), "the record's file");
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return std::wstring(bytes.begin(), bytes.end());
}

bool Parse(pugi::xml_document& document, const std::wstring& text) {
    return bool(document.load_buffer(text.data(), text.size() * sizeof(wchar_t), pugi::parse_default,
                                     pugi::encoding_wchar));
}

/// Reads the data of every element below the current one; the lengths' sum.
std::size_t ReadAll(QxXmlParser& parser) {
    std::size_t total = 0;
    int depth = 0;
    for (;;) {
        if (parser.FindChildElement()) {
            total += parser.GetChildData().size();
            parser.IntoElement();
            ++depth;
        } else if (depth-- == 0) {
            return total;
        } else {
            parser.OutOfElement();
        }
    }
}

/// A text node stands for the data of the element around it.
std::size_t ReadAll(const pugi::xml_node& parent) {
    std::size_t total = 0;
    for (const pugi::xml_node child : parent.children()) {
        if (child.type() == pugi::node_element) {
            total += QxString(child.text().get()).size();
            total += ReadAll(child);
        }
    }
    return total;
}

void CheckSameElements(const QxXmlParser& parser, const pugi::xml_node& node, std::int32_t index) {
    for (const pugi::xml_node child : node.children()) {
        if (child.type() != pugi::node_element)
            continue;
        Require(index != 0, "an element is missing");
        const QxXmlParser::ElemPos& at = parser.Positions()[index];
        const std::wstring_view name(child.name());
        Require(std::wstring_view(parser.GetDocument())
                        .substr(static_cast<std::size_t>(at.startTagOpen) + 1, name.size()) == name,
                "an element has another name");
        CheckSameElements(parser, child, at.firstChild);
        index = at.nextSibling;
    }
    Require(index == 0, "there is an element too many");
}

/// 40 elements in a row with short data, as the scalar values of a record.
std::vector<std::wstring> ChildNames() {
    std::vector<std::wstring> names;
    for (int i = 0; i < 40; ++i)
        names.push_back(L"JobElementName" + std::to_wstring(i));
    return names;
}

std::wstring WriteRecord(const std::vector<std::wstring>& names) {
    QxXmlWriter writer;
    writer.OpenStartTag(L"Record");
    writer.Attribute(L"Version", L"7.26");
    writer.CloseStartTag();
    for (const std::wstring& name : names)
        writer.Element(name, L"some text value");
    writer.EndTag(L"Record");
    return writer.Take();
}

struct TextWriter : pugi::xml_writer {
    std::wstring text;
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const wchar_t*>(data), size / sizeof(wchar_t));
    }
};

std::wstring WriteRecordByPeer(const std::vector<std::wstring>& names) {
    pugi::xml_document document;
    pugi::xml_node root = document.append_child(L"Record");
    root.append_attribute(L"Version").set_value(L"7.26");
    for (const std::wstring& name : names)
        root.append_child(name.c_str()).text().set(L"some text value");
    TextWriter writer;
    document.save(writer, L"", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_wchar);
    return writer.text;
}

void BenchParsing(const std::wstring& text) {
    QxXmlParser parser;
    pugi::xml_document peer;
    Require(parser.SetDocument(text), "the parser refuses the record");
    Require(Parse(peer, text), "the peer refuses the record");
    CheckSameElements(parser, peer, parser.Positions()[0].firstChild);
    PrintTable("Parse a record of " + std::to_string(text.size()) + " characters",
               {{"SetDocument, parser used again", [&] { Use(parser.SetDocument(text)); }},
                {"SetDocument, new parser",
                 [&] {
                     QxXmlParser fresh;
                     Use(fresh.SetDocument(text));
                 }},
                {"pugixml (wide) load_buffer", [&] { Use(Parse(peer, text)); }}});

    parser.ResetPosition();
    Require(ReadAll(parser) == ReadAll(peer), "the values differ");
    PrintTable("Parse the record and read every element's data",
               {{"QxXmlParser", [&] { Use(parser.SetDocument(text) ? ReadAll(parser) : 0); }},
                {"pugixml (wide)", [&] { Use(Parse(peer, text) ? ReadAll(peer) : 0); }}});
}

void BenchFinding(const std::vector<std::wstring>& names) {
    const std::wstring text = WriteRecord(names);
    QxXmlParser parser;
    pugi::xml_document peer;
    Require(parser.SetDocument(text) && Parse(peer, text), "the flat record is refused");
    const pugi::xml_node root = peer.first_child();
    for (const std::wstring& name : names) {
        Require(parser.FindChildElement(name, true) && parser.GetChildTagName() == name,
                "a child is not found");
        Require(root.child(name.c_str()), "a child is not found by the peer");
    }
    PrintTable("Find each of 40 children, from the first one on",
               {{"FindChildElement",
                 [&] {
                     for (const std::wstring& name : names)
                         Use(parser.FindChildElement(name, true));
                 }},
                {"pugixml (wide) child", [&] {
                     for (const std::wstring& name : names)
                         Use(bool(root.child(name.c_str())));
                 }}});
}

void BenchWriting(const std::vector<std::wstring>& names) {
    const std::wstring text = WriteRecord(names);
    Require(WriteRecordByPeer(names) == text, "the written records differ");
    const auto edit = [&] {
        QxXmlParser parser;
        parser.AddElement(L"Record");
        parser.SetAttribute(L"Version", L"7.26");
        for (const std::wstring& name : names)
            parser.AddChildElement(name, L"some text value");
        return parser.GetDocument();
    };
    Require(edit() == text, "the edited record differs");
    PrintTable("Write a record of 40 values",
               {{"QxXmlWriter", [&] { Use(WriteRecord(names).size()); }},
                {"QxXmlParser edits", [&] { Use(edit().size()); }},
                {"pugixml (wide)", [&] { Use(WriteRecordByPeer(names).size()); }}});
}

} // namespace

int main() {
    const std::vector<std::wstring> names = ChildNames();
    BenchParsing(ReadRecord());
    BenchFinding(names);
    BenchWriting(names);
}
