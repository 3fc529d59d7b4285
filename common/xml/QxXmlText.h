#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

/// Markup text under construction, in one growing buffer: escaping, and how an element and an attribute are
/// written. Shared by the parser's edits and by the writer, so that both give the same characters.
///
/// Failure: an append throws std::bad_alloc and leaves the text before it in place.
class QxXmlText {
public:
    enum class Escape { Data, Attribute };

    explicit QxXmlText(std::size_t reserve = 0) { Reserve(reserve); }

    /// Room for that many more characters; at least doubles the buffer when it grows.
    void Reserve(std::size_t length) {
        if (m_capacity - m_size < length)
            Grow(length);
    }

    /// Keeps the buffer.
    void Clear() noexcept { m_size = 0; }
    void Append(std::wstring_view text);
    void Append(wchar_t character) {
        Reserve(1);
        m_characters[m_size++] = character;
    }
    /// With "<", "&", ">" escaped, and "'" and '"' too in an attribute value.
    void AppendEscaped(std::wstring_view text, Escape kind);
    /// With the five entities decoded; any other "&" is copied. Numeric references stay as they are.
    void AppendUnescaped(std::wstring_view text);

    /// "<name>data</name>", or "<name/>" when data is empty.
    void AppendElement(std::wstring_view name, std::wstring_view data);
    /// The same with data that has nothing to escape.
    void AppendPlainElement(std::wstring_view name, std::wstring_view data);
    /// "<name", without its end.
    void AppendStartTag(std::wstring_view name);
    /// "</name>".
    void AppendEndTag(std::wstring_view name);
    /// ' name="value"'.
    void AppendAttribute(std::wstring_view name, std::wstring_view value);

    /// Valid until the next append.
    std::wstring_view View() const noexcept { return {m_characters.get(), m_size}; }
    std::size_t Capacity() const noexcept { return m_capacity; }

private:
    void Grow(std::size_t length);
    wchar_t* End() noexcept { return m_characters.get() + m_size; }
    void SetEnd(const wchar_t* end) noexcept { m_size = static_cast<std::size_t>(end - m_characters.get()); }

    std::unique_ptr<wchar_t[]> m_characters;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};
