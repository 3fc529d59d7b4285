#pragma once

#include "common/QxDateTime.h"
#include "common/QxVersion.h"
#include "QxXmlText.h"
#include "XmlName.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Writes a record's document from front to back into one buffer, with the same characters as the parser's
/// edits.
class QxXmlWriter {
public:
    /// The default reserve fits a typical record.
    explicit QxXmlWriter(std::size_t reserve = 4096) : m_text(reserve) {}

    /// The start tag of a record's root element, with its namespace and version.
    void BeginRecord(XmlName root, std::wstring_view xmlNamespace, const QxVersion& version);

    /// "<name", open for attributes. Close it with CloseStartTag, CloseEmptyTag or CloseWithData.
    void OpenStartTag(XmlName name) { m_text.AppendStartTag(name); }
    void Attribute(XmlName name, std::wstring_view value) { m_text.AppendAttribute(name, value); }
    void CloseStartTag() { m_text.Append(L'>'); }
    void CloseEmptyTag();
    /// Completes an open start tag: ">data</name>", or "/>" if data is empty.
    void CloseWithData(XmlName name, std::wstring_view data);
    void EndTag(XmlName name) { m_text.AppendEndTag(name); }

    void Element(XmlName name, std::wstring_view data) { m_text.AppendElement(name, data); }
    void Element(XmlName name, const wchar_t* data) { Element(name, std::wstring_view(data)); }
    void Element(XmlName name, std::int32_t value);
    /// "true" or "false".
    void Element(XmlName name, bool value);
    /// The texts of QxDateTime::Format.
    void Element(XmlName name, const QxDateTime& value, std::int32_t milliseconds = 0);
    /// Appends markup without escaping.
    void Raw(std::wstring_view markup) { m_text.Append(markup); }

    /// Valid until the next write.
    std::wstring_view Text() const noexcept { return m_text.View(); }

private:
    QxXmlText m_text;
};
