#include "QxXmlText.h"

#include "QxXmlScan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <new>
#include <utility>

namespace {

struct Entity {
    wchar_t character;
    std::wstring_view text; ///< what follows the "&"
};

constexpr std::array<Entity, 5> Entities{
    {{L'<', L"lt;"}, {L'&', L"amp;"}, {L'>', L"gt;"}, {L'\'', L"apos;"}, {L'"', L"quot;"}}};
/// Data escapes only the first three; an attribute value escapes all.
constexpr std::size_t DataEntities = 3;

/// The entity of each ASCII character; Entities.size() for none.
constexpr std::array<unsigned char, 128> MakeEntityOf() {
    std::array<unsigned char, 128> entityOf{};
    entityOf.fill(Entities.size());
    for (std::size_t entity = 0; entity < Entities.size(); ++entity)
        entityOf[static_cast<std::size_t>(Entities[entity].character)] = static_cast<unsigned char>(entity);
    return entityOf;
}

constexpr std::array<unsigned char, 128> EntityOf = MakeEntityOf();

/// Moved without a call of the C library: the end tags behind an appended element.
constexpr std::size_t ShortRest = 32;

/// Index into Entities; Entities.size() for none.
std::size_t FindEntity(wchar_t character) noexcept {
    const auto code = static_cast<std::size_t>(character);
    return code < EntityOf.size() ? EntityOf[code] : Entities.size();
}

#ifdef QX_XML_SCAN_SSE2
/// Two bits for each of eight characters, set if it must be escaped. Three comparisons find the five: only
/// one bit differs between "<" and ">", and between "&" and "'".
[[maybe_unused]] unsigned FindEscaped(__m128i block, QxXmlText::Escape kind) noexcept {
    const auto equals = [](__m128i characters, wchar_t sought) {
        return _mm_cmpeq_epi16(characters, _mm_set1_epi16(static_cast<short>(sought)));
    };
    __m128i found = equals(_mm_or_si128(block, _mm_set1_epi16(L'<' ^ L'>')), L'>');
    if (kind == QxXmlText::Escape::Data) {
        found = _mm_or_si128(found, equals(block, L'&'));
    } else {
        found = _mm_or_si128(found, equals(_mm_or_si128(block, _mm_set1_epi16(L'&' ^ L'\'')), L'\''));
        found = _mm_or_si128(found, equals(block, L'"'));
    }
    return static_cast<unsigned>(_mm_movemask_epi8(found));
}
#endif

/// Copies the characters before the first one to escape and returns their number. May write as many
/// characters as the text has.
template<QxXmlText::Escape Kind>
std::size_t CopyPlain(wchar_t* to, std::wstring_view text) noexcept {
    const std::size_t length = text.size();
#ifdef QX_XML_SCAN_SSE2
    if constexpr (sizeof(wchar_t) == 2) {
        // The last block may overlap the one before.
        for (std::size_t at = 0; length >= 8; at = std::min(at + 8, length - 8)) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to + at), block);
            if (const unsigned found = FindEscaped(block, Kind); found != 0)
                return at + static_cast<std::size_t>(std::countr_zero(found)) / 2;
            if (at == length - 8)
                return length;
        }
    }
#endif
    constexpr std::size_t escaped = Kind == QxXmlText::Escape::Attribute ? Entities.size() : DataEntities;
    std::size_t at = 0;
    for (; at < length && FindEntity(text[at]) >= escaped; ++at)
        to[at] = text[at];
    return at;
}

std::size_t CopyPlain(wchar_t* to, std::wstring_view text, QxXmlText::Escape kind) noexcept {
    return kind == QxXmlText::Escape::Data ? CopyPlain<QxXmlText::Escape::Data>(to, text)
                                           : CopyPlain<QxXmlText::Escape::Attribute>(to, text);
}

} // namespace

void QxXmlText::Grow(std::size_t length) {
    constexpr std::size_t limit = std::numeric_limits<std::size_t>::max() / sizeof(wchar_t) / 2;
    if (length > limit - m_size)
        throw std::bad_alloc();
    const std::size_t capacity = std::max(m_size + length, m_capacity * 2);
    auto characters = std::make_unique_for_overwrite<wchar_t[]>(capacity);
    std::copy_n(m_characters.get(), m_size, characters.get());
    m_characters = std::move(characters);
    m_capacity = capacity;
}

void QxXmlText::Assign(std::wstring_view text) {
    std::unique_ptr<wchar_t[]> old;
    if (text.size() > m_capacity) {
        auto characters = std::make_unique_for_overwrite<wchar_t[]>(text.size());
        old = std::exchange(m_characters, std::move(characters));
        m_capacity = text.size();
    }
    std::char_traits<wchar_t>::move(m_characters.get(), text.data(), text.size());
    m_size = text.size();
}

void QxXmlText::Replace(std::size_t from, std::size_t length, std::wstring_view text) {
    Reserve(text.size());
    wchar_t* const at = m_characters.get() + from;
    const std::wstring_view rest(at + length, m_size - from - length);
    if (rest.size() <= ShortRest) {
        std::array<wchar_t, ShortRest> copy;
        QxMisc::CopyText(copy.data(), rest);
        SetEnd(QxMisc::CopyText(QxMisc::CopyText(at, text), {copy.data(), rest.size()}));
        return;
    }
    std::char_traits<wchar_t>::move(at + text.size(), rest.data(), rest.size());
    QxMisc::CopyText(at, text);
    m_size += text.size() - length;
}

void QxXmlText::Append(std::wstring_view text) {
    Reserve(text.size());
    SetEnd(QxMisc::CopyText(End(), text));
}

void QxXmlText::AppendEscaped(std::wstring_view text, Escape kind) {
    // Enough if escaping adds at most a tenth and one entity.
    Reserve(text.size() + text.size() / 10 + 7);
    for (;;) {
        const std::size_t plain = CopyPlain(End(), text, kind);
        m_size += plain;
        if (plain == text.size())
            return;
        Append(L'&');
        Append(Entities[FindEntity(text[plain])].text);
        text.remove_prefix(plain + 1);
        Reserve(text.size());
    }
}

void QxXmlText::AppendUnescaped(std::wstring_view text) {
    Reserve(text.size());
    std::size_t copied = 0;
    for (std::size_t at = text.find(L'&'); at < text.size(); at = text.find(L'&', at + 1)) {
        for (const Entity& entity : Entities) {
            if (text.substr(at + 1, entity.text.size()) != entity.text)
                continue;
            Append(text.substr(copied, at - copied));
            Append(entity.character);
            at += entity.text.size();
            copied = at + 1;
            break;
        }
    }
    Append(text.substr(copied));
}

void QxXmlText::AppendElement(std::wstring_view name, std::wstring_view data) {
    Reserve(ElementRoom(name, data.size()));
    wchar_t* const start = PutStart(name);
    const std::size_t plain = CopyPlain<Escape::Data>(start, data);
    if (plain == data.size()) {
        PutEnd(name, start, start + plain);
        return;
    }
    SetEnd(start + plain);
    AppendEscaped(data.substr(plain), Escape::Data);
    AppendEndTag(name);
}

void QxXmlText::AppendStartTag(std::wstring_view name) {
    Reserve(name.size() + 1);
    wchar_t* at = End();
    *at++ = L'<';
    SetEnd(QxMisc::CopyText(at, name));
}

void QxXmlText::AppendEndTag(std::wstring_view name) {
    Reserve(name.size() + 3);
    wchar_t* at = End();
    *at++ = L'<';
    *at++ = L'/';
    at = QxMisc::CopyText(at, name);
    *at++ = L'>';
    SetEnd(at);
}

void QxXmlText::AppendAttribute(std::wstring_view name, std::wstring_view value) {
    Reserve(name.size() + 3);
    wchar_t* at = End();
    *at++ = L' ';
    at = QxMisc::CopyText(at, name);
    *at++ = L'=';
    *at++ = L'"';
    SetEnd(at);
    AppendEscaped(value, Escape::Attribute);
    Append(L'"');
}
