#include "QxXmlWriter.h"

#include "QxMisc.h"

void QxXmlWriter::CloseEmptyTag() {
    m_text.Append(L'/');
    m_text.Append(L'>');
}

void QxXmlWriter::CloseWithData(std::wstring_view name, std::wstring_view data) {
    if (data.empty()) {
        CloseEmptyTag();
        return;
    }
    CloseStartTag();
    m_text.AppendEscaped(data, QxXmlText::Escape::Data);
    EndTag(name);
}

void QxXmlWriter::Element(std::wstring_view name, std::int32_t value) {
    QxMisc::Int32Digits digits;
    m_text.AppendElement(name, QxMisc::FormatInt32(value, digits));
}

void QxXmlWriter::Element(std::wstring_view name, bool value) {
    m_text.AppendElement(name, QxMisc::FormatBool(value));
}
