#include "TextEncoding.h"

#include <utility>

namespace {

constexpr char32_t Replacement = 0xFFFD;
/// Not a character, so it differs from a U+FFFD of the file.
constexpr char32_t MalformedCharacter = 0xFFFFFFFF;

class Output {
public:
    explicit Output(std::size_t room) { m_text.reserve(room); }

    void Append(char32_t character) {
        if (sizeof(wchar_t) == 2 && character > 0xFFFF) {
            character -= 0x10000;
            m_text += static_cast<wchar_t>(0xD800 + (character >> 10));
            m_text += static_cast<wchar_t>(0xDC00 + (character & 0x3FF));
        } else {
            m_text += static_cast<wchar_t>(character);
        }
    }
    void AppendMalformed() {
        if (m_malformed.count++ == 0)
            m_malformed.first = m_text.size();
        Append(Replacement);
    }

    std::wstring Take(TextEncoding::Malformed* malformed) {
        if (malformed)
            *malformed = m_malformed;
        return std::move(m_text);
    }

private:
    std::wstring m_text;
    TextEncoding::Malformed m_malformed;
};

unsigned Byte(std::string_view bytes, std::size_t at) noexcept {
    return static_cast<unsigned char>(bytes[at]);
}

/// A UTF-8 lead byte: length of the sequence (0: not a lead byte), its value bits, and the range of the
/// second byte, which excludes overlong forms, surrogates and values above U+10FFFF.
struct Lead {
    unsigned count, bits, secondLow, secondHigh;
};

Lead LeadOf(unsigned byte) noexcept {
    if (byte < 0x80)
        return {1, byte, 0, 0};
    if (byte >= 0xC2 && byte <= 0xDF)
        return {2, byte & 0x1F, 0x80, 0xBF};
    if (byte >= 0xE0 && byte <= 0xEF)
        return {3, byte & 0x0F, byte == 0xE0 ? 0xA0u : 0x80u, byte == 0xED ? 0x9Fu : 0xBFu};
    if (byte >= 0xF0 && byte <= 0xF4)
        return {4, byte & 0x07, byte == 0xF0 ? 0x90u : 0x80u, byte == 0xF4 ? 0x8Fu : 0xBFu};
    return {0, 0, 0, 0};
}

/// Decodes one character and returns its length in bytes. The longest well-formed start of a malformed
/// sequence counts as one malformed character.
std::size_t NextUtf8(std::string_view bytes, char32_t& character) noexcept {
    const Lead lead = LeadOf(Byte(bytes, 0));
    character = MalformedCharacter;
    if (lead.count == 0)
        return 1;
    char32_t value = lead.bits;
    for (std::size_t i = 1; i < lead.count; ++i) {
        const unsigned low = i == 1 ? lead.secondLow : 0x80, high = i == 1 ? lead.secondHigh : 0xBF;
        if (i == bytes.size() || Byte(bytes, i) < low || Byte(bytes, i) > high)
            return i;
        value = value << 6 | (Byte(bytes, i) & 0x3F);
    }
    character = value;
    return lead.count;
}

void DecodeUtf8(std::string_view bytes, Output& output) {
    while (!bytes.empty()) {
        char32_t character;
        bytes.remove_prefix(NextUtf8(bytes, character));
        if (character == MalformedCharacter)
            output.AppendMalformed();
        else
            output.Append(character);
    }
}

void DecodeUtf16(std::string_view bytes, bool bigEndian, Output& output) {
    const auto unit = [&](std::size_t at) -> char32_t {
        return Byte(bytes, at + (bigEndian ? 1 : 0)) | Byte(bytes, at + (bigEndian ? 0 : 1)) << 8;
    };
    std::size_t at = 0;
    for (; at + 1 < bytes.size(); at += 2) {
        const char32_t first = unit(at);
        if (first < 0xD800 || first > 0xDFFF) {
            output.Append(first);
            continue;
        }
        const char32_t second = at + 3 < bytes.size() ? unit(at + 2) : 0;
        if (first <= 0xDBFF && second >= 0xDC00 && second <= 0xDFFF) {
            output.Append(0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00));
            at += 2;
        } else {
            output.AppendMalformed();
        }
    }
    if (at < bytes.size())
        output.AppendMalformed();
}

} // namespace

std::wstring TextEncoding::Decode(std::string_view bytes, Malformed* malformed) {
    const bool isLittleEndian = bytes.starts_with("\xFF\xFE");
    const bool isBigEndian = bytes.starts_with("\xFE\xFF");
    const bool isUtf16 = isLittleEndian || isBigEndian;
    Output output(isUtf16 ? bytes.size() / 2 : bytes.size());
    if (isUtf16)
        DecodeUtf16(bytes.substr(2), isBigEndian, output);
    else
        DecodeUtf8(bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes, output);
    return output.Take(malformed);
}
