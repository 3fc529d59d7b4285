#pragma once

#include "common/text/QxString.h"
#include "common/QxVersion.h"
#include "QxXmlParser.h"
#include "XmlName.h"

#include <cstdint>
#include <string_view>

/// How records read a document: its root, its version, and the children of an element.
namespace RecordReading {

/// Loads a document and makes its root current. Throws a QxException "<root> element is missing.".
void OpenRoot(QxXmlParser& parser, std::wstring_view xml, std::wstring_view root);

/// Parses and checks a "Version" attribute; throws the QxException of a malformed or invalid version.
QxVersion ParseVersion(std::wstring_view text);

} // namespace RecordReading

/// Reads the children of the parser's current element, each by its name, with the value that a missing or
/// unusable element stands for. Of several elements with a name the first counts. A name is asked for once;
/// names in the document's order are found without a search.
class ChildReader {
public:
    explicit ChildReader(QxXmlParser& parser) noexcept : m_parser(parser) {}

    /// Makes the child the parser's current child. The parser may go into it, but must come out of it again.
    bool Find(XmlName name) noexcept { return m_parser.FindUniqueChild(name, m_found); }

    /// Empty when missing.
    QxString Text(XmlName name);
    /// 0 when missing.
    std::int32_t Number(XmlName name) noexcept;
    /// A positive number, otherwise 0.
    std::int32_t PositiveNumber(XmlName name) noexcept;
    /// False when missing.
    bool Flag(XmlName name) noexcept;

private:
    QxXmlParser& m_parser;
    std::int32_t m_found = 0;
};
