#include "QxXmlText.h"

#include "QxXmlScan.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

namespace {

struct Entity {
    wchar_t character;
    std::wstring_view text; ///< what follows the "&"
};

constexpr std::array<Entity, 5> Entities{
    {{L'<', L"lt;"}, {L'&', L"amp;"}, {L'>', L"gt;"}, {L'\'', L"apos;"}, {L'"', L"quot;"}}};
/// Data escapes only the first three; an attribute value escapes all.
constexpr std::size_t DataEntities = 3;

/// Index into Entities for each ASCII character; Entities.size() for none.
constexpr std::array<unsigned char, 128> MakeEntityOf() {
    std::array<unsigned char, 128> entityOf{};
    entityOf.fill(Entities.size());
    for (std::size_t entity = 0; entity < Entities.size(); ++entity)
        entityOf[static_cast<std::size_t>(Entities[entity].character)] = static_cast<unsigned char>(entity);
    return entityOf;
}

constexpr std::array<unsigned char, 128> EntityOf = MakeEntityOf();

std::size_t FindEntity(wchar_t character) noexcept {
    const auto code = static_cast<std::size_t>(character);
    return code < EntityOf.size() ? EntityOf[code] : Entities.size();
}

/// The offset of the next character to escape, or the text's length.
std::size_t FindEscaped(std::wstring_view text, std::size_t from, QxXmlText::Escape kind) noexcept {
    std::size_t at = from;
#ifdef QX_XML_SCAN_SSE2
    if constexpr (sizeof(wchar_t) == 2) {
        // Skips blocks without any of the five characters, whatever the kind. The last block overlaps the one
        // before it.
        for (; text.size() >= 8 && at < text.size(); at += 8) {
            at = std::min(at, text.size() - 8);
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
            __m128i found = _mm_setzero_si128();
            for (const Entity& entity : Entities)
                found = _mm_or_si128(
                    found, _mm_cmpeq_epi16(block, _mm_set1_epi16(static_cast<short>(entity.character))));
            if (_mm_movemask_epi8(found) != 0)
                break;
        }
        at = std::max(at, from);
    }
#endif
    const std::size_t escaped = kind == QxXmlText::Escape::Attribute ? Entities.size() : DataEntities;
    while (at < text.size() && FindEntity(text[at]) >= escaped)
        ++at;
    return at;
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

void QxXmlText::Append(std::wstring_view text) {
    Reserve(text.size());
    SetEnd(QxXmlScan::Copy(End(), text));
}

void QxXmlText::AppendEscaped(std::wstring_view text, Escape kind) {
    // Enough if escaping adds at most a tenth and one entity.
    Reserve(text.size() + text.size() / 10 + 7);
    std::size_t copied = 0;
    std::size_t at = FindEscaped(text, 0, kind);
    while (at < text.size()) {
        Append(text.substr(copied, at - copied));
        Append(L'&');
        Append(Entities[FindEntity(text[at])].text);
        copied = at + 1;
        at = FindEscaped(text, copied, kind);
    }
    Append(text.substr(copied));
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
    if (FindEscaped(data, 0, Escape::Data) == data.size()) {
        AppendPlainElement(name, data);
        return;
    }
    AppendStartTag(name);
    Append(L'>');
    AppendEscaped(data, Escape::Data);
    AppendEndTag(name);
}

void QxXmlText::AppendPlainElement(std::wstring_view name, std::wstring_view data) {
    Reserve(2 * name.size() + data.size() + 5);
    wchar_t* at = End();
    *at++ = L'<';
    at = QxXmlScan::Copy(at, name);
    if (data.empty()) {
        *at++ = L'/';
    } else {
        *at++ = L'>';
        at = QxXmlScan::Copy(at, data);
        *at++ = L'<';
        *at++ = L'/';
        at = QxXmlScan::Copy(at, name);
    }
    *at++ = L'>';
    SetEnd(at);
}

void QxXmlText::AppendStartTag(std::wstring_view name) {
    Reserve(name.size() + 1);
    wchar_t* at = End();
    *at++ = L'<';
    SetEnd(QxXmlScan::Copy(at, name));
}

void QxXmlText::AppendEndTag(std::wstring_view name) {
    Reserve(name.size() + 3);
    wchar_t* at = End();
    *at++ = L'<';
    *at++ = L'/';
    at = QxXmlScan::Copy(at, name);
    *at++ = L'>';
    SetEnd(at);
}

void QxXmlText::AppendAttribute(std::wstring_view name, std::wstring_view value) {
    Reserve(name.size() + 3);
    wchar_t* at = End();
    *at++ = L' ';
    at = QxXmlScan::Copy(at, name);
    *at++ = L'=';
    *at++ = L'"';
    SetEnd(at);
    AppendEscaped(value, Escape::Attribute);
    Append(L'"');
}
