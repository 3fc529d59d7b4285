// Input: two lines with a version each. A valid version round-trips through its text, an invalid one throws,
// and any two are ordered.

#include "Fuzzing.h"

#include "common/QxException.h"
#include "common/QxVersion.h"

using Fuzzing::Require;

namespace {

/// The expected version: two to four components of digits, octal with a leading 0.
QxVersion Expected(std::wstring_view text) {
    std::int64_t numbers[4] = {-1, -1, -1, -1};
    int count = 0;
    bool inside = false;
    bool octal = false, ended = false;
    for (const wchar_t c : text) {
        if (c == L'.') {
            inside = false;
            continue;
        }
        if (c < L'0' || c > L'9')
            return {};
        if (!inside) {
            if (++count > 4)
                return {};
            inside = true;
            octal = c == L'0';
            ended = false;
            numbers[count - 1] = 0;
        }
        ended = ended || (octal && c > L'7');
        std::int64_t& number = numbers[count - 1];
        if (!ended)
            number = std::min<std::int64_t>(number * (octal ? 8 : 10) + (c - L'0'), 0x7FFFFFFF);
    }
    if (count < 2)
        return {};
    return {static_cast<std::int32_t>(numbers[0]), static_cast<std::int32_t>(numbers[1]),
            static_cast<std::int32_t>(numbers[2]), static_cast<std::int32_t>(numbers[3])};
}

bool Throws(std::wstring_view text) {
    try {
        const QxVersion version(text, QxVersion::OnError::Throw);
        Require(version.IsValid(), "an invalid version does not throw");
        return false;
    } catch (const QxException&) {
        return true;
    }
}

void CheckVersion(std::wstring_view text, const QxVersion& version) {
    Require(version == Expected(text), "wrong version for the text");
    if (!version.IsValid()) {
        Require(Throws(text) && version.AsString() == L"<invalid>", "an invalid version is not reported");
        return;
    }
    const std::wstring written = version.AsString();
    Require(QxVersion(written, QxVersion::OnError::Throw) == version,
            "the version's text parses to another version");
    for (std::uint16_t fields = 0; fields <= 2; ++fields)
        Require(written.starts_with(version.AsString(fields)), "the first components");
}

} // namespace

void RunInput(std::string_view bytes) {
    const std::wstring first = Fuzzing::Widen(Fuzzing::TakeLine(bytes));
    const std::wstring second = Fuzzing::Widen(bytes);
    const QxVersion a(first), b(second);
    CheckVersion(first, a);
    CheckVersion(second, b);
    Require(a.Compare(b) == -b.Compare(a) && a.Compare(a) == 0, "inconsistent order of versions");
    Require((a.Compare(b) == 0) == (a.AsString() == b.AsString()), "equal versions with different texts");
}
