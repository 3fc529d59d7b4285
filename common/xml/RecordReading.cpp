#include "RecordReading.h"

#include "common/QxException.h"

#include <string>

namespace RecordReading {

void OpenRoot(QxXmlParser& parser, std::wstring_view xml, std::wstring_view root) {
    parser.SetDocument(xml);
    if (!parser.FindElement(root, true))
        throw QxException(QxString(std::wstring(root) + L" element is missing."));
}

QxVersion ParseVersion(std::wstring_view text) {
    const QxVersion version(text, QxVersion::OnError::Throw);
    version.CheckValid();
    return version;
}

} // namespace RecordReading

QxString ChildReader::Text(XmlName name) {
    return Find(name) ? m_parser.GetChildData() : QxString();
}

std::int32_t ChildReader::Number(XmlName name) noexcept {
    return Find(name) ? m_parser.GetChildNumber() : 0;
}

std::int32_t ChildReader::PositiveNumber(XmlName name) noexcept {
    const std::int32_t value = Number(name);
    return value > 0 ? value : 0;
}

bool ChildReader::Flag(XmlName name) noexcept {
    return Find(name) && m_parser.GetChildFlag();
}
