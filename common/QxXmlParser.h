#pragma once

#include "QxString.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The system's own markup reader and writer: one document text plus a flat array of element positions.
///
/// Parsing builds the array once; navigation walks it; reading cuts pieces out of the text and unescapes
/// them; editing replaces a piece of the text and shifts the offsets behind it. No operation recurses with
/// the document's depth. Comments, processing instructions, declarations and CDATA sections are skipped
/// while looking for elements. One parser is used by one thread at a time.
class QxXmlParser {
public:
    /// One element. All offsets are character offsets into the document, all links indices into the array.
    struct ElemPos {
        std::int32_t startTagOpen;  ///< "<" of the start tag
        std::int32_t startTagClose; ///< ">" of the start tag
        std::int32_t endTagOpen;    ///< "<" of the end tag; the "/" of an empty element
        std::int32_t endTagClose;   ///< ">" of the end tag; startTagClose for an empty element
        std::int32_t scanPos;       ///< the next "<" behind the element, or the end of the text
        std::int32_t parent;        ///< 0 for a top-level element
        std::int32_t firstChild;    ///< 0 if none
        std::int32_t nextSibling;   ///< 0 if none
    };

    QxXmlParser() = default;
    virtual ~QxXmlParser() = default;

    /// Stores the text and parses its first top-level element; what follows that element is ignored.
    /// Returns false, with no element, for an empty text or a parse error (see GetError).
    bool SetDocument(std::wstring_view text);
    const std::wstring& GetDocument() const noexcept { return m_document; }
    /// Text of the most recent parse error; a parse that succeeds leaves it alone.
    const QxString& GetError() const noexcept { return m_error; }

    // Navigation. A name is compared exactly, after dropping the element's namespace prefix; an empty name
    // takes any element. Views of names and texts are valid until the next edit or SetDocument.

    /// Clears the current element and the current child.
    void ResetPosition() noexcept;
    /// Makes the next matching sibling of the current element (the first top-level element when there is
    /// none) the current element and clears the current child. On failure nothing changes.
    bool FindElement(std::wstring_view name = {}, bool restart = false) noexcept;
    /// The same among the children of the current element, for the current child. Selects the first
    /// top-level element first when there is no current element.
    bool FindChildElement(std::wstring_view name = {}, bool restart = false) noexcept;
    /// The current child becomes the current element. False, and nothing changes, without a current child.
    bool IntoElement() noexcept;
    /// The current element becomes the current child of its parent. False, and nothing changes, at the top.
    bool OutOfElement() noexcept;

    // Reading the current element, or the current child. Without one, texts are empty.

    std::wstring_view GetTagName() const noexcept;
    std::wstring_view GetChildTagName() const noexcept;
    QxString GetData() const;
    QxString GetChildData() const;
    /// False, and value unchanged, when the attribute is not found. A value is found in double quotes only.
    bool FindAttribute(std::wstring_view name, QxString& value) const;
    bool FindChildAttribute(std::wstring_view name, QxString& value) const;
    /// Empty when not found.
    QxString GetAttribute(std::wstring_view name) const;
    QxString GetChildAttribute(std::wstring_view name) const;
    /// The element's markup through its end tag and the white space behind it.
    std::wstring_view GetSubDocument() const noexcept;
    std::wstring_view GetChildSubDocument() const noexcept;

    // Typed readers by child name, searching from the first child on. They make the found child current and
    // report whether it was found; the output is left unchanged when it was not.

    bool ReadChild(std::wstring_view name, QxString& value);
    bool ReadChild(std::wstring_view name, std::int32_t& value);
    bool ReadChild(std::wstring_view name, bool& value);

    // Editing. Keeps every position valid. New elements get no line break or indentation.

    /// Adds an element after the current element, or as the document's first element, and makes it current.
    void AddElement(std::wstring_view name, std::wstring_view data = {});
    /// Adds a child after the current child, or as the first child, and makes it the current child. Returns
    /// false when there is no current element to add to.
    bool AddChildElement(std::wstring_view name, std::wstring_view data = {});
    /// Replaces the whole content by text; children are dropped.
    bool SetData(std::wstring_view data);
    bool SetChildData(std::wstring_view data);
    /// Replaces the attribute's value, or adds the attribute behind the others.
    bool SetAttribute(std::wstring_view name, std::wstring_view value);
    bool SetChildAttribute(std::wstring_view name, std::wstring_view value);

    /// The positions in use; entry 0 is the virtual root. For tests and diagnostics.
    const ElemPos* Positions() const noexcept { return m_positions.data(); }
    std::size_t PositionCount() const noexcept { return m_positionCount; }

private:
    std::wstring m_document;
    QxString m_error;
    std::vector<ElemPos> m_positions;
    std::size_t m_positionCount = 0;
    std::int32_t m_current = 0;
    std::int32_t m_currentChild = 0;
};
