#pragma once

#include "common/text/CopyText.h"

#include <cstddef>
#include <memory>
#include <string_view>

/// A growing buffer of XML text: escaping, elements, attributes. The parser's edits and the writer share it,
/// so both produce the same characters.
///
/// An append that throws std::bad_alloc keeps the text before it.
class QxXmlText {
public:
    enum class Escape { Data, Attribute };

    explicit QxXmlText(std::size_t reserve = 0) { Reserve(reserve); }

    /// Makes room for that many more characters; a growing buffer at least doubles.
    void Reserve(std::size_t length) {
        if (m_capacity - m_size < length)
            Grow(length);
    }

    /// Keeps the buffer.
    void Clear() noexcept { m_size = 0; }
    /// Replaces everything by a text, which may be part of it.
    void Assign(std::wstring_view text);
    /// Replaces a piece by a text from elsewhere.
    void Replace(std::size_t from, std::size_t length, std::wstring_view text);
    void Append(std::wstring_view text);
    void Append(wchar_t character) {
        Reserve(1);
        m_characters[m_size++] = character;
    }
    /// Escapes "<", "&" and ">", in an attribute value also "'" and '"'.
    void AppendEscaped(std::wstring_view text, Escape kind);
    /// Decodes the five entities. Copies any other "&", numeric references included.
    void AppendUnescaped(std::wstring_view text);

    /// "<name>data</name>", or "<name/>" if data is empty.
    void AppendElement(std::wstring_view name, std::wstring_view data);
    /// The same for data of at most room characters without anything to escape. write takes the place for the
    /// data and returns its end.
    template<class Write>
    void AppendPlainElement(std::wstring_view name, std::size_t room, Write write) {
        Reserve(ElementRoom(name, room));
        wchar_t* const start = PutStart(name);
        PutEnd(name, start, write(start));
    }
    /// "<name".
    void AppendStartTag(std::wstring_view name);
    /// "</name>".
    void AppendEndTag(std::wstring_view name);
    /// ' name="value"'.
    void AppendAttribute(std::wstring_view name, std::wstring_view value);

    /// Valid until the next append.
    std::wstring_view View() const noexcept { return {m_characters.get(), m_size}; }

private:
    void Grow(std::size_t length);
    wchar_t* End() noexcept { return m_characters.get() + m_size; }
    void SetEnd(const wchar_t* end) noexcept { m_size = static_cast<std::size_t>(end - m_characters.get()); }

    static std::size_t ElementRoom(std::wstring_view name, std::size_t data) noexcept {
        return 2 * name.size() + data + 5;
    }
    /// Writes "<name>" and returns the place for the data.
    wchar_t* PutStart(std::wstring_view name) noexcept {
        wchar_t* at = End();
        *at++ = L'<';
        at = QxMisc::CopyText(at, name);
        *at++ = L'>';
        return at;
    }
    /// Completes the element whose data is between start and end.
    void PutEnd(std::wstring_view name, wchar_t* start, wchar_t* end) noexcept {
        if (start == end) {
            end[-1] = L'/';
        } else {
            *end++ = L'<';
            *end++ = L'/';
            end = QxMisc::CopyText(end, name);
        }
        *end++ = L'>';
        SetEnd(end);
    }

    std::unique_ptr<wchar_t[]> m_characters;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};
