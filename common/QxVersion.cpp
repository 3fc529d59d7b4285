#include "QxVersion.h"

#include "QxException.h"
#include "common/text/Numbers.h"
#include "common/log/QxLogger.h"

#include <algorithm>

namespace {

constexpr std::size_t MinComponents = 2, MaxComponents = 4;

/// Logs and throws the message.
[[noreturn]] void Fail(const wchar_t* method, const wchar_t* message) {
    LogError(LogUtility, L"[QxVersion::%ls] %ls", method, message);
    throw QxException(message);
}

/// Removes the first component from text and returns it; empty at the end. Repeated dots count as one.
std::wstring_view NextComponent(std::wstring_view& text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(L'.'), text.size()));
    const std::wstring_view component = text.substr(0, text.find(L'.'));
    text.remove_prefix(component.size());
    return component;
}

} // namespace

QxVersion::QxVersion(std::wstring_view text, OnError onError) {
    try {
        std::wstring_view components[MaxComponents];
        std::size_t count = 0;
        for (auto next = NextComponent(text); !next.empty(); next = NextComponent(text)) {
            if (count < MaxComponents)
                components[count] = next;
            ++count;
        }
        if (count < MinComponents || count > MaxComponents)
            Fail(L"QxVersion", L"Version has fewer than two components or more than four components.");
        std::int32_t numbers[MaxComponents] = {-1, -1, -1, -1};
        for (std::size_t i = 0; i < count; ++i)
            numbers[i] = ParseVersionComponent(components[i]);
        *this = QxVersion(numbers[0], numbers[1], numbers[2], numbers[3]);
    } catch (const QxException&) {
        if (onError == OnError::Throw)
            throw;
    }
}

void QxVersion::CheckValid() const {
    if (!IsValid())
        throw QxException(L"Version is not valid.");
}

std::wstring QxVersion::AsString(std::uint16_t fieldCount) const {
    if (!IsValid())
        return L"<invalid>";
    const std::int32_t components[] = {m_major, m_minor, m_build, m_revision};
    const bool defined = fieldCount < 3 || (m_build >= 0 && (fieldCount < 4 || m_revision >= 0));
    if (fieldCount > MaxComponents || !defined)
        Fail(L"AsString",
             L"FieldCount is less than 0, or more than 4, or FieldCount is more than the number of "
             L"components defined in the current QxVersion object.");
    std::wstring text;
    for (std::size_t i = 0; i < fieldCount; ++i) {
        QxMisc::Int32Digits digits;
        if (i > 0)
            text += L'.';
        text += QxMisc::FormatInt32(components[i], digits);
    }
    return text;
}

std::wstring QxVersion::AsString() const {
    if (m_build < 0)
        return AsString(2);
    return AsString(m_revision < 0 ? 3 : 4);
}

std::int32_t QxVersion::ParseVersionComponent(std::wstring_view text) {
    const std::int32_t value = QxMisc::ParseInt32(text, 0);
    if (value < 0 || text.find_first_not_of(L"0123456789") != std::wstring_view::npos)
        Fail(L"ParseVersionComponent",
             L"A major, minor, build, or revision component is not a valid non-zero number.");
    return value;
}
