#include "RecordReading.h"

#include "QxException.h"

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

QxString Text(QxXmlParser& parser, std::wstring_view name) {
    QxString value;
    parser.ReadChild(name, value);
    return value;
}

std::int32_t Number(QxXmlParser& parser, std::wstring_view name) {
    std::int32_t value = 0;
    parser.ReadChild(name, value);
    return value;
}

std::int32_t PositiveNumber(QxXmlParser& parser, std::wstring_view name) {
    const std::int32_t value = Number(parser, name);
    return value > 0 ? value : 0;
}

bool Flag(QxXmlParser& parser, std::wstring_view name) {
    bool value = false;
    parser.ReadChild(name, value);
    return value;
}

QxDateTime DateTime(QxXmlParser& parser, std::wstring_view name) {
    QxString text;
    if (!parser.ReadChild(name, text))
        return QxDateTime();
    const QxDateTime value = QxDateTime::Parse(text);
    return value.IsValid() ? value : QxDateTime();
}

} // namespace RecordReading
