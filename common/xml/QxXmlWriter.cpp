#include "QxXmlWriter.h"

#include "common/text/Numbers.h"
#include "common/text/Text.h"

void QxXmlWriter::BeginRecord(XmlName root, std::wstring_view xmlNamespace, const QxVersion& version) {
    OpenStartTag(root);
    Attribute(L"xmlns", xmlNamespace);
    Attribute(L"Version", version.AsString());
    CloseStartTag();
}

void QxXmlWriter::CloseEmptyTag() {
    m_text.Append(L'/');
    m_text.Append(L'>');
}

void QxXmlWriter::CloseWithData(XmlName name, std::wstring_view data) {
    if (data.empty()) {
        CloseEmptyTag();
        return;
    }
    CloseStartTag();
    m_text.AppendEscaped(data, QxXmlText::Escape::Data);
    EndTag(name);
}

void QxXmlWriter::Element(XmlName name, std::int32_t value) {
    m_text.AppendPlainElement(name, QxMisc::Int32Length,
                              [value](wchar_t* to) { return QxMisc::WriteInt32(value, to); });
}

void QxXmlWriter::Element(XmlName name, bool value) {
    const std::wstring_view text = QxMisc::FormatBool(value);
    m_text.AppendPlainElement(name, text.size(), [text](wchar_t* to) { return QxMisc::CopyText(to, text); });
}

void QxXmlWriter::Element(XmlName name, const QxDateTime& value, std::int32_t milliseconds) {
    m_text.AppendPlainElement(name, QxDateTime::MaxLength,
                              [&](wchar_t* to) { return value.Write(to, milliseconds); });
}
