#include "QxXmlText.h"

#include <algorithm>
#include <array>

namespace QxXmlText {

namespace {

struct Entity {
    wchar_t character;
    std::wstring_view text; ///< what follows the "&"
};

constexpr std::array<Entity, 5> Entities{
    {{L'<', L"lt;"}, {L'&', L"amp;"}, {L'>', L"gt;"}, {L'\'', L"apos;"}, {L'"', L"quot;"}}};
/// Only an attribute value escapes the entities behind these.
constexpr std::size_t DataEntities = 3;

/// For each ASCII character, the position of its entity; Entities.size() for a character without one.
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

/// Room for text whose escaping costs a tenth, and for one more entity. At least doubles what is there, so
/// that many small pieces are not moved one by one.
void ReserveFor(std::wstring& out, std::size_t length) {
    const std::size_t needed = out.size() + length + length / 10 + 7;
    if (needed > out.capacity())
        out.reserve(std::max(needed, out.capacity() * 2));
}

} // namespace

void AppendEscaped(std::wstring& out, std::wstring_view text, Escape kind) {
    ReserveFor(out, text.size());
    const std::size_t escaped = kind == Escape::Attribute ? Entities.size() : DataEntities;
    std::size_t copied = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::size_t entity = FindEntity(text[at]);
        if (entity >= escaped)
            continue;
        out.append(text, copied, at - copied);
        out.push_back(L'&');
        out.append(Entities[entity].text);
        copied = at + 1;
    }
    out.append(text, copied);
}

void AppendUnescaped(std::wstring& out, std::wstring_view text) {
    ReserveFor(out, text.size());
    std::size_t copied = 0;
    for (std::size_t at = text.find(L'&'); at < text.size(); at = text.find(L'&', at + 1)) {
        for (const Entity& entity : Entities) {
            if (text.substr(at + 1, entity.text.size()) != entity.text)
                continue;
            out.append(text, copied, at - copied);
            out.push_back(entity.character);
            at += entity.text.size();
            copied = at + 1;
            break;
        }
    }
    out.append(text, copied);
}

void AppendElement(std::wstring& out, std::wstring_view name, std::wstring_view data) {
    out.push_back(L'<');
    out.append(name);
    if (data.empty()) {
        out.append(L"/>");
        return;
    }
    out.push_back(L'>');
    AppendEscaped(out, data, Escape::Data);
    out.append(L"</");
    out.append(name);
    out.push_back(L'>');
}

void AppendAttribute(std::wstring& out, std::wstring_view name, std::wstring_view value) {
    out.push_back(L' ');
    out.append(name);
    out.append(L"=\"");
    AppendEscaped(out, value, Escape::Attribute);
    out.push_back(L'"');
}

} // namespace QxXmlText
