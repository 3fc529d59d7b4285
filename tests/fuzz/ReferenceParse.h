#pragma once

#include "common/xml/QxXmlParser.h"

#include <string>
#include <string_view>
#include <vector>

/// A second parser, simple instead of fast: it recurses once per element and reads character by character.
/// Its results must equal those of QxXmlParser, including every offset.
class ReferenceParse {
public:
    using ElemPos = QxXmlParser::ElemPos;

    /// The text must outlive it.
    explicit ReferenceParse(std::wstring_view text);

    bool Succeeded() const noexcept { return m_succeeded; }
    /// Entry 0 is the virtual root.
    const std::vector<ElemPos>& Positions() const noexcept { return m_positions; }
    const std::wstring& Error() const noexcept { return m_error; }

    /// What the parser must return for an entry.
    std::wstring Data(std::size_t element) const;
    bool Attribute(std::size_t element, std::wstring_view name, std::wstring& value) const;
    std::wstring_view TagName(std::size_t element) const;
    std::wstring_view SubDocument(std::size_t element) const;

    static std::wstring Unescape(std::wstring_view text);

private:
    enum Found : std::int32_t { None = 0, Error_ = -1 };

    std::int32_t ParseElement(std::int32_t parent);
    bool FindStartTag(std::int32_t element, std::int32_t parent, std::int32_t& close, bool& isEndTag);
    bool ParseChildren(std::int32_t element);
    bool ParseEndTag(std::int32_t element);
    bool Fail(std::wstring_view before, std::int32_t element = 0, std::wstring_view after = {});
    std::int32_t Find(std::wstring_view part, std::int32_t from) const;
    bool NextToken(std::int32_t& at, std::wstring_view& token, bool& quoted) const;
    ElemPos& At(std::int32_t element) { return m_positions[static_cast<std::size_t>(element)]; }

    std::wstring_view m_text;
    std::vector<ElemPos> m_positions;
    std::wstring m_error;
    bool m_succeeded = false;
};
