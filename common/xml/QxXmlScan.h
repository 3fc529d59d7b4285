#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__) || defined(_M_X64) || (defined(_M_IX86_FP) && _M_IX86_FP >= 2)
#define QX_XML_SCAN_SSE2
#include <emmintrin.h>
#endif

/// The parser's scanner: characters and tokens of a text whose length fits into 32 bits. A search that finds
/// nothing returns the text's length.
namespace QxXmlScan {

inline constexpr std::wstring_view White = L" \t\n\r";
inline constexpr std::wstring_view Specials = L"<>=\\/?!";

/// The ASCII characters that end an unquoted token.
constexpr std::array<bool, 128> MakeTokenEnds() {
    std::array<bool, 128> ends{};
    for (wchar_t character : White)
        ends[static_cast<std::size_t>(character)] = true;
    for (wchar_t character : Specials)
        ends[static_cast<std::size_t>(character)] = true;
    return ends;
}

inline constexpr std::array<bool, 128> TokenEnds = MakeTokenEnds();

constexpr bool EndsToken(wchar_t character) noexcept {
    const auto code = static_cast<std::size_t>(character);
    return code < TokenEnds.size() && TokenEnds[code];
}

struct Token {
    std::int32_t start = 0; ///< first character, after an opening quote
    std::int32_t end = -1;  ///< last character, inclusive; start - 1 for an empty quoted token
    std::int32_t next = 0;  ///< where the scan continues
    bool quoted = false;

    std::wstring_view In(std::wstring_view text) const noexcept {
        return std::wstring_view(text.data() + start, static_cast<std::size_t>(end - start + 1));
    }
    bool IsUnquoted(std::wstring_view text, wchar_t single) const noexcept {
        return !quoted && start == end && text[static_cast<std::size_t>(start)] == single;
    }
};

/// Blank, tab, CR or LF.
inline bool IsSpace(wchar_t character) noexcept {
    return character == L' ' || character == L'\t' || character == L'\n' || character == L'\r';
}

inline std::int32_t SkipSpace(std::wstring_view text, std::int32_t from) noexcept {
    const auto length = static_cast<std::int32_t>(text.size());
    while (from < length && IsSpace(text[static_cast<std::size_t>(from)]))
        ++from;
    return from;
}

/// Whether the name is one unquoted token without a namespace prefix.
constexpr bool IsPlainName(std::wstring_view name) noexcept {
    return std::ranges::none_of(name,
                                [](wchar_t character) { return character == L':' || EndsToken(character); });
}

/// Length of the unquoted token at from; 0 at white space or a special character.
inline std::int32_t WordLength(std::wstring_view text, std::int32_t from) noexcept {
    const wchar_t* const begin = text.data() + from;
    const wchar_t* const end = text.data() + text.size();
    const wchar_t* at = begin;
    while (at != end && !EndsToken(*at))
        ++at;
    return static_cast<std::int32_t>(at - begin);
}

/// Finds a terminator. Its only ">" must be its last character.
std::int32_t FindTerminator(std::wstring_view text, std::wstring_view terminator, std::int32_t from) noexcept;
/// The number of start tags whose name begins with a letter or another character above "?": nearly all.
std::int32_t CountStartTags(std::wstring_view text) noexcept;

/// The first token of the tag whose "<" is at open.
std::wstring_view TagName(std::wstring_view text, std::int32_t open) noexcept;
/// The name after its namespace prefix, as names are compared.
std::wstring_view WithoutPrefix(std::wstring_view name) noexcept;
/// Compares eight characters.
inline bool EqualBlock(const wchar_t* a, const wchar_t* b) noexcept {
#ifdef QX_XML_SCAN_SSE2
    if constexpr (sizeof(wchar_t) == 2) {
        const __m128i ofA = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a));
        const __m128i ofB = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b));
        return _mm_movemask_epi8(_mm_cmpeq_epi16(ofA, ofB)) == 0xFFFF;
    }
#endif
    return std::memcmp(a, b, 8 * sizeof(wchar_t)) == 0;
}

/// Compares four characters.
inline bool EqualHalf(const wchar_t* a, const wchar_t* b) noexcept {
    return std::memcmp(a, b, 4 * sizeof(wchar_t)) == 0;
}

inline bool Equal(std::wstring_view a, std::wstring_view b) noexcept {
    const std::size_t length = a.size();
    if (length != b.size())
        return false;
    const wchar_t* const ofA = a.data();
    const wchar_t* const ofB = b.data();
    if (length >= 8) {
        std::size_t at = 0;
        for (; at < length - 8; at += 8) {
            if (!EqualBlock(ofA + at, ofB + at))
                return false;
        }
        return EqualBlock(ofA + length - 8, ofB + length - 8); // may overlap the block before
    }
    if (length >= 4)
        return EqualHalf(ofA, ofB) && EqualHalf(ofA + length - 4, ofB + length - 4);
    std::size_t at = 0;
    while (at < length && ofA[at] == ofB[at])
        ++at;
    return at == length;
}

/// The offset of a character. The parser's hot spot, hence inline; wmemchr is several times slower on
/// Windows.
inline std::int32_t Find(std::wstring_view text, wchar_t sought, std::int32_t from) noexcept {
    const wchar_t* const characters = text.data();
    const auto length = static_cast<std::int32_t>(text.size());
    std::int32_t at = from;
#ifdef QX_XML_SCAN_SSE2
    if constexpr (sizeof(wchar_t) == 2) {
        const __m128i pattern = _mm_set1_epi16(static_cast<short>(sought));
        for (const std::int32_t last = length - 8; at <= last; at += 8) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(characters + at));
            const auto equal = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, pattern)));
            if (equal != 0)
                return at + std::countr_zero(equal) / 2;
        }
    }
#endif
    while (at < length && characters[at] != sought)
        ++at;
    return at;
}

/// The offset of the next "<". Usually it is at from itself: a predicted branch is faster than the result of
/// a search.
inline std::int32_t NextTag(std::wstring_view text, std::int32_t from) noexcept {
    if (from < static_cast<std::int32_t>(text.size()) && text[static_cast<std::size_t>(from)] == L'<')
        return from;
    return Find(text, L'<', from);
}

/// Whether the character occurs from an offset up to another. Not limited to whole blocks, because more text
/// follows.
inline bool Occurs(std::wstring_view text, wchar_t sought, std::int32_t from, std::int32_t to) noexcept {
#ifdef QX_XML_SCAN_SSE2
    if constexpr (sizeof(wchar_t) == 2) {
        const __m128i pattern = _mm_set1_epi16(static_cast<short>(sought));
        for (const std::int32_t last = static_cast<std::int32_t>(text.size()) - 8; from < to && from <= last;
             from += 8) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + from));
            const auto equal = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, pattern)));
            if (equal != 0)
                return from + std::countr_zero(equal) / 2 < to;
        }
    }
#endif
    while (from < to && text[static_cast<std::size_t>(from)] != sought)
        ++from;
    return from < to;
}

/// The offset of the next quote, and whether an "&" precedes it.
inline std::int32_t FindQuote(std::wstring_view text, std::int32_t from, bool& hasEntity) noexcept {
    const wchar_t* const characters = text.data();
    const auto length = static_cast<std::int32_t>(text.size());
    std::int32_t at = from;
    bool found = false;
#ifdef QX_XML_SCAN_SSE2
    if constexpr (sizeof(wchar_t) == 2) {
        const __m128i quote = _mm_set1_epi16(L'"');
        const __m128i ampersand = _mm_set1_epi16(L'&');
        unsigned entities = 0;
        for (const std::int32_t last = length - 8; at <= last; at += 8) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(characters + at));
            const auto quotes = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, quote)));
            const auto here = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(block, ampersand)));
            if (quotes != 0) {
                const unsigned before = (quotes & (0U - quotes)) - 1; // the bits below the first quote
                hasEntity = (entities | (here & before)) != 0;
                return at + std::countr_zero(quotes) / 2;
            }
            entities |= here;
        }
        found = entities != 0;
    }
#endif
    for (; at < length && characters[at] != L'"'; ++at)
        found = found || characters[at] == L'&';
    hasEntity = found;
    return at;
}

/// Reads the token at token.next, after white space. False at the end of the text. The end of the text also
/// ends a token or a quote.
inline bool NextToken(std::wstring_view text, Token& token) noexcept {
    const auto length = static_cast<std::int32_t>(text.size());
    token.start = SkipSpace(text, token.next);
    if (token.start == length) {
        token.next = length;
        return false;
    }
    token.quoted = text[static_cast<std::size_t>(token.start)] == L'"';
    if (token.quoted) {
        ++token.start;
        const std::int32_t quote = Find(text, L'"', token.start);
        token.end = quote - 1;
        token.next = std::min(quote + 1, length);
    } else {
        token.next = token.start + std::max(WordLength(text, token.start), 1);
        token.end = token.next - 1;
    }
    return true;
}

/// Number of equal characters at two offsets, up to a ">" or a quote. Requires first < second.
inline std::int32_t CommonLength(std::wstring_view text, std::int32_t first, std::int32_t second) noexcept {
    const wchar_t* const a = text.data() + first;
    const wchar_t* const b = text.data() + second;
    const auto room = static_cast<std::int32_t>(text.size()) - second;
    std::int32_t at = 0;
#ifdef QX_XML_SCAN_SSE2
    if constexpr (sizeof(wchar_t) == 2) {
        const __m128i bracket = _mm_set1_epi16(L'>');
        const __m128i quote = _mm_set1_epi16(L'"');
        for (; room - at >= 8; at += 8) {
            const __m128i ofA = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + at));
            const __m128i ofB = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + at));
            const __m128i stop = _mm_or_si128(_mm_cmpeq_epi16(ofB, bracket), _mm_cmpeq_epi16(ofB, quote));
            const __m128i equal = _mm_andnot_si128(stop, _mm_cmpeq_epi16(ofA, ofB));
            const auto common = static_cast<unsigned>(_mm_movemask_epi8(equal));
            if (common != 0xFFFF)
                return at + std::countr_one(common) / 2;
        }
    }
#endif
    while (at < room && a[at] == b[at] && b[at] != L'>' && b[at] != L'"')
        ++at;
    return at;
}

/// Result of ReadEndTag.
enum class EndTag { Complete, NotAnEndTag, OtherName, NotCompleted };

/// Reads the end tag whose "<" is at open, skipping quoted tokens. Sets close to the offset of its ">" if it
/// is complete.
EndTag ReadEndTag(std::wstring_view text, std::int32_t open, std::wstring_view name,
                  std::int32_t& close) noexcept;

} // namespace QxXmlScan
