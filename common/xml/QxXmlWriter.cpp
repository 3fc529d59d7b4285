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
    QxMisc::Int32Digits digits;
    m_text.AppendPlainElement(name, QxMisc::FormatInt32(value, digits));
}

void QxXmlWriter::Element(XmlName name, bool value) {
    m_text.AppendPlainElement(name, QxMisc::FormatBool(value));
}
