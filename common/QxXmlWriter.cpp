#include "QxXmlWriter.h"

#include "QxMisc.h"

void QxXmlWriter::OpenStartTag(std::wstring_view name) {
    m_text.push_back(L'<');
    m_text.append(name);
}

void QxXmlWriter::Attribute(std::wstring_view name, std::wstring_view value) {
    QxXmlText::AppendAttribute(m_text, name, value);
}

void QxXmlWriter::CloseStartTag() {
    m_text.push_back(L'>');
}

void QxXmlWriter::CloseEmptyTag() {
    m_text.append(L"/>");
}

void QxXmlWriter::CloseWithData(std::wstring_view name, std::wstring_view data) {
    if (data.empty()) {
        CloseEmptyTag();
        return;
    }
    CloseStartTag();
    QxXmlText::AppendEscaped(m_text, data, QxXmlText::Escape::Data);
    EndTag(name);
}

void QxXmlWriter::EndTag(std::wstring_view name) {
    m_text.append(L"</");
    m_text.append(name);
    m_text.push_back(L'>');
}

void QxXmlWriter::Element(std::wstring_view name, std::wstring_view data) {
    QxXmlText::AppendElement(m_text, name, data);
}

void QxXmlWriter::Element(std::wstring_view name, std::int32_t value) {
    Element(name, std::wstring_view(QxMisc::FormatInt32(value)));
}

void QxXmlWriter::Element(std::wstring_view name, bool value) {
    Element(name, QxMisc::FormatBool(value));
}
