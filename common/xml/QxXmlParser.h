#pragma once

#include "common/text/QxString.h"
#include "common/text/QxStringPool.h"
#include "QxXmlScan.h"
#include "QxXmlText.h"

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
///
/// Failure: an allocation that fails throws std::bad_alloc and leaves a usable parser. A SetDocument that
/// throws leaves no element; an edit that throws leaves every position valid.
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
    QxXmlParser(QxXmlParser&&) = default;
    QxXmlParser& operator=(QxXmlParser&&) = default;
    virtual ~QxXmlParser() = default;

    /// Stores the text and parses its first top-level element; what follows that element is ignored.
    /// Returns false, with no element, for an empty text, a parse error (see GetError), or a text that is too
    /// long for 32-bit offsets; that one is not stored. The text may be a piece of the old document.
    bool SetDocument(std::wstring_view text);
    const std::wstring& GetDocument() const noexcept { return m_document; }
    /// Text of the most recent parse error; a parse that succeeds leaves it alone.
    const QxString& GetError() const noexcept { return m_error; }

    // Navigation. A name is compared exactly, after dropping the element's namespace prefix; an empty name
    // takes any element. Views of names and texts are valid until the next edit or SetDocument.

    // With restart, the position is reset (the current child cleared) first, found or not.

    /// Clears the current element and the current child.
    void ResetPosition() noexcept;
    /// Makes the next matching sibling of the current element (the first top-level element when there is
    /// none) the current element and clears the current child. On failure nothing changes.
    bool FindElement(std::wstring_view name = {}, bool restart = false) noexcept;
    /// The same among the children of the current element, for the current child. Selects the first
    /// top-level element first when there is no current element.
    bool FindChildElement(std::wstring_view name = {}, bool restart = false) noexcept;
    /// The same from the first child on, for a reader that asks for every name once; each is one token
    /// without a prefix. found is the reader's own, 0 at first: the last of the leading children that have
    /// all been found, each by another name, so that none of them needs to be compared again.
    bool FindUniqueChild(std::wstring_view name, std::int32_t& found) noexcept;
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
    /// The value as the document has it, not unescaped: for text in which an entity would be an error.
    std::wstring_view GetRawAttribute(std::wstring_view name) const noexcept;
    /// Numbers and flags as of a child's data.
    std::int32_t GetChildAttributeNumber(std::wstring_view name) const noexcept;
    bool GetChildAttributeFlag(std::wstring_view name) const noexcept;
    /// The element's markup through its end tag and the white space behind it.
    std::wstring_view GetSubDocument() const noexcept;
    std::wstring_view GetChildSubDocument() const noexcept;

    /// The leading decimal digits of the data, with a sign; 0 without digits.
    std::int32_t GetChildNumber() const noexcept;
    /// Whether the data is "true", in any case, or "1".
    bool GetChildFlag() const noexcept;

    // Editing. Keeps every position valid. New elements get no line break or indentation.

    /// Adds an element after the current element, or as the document's first element, and makes it current.
    void AddElement(std::wstring_view name, std::wstring_view data = {});
    /// Adds a child after the current child, or as the first child, and makes it the current child. Returns
    /// false when there is no current element to add to.
    bool AddChildElement(std::wstring_view name, std::wstring_view data = {});
    /// Replaces the whole content by text; children are dropped. False without an element, as are the other
    /// setters.
    bool SetData(std::wstring_view data);
    bool SetChildData(std::wstring_view data);
    /// Replaces the attribute's value, or adds the attribute behind the others. False, and nothing changes,
    /// when the start tag ends inside a quoted value, as a ">" there makes it.
    bool SetAttribute(std::wstring_view name, std::wstring_view value);
    bool SetChildAttribute(std::wstring_view name, std::wstring_view value);

    /// The positions in use; entry 0 is the virtual root. For tests and diagnostics.
    const ElemPos* Positions() const noexcept { return m_positions.data(); }
    std::size_t PositionCount() const noexcept { return m_positions.size(); }

private:
    ElemPos& At(std::int32_t element) { return m_positions[static_cast<std::size_t>(element)]; }
    const ElemPos& At(std::int32_t element) const { return m_positions[static_cast<std::size_t>(element)]; }
    bool IsEmptyElement(std::int32_t element) const noexcept {
        return At(element).startTagClose == At(element).endTagOpen + 1;
    }
    std::wstring_view Piece(std::int32_t from, std::int32_t to) const noexcept {
        return std::wstring_view(m_document.data() + from, static_cast<std::size_t>(to - from));
    }

    // Parsing
    void ClearElements();
    void ReservePositions();

    // Reading
    std::int32_t FirstTopLevel() const noexcept { return m_positions.empty() ? 0 : At(0).firstChild; }
    std::int32_t FindFrom(std::int32_t candidate, std::wstring_view name) const noexcept;
    bool HasPlainName(std::int32_t element, std::wstring_view name) const noexcept;
    std::wstring_view TagName(std::int32_t element) const noexcept;
    std::wstring_view Content(std::int32_t element, bool& raw) const noexcept;
    QxString Unescaped(std::wstring_view text) const;
    QxString Data(std::int32_t element) const;
    bool FindValue(std::int32_t element, std::wstring_view name, QxXmlScan::Token& value) const noexcept;
    std::wstring_view RawAttribute(std::int32_t element, std::wstring_view name) const noexcept;
    bool Attribute(std::int32_t element, std::wstring_view name, QxString& value) const;
    std::wstring_view SubDocument(std::int32_t element) const noexcept;

    // Editing
    std::int32_t Insert(std::int32_t parent, std::int32_t sibling, std::wstring_view name,
                        std::wstring_view data);
    std::int32_t NewElement(std::int32_t parent, std::int32_t sibling);
    void OpenEmptyElement(std::int32_t element, std::wstring_view content);
    bool ReplaceContent(std::int32_t element, std::wstring_view data);
    bool ReplaceAttribute(std::int32_t element, std::wstring_view name, std::wstring_view value);
    std::int32_t AttributesEnd(std::int32_t element) const noexcept;
    bool HasPlainStartTag(std::int32_t element) const noexcept;
    void ReplaceText(std::int32_t from, std::int32_t length, std::wstring_view text);
    void ShiftFrom(std::int32_t element, std::int32_t behind, std::int32_t difference) noexcept;

    std::wstring m_document;
    QxString m_error;
    mutable QxStringPool m_texts; ///< of the values that were read
    QxXmlText m_edit;             ///< the new text of the edit under way; kept for the next one
    std::vector<ElemPos> m_positions;
    std::int32_t m_current = 0;
    std::int32_t m_currentChild = 0;
};
