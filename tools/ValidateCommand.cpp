// validate: the library reads a record's XML and writes it again; both trees are compared element by element.

#include "Commands.h"
#include "Console.h"
#include "Findings.h"
#include "RecordObject.h"
#include "TextFile.h"
#include "XmlTree.h"

#include <deque>
#include <map>
#include <tuple>
#include <utility>
#include <vector>

namespace {

std::wstring Quoted(const std::wstring& text) {
    constexpr std::size_t longest = 60;
    return L"'" + (text.size() > longest ? text.substr(0, longest) + L"..." : text) + L"'";
}

class RoundTrip {
public:
    RoundTrip(const XmlTree& given, const XmlTree& written, Findings& findings)
        : m_given(given), m_written(written), m_findings(findings) {}

    void Compare() {
        m_pending = {{XmlTree::Root, XmlTree::Root}};
        while (!m_pending.empty()) {
            const auto [given, written] = m_pending.back();
            m_pending.pop_back();
            CompareAttributes(m_given[given], m_written[written]);
            CompareTexts(m_given[given], m_written[written]);
            CompareChildren(m_given[given], m_written[written]);
        }
    }

private:
    using Element = XmlTree::Element;

    void CompareAttributes(const Element& given, const Element& written) {
        for (const XmlTree::Attribute& attribute : given.attributes) {
            const XmlTree::Attribute* back = written.Find(attribute.name);
            if (!attribute.isRead)
                m_findings.Warning(attribute.offset,
                                   L"attribute " + attribute.name + L" is in single quotes and is ignored");
            else if (!back)
                m_findings.Warning(attribute.offset, L"attribute " + attribute.name + L" does not come back");
            else if (back->value != attribute.value)
                m_findings.Warning(attribute.offset, L"attribute " + attribute.name + L" " +
                                                         Quoted(attribute.value) + L" comes back as " +
                                                         Quoted(back->value));
        }
    }

    void CompareTexts(const Element& given, const Element& written) {
        if (written.children.empty() && given.children.empty() && given.text != written.text)
            m_findings.Warning(given.offset, given.name + L" " + Quoted(given.text) + L" comes back as " +
                                                 Quoted(written.text));
    }

    /// Matches elements of the same name in their order.
    void CompareChildren(const Element& given, const Element& written) {
        std::map<std::wstring, std::deque<std::size_t>> back;
        for (const std::size_t child : written.children)
            back[m_written[child].name].push_back(child);
        std::size_t last = 0;
        const Element* lastInOrder = nullptr;
        for (const std::size_t child : given.children) {
            const Element& element = m_given[child];
            auto& candidates = back[element.name];
            if (candidates.empty()) {
                m_findings.Warning(element.offset, L"element " + element.name + L" does not come back");
                continue;
            }
            const std::size_t match = candidates.front();
            candidates.pop_front();
            m_pending.emplace_back(child, match);
            if (match < last)
                m_findings.Warning(element.offset, element.name + L" is written before " + lastInOrder->name);
            else
                std::tie(last, lastInOrder) = std::pair(match, &element);
        }
        for (const std::size_t child : written.children)
            for (const std::size_t left : back[m_written[child].name])
                if (left == child)
                    m_findings.Warning(given.offset,
                                       L"element " + m_written[child].name + L" is missing in " + given.name +
                                           L"; it is written as " + Quoted(m_written[child].text));
    }

    const XmlTree& m_given;
    const XmlTree& m_written;
    Findings& m_findings;
    std::vector<std::pair<std::size_t, std::size_t>> m_pending;
};

/// The class of the record; if the root element is unknown, empty and an error.
std::wstring ClassOf(const XmlTree& tree, Findings& findings) {
    const std::wstring& root = tree[XmlTree::Root].name;
    std::wstring className = RecordObject::ClassOfRoot(root);
    if (className.empty())
        findings.Error(tree[XmlTree::Root].offset, L"no record has the root element " + root);
    return className;
}

void CompareWithLibrary(RecordObject& record, const std::wstring& text, const XmlTree& given,
                        Findings& findings) {
    Console::Progress(L"The library is reading");
    if (!record.PutXml(text)) {
        findings.Error(given[XmlTree::Root].offset, L"the library refuses it: " + record.Error());
        return;
    }
    Console::Progress(L"The library is writing");
    const std::wstring writtenText = record.Xml();
    Console::EndProgress();
    XmlTree written;
    if (written.Parse(writtenText))
        RoundTrip(given, written, findings).Compare();
    else
        findings.FileError(L"the XML that the library writes does not parse: " + written.Error());
}

ExitCode ValidateFile(const std::wstring& path) {
    const std::wstring text = ReadTextFile(path).text;
    XmlTree given;
    Findings findings(path, given);
    std::wstring className;
    if (!given.Parse(text))
        findings.FileError(given.Error());
    else
        className = ClassOf(given, findings);
    if (!className.empty()) {
        RecordObject record(className);
        CompareWithLibrary(record, text, given, findings);
    }
    findings.Show();
    if (findings.Count() > 0)
        return ExitFindings;
    const XmlTree::Attribute* version = given[XmlTree::Root].Find(L"Version");
    Console::Line(path + L": " + className + (version ? L" of version " + version->value : L"") +
                  L", read and written again unchanged");
    return ExitOk;
}

} // namespace

ExitCode Validate(Arguments arguments) {
    return ForEachFile(arguments, ValidateFile);
}
