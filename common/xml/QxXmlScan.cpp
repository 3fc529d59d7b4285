#include "QxXmlScan.h"

#include <algorithm>
#include <array>

namespace QxXmlScan {

std::int32_t FindTerminator(std::wstring_view text, std::wstring_view terminator,
                            std::int32_t from) noexcept {
    const auto length = static_cast<std::int32_t>(text.size());
    const auto before = static_cast<std::int32_t>(terminator.size()) - 1;
    for (std::int32_t last = Find(text, L'>', from); last < length; last = Find(text, L'>', last + 1)) {
        const std::int32_t start = last - before;
        if (start >= from && text.substr(static_cast<std::size_t>(start), terminator.size()) == terminator)
            return start;
    }
    return length;
}

std::int32_t CountStartTags(std::wstring_view text) noexcept {
    const wchar_t* const characters = text.data();
    const auto last = static_cast<std::int32_t>(text.size()) - 1;
    std::int32_t count = 0;
    std::int32_t at = 0;
#ifdef QX_XML_SCAN_SSE2
    if constexpr (sizeof(wchar_t) == 2) {
        const __m128i bracket = _mm_set1_epi16(L'<');
        const __m128i question = _mm_set1_epi16(L'?');
        const __m128i zero = _mm_setzero_si128();
        __m128i counts = zero; // one in each half
        for (; at + 8 <= last; at += 8) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(characters + at));
            const __m128i behind = _mm_loadu_si128(reinterpret_cast<const __m128i*>(characters + at + 1));
            const __m128i isNoName = _mm_cmpeq_epi16(_mm_subs_epu16(behind, question), zero);
            const __m128i found = _mm_andnot_si128(isNoName, _mm_cmpeq_epi16(block, bracket));
            counts = _mm_add_epi64(counts, _mm_sad_epu8(_mm_srli_epi16(found, 15), zero));
        }
        count = _mm_cvtsi128_si32(counts) + _mm_cvtsi128_si32(_mm_srli_si128(counts, 8));
    }
#endif
    for (; at < last; ++at)
        count += characters[at] == L'<' && characters[at + 1] > L'?';
    return count;
}

std::wstring_view TagName(std::wstring_view text, std::int32_t open) noexcept {
    const std::int32_t start = SkipSpace(text, open + 1);
    return text.substr(static_cast<std::size_t>(start),
                       static_cast<std::size_t>(std::max(WordLength(text, start), 1)));
}

std::wstring_view WithoutPrefix(std::wstring_view name) noexcept {
    const auto colon = static_cast<std::size_t>(Find(name, L':', 0));
    return colon == name.size() ? name : name.substr(colon + 1);
}

EndTag ReadEndTag(std::wstring_view text, std::int32_t open, std::wstring_view name,
                  std::int32_t& close) noexcept {
    Token token;
    token.next = open + 1;
    for (int unquoted = 0; NextToken(text, token);) {
        if (token.quoted)
            continue;
        ++unquoted;
        if (unquoted == 1 && !token.IsUnquoted(text, L'/'))
            return EndTag::NotAnEndTag;
        if (unquoted == 2 && !Equal(token.In(text), name))
            return EndTag::OtherName;
        if (token.IsUnquoted(text, L'>')) {
            close = token.start;
            return EndTag::Complete;
        }
    }
    return EndTag::NotCompleted;
}

} // namespace QxXmlScan
