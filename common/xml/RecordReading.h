#pragma once

#include "common/text/QxString.h"
#include "common/QxVersion.h"
#include "QxXmlParser.h"
#include "XmlName.h"

#include <cstdint>
#include <string_view>

/// Root and version of a record's document.
namespace RecordReading {

/// Parses the document and makes its root current, or throws a QxException "<root> element is missing.".
void OpenRoot(QxXmlParser& parser, std::wstring_view xml, std::wstring_view root);

/// Parses a "Version" attribute. Throws a QxException if it is malformed or invalid.
QxVersion ParseVersion(std::wstring_view text);

} // namespace RecordReading

/// Reads the children of the parser's current element by name. Of duplicates the first counts. Ask for each
/// name once; in document order, nothing is searched.
class ChildReader {
public:
    explicit ChildReader(QxXmlParser& parser) noexcept : m_parser(parser) {}

    /// Makes the child the parser's current child. Callers that move into it must move out of it again.
    bool Find(XmlName name) noexcept { return m_parser.FindUniqueChild(name, m_found); }

    /// Empty if missing.
    QxString Text(XmlName name);
    /// 0 if missing.
    std::int32_t Number(XmlName name) noexcept;
    /// 0 if missing or negative.
    std::int32_t PositiveNumber(XmlName name) noexcept;
    /// False if missing.
    bool Flag(XmlName name) noexcept;

private:
    QxXmlParser& m_parser;
    std::int32_t m_found = 0;
};
