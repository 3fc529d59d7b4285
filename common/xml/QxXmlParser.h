#pragma once

#include "common/text/QxString.h"
#include "common/text/QxStringPool.h"
#include "QxXmlScan.h"
#include "QxXmlText.h"
#include "XmlName.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// XML parser: the document text plus a flat array of element positions.
///
/// Parsing builds the array, navigation walks it, reading unescapes pieces of the text, editing replaces a
/// piece and shifts the offsets after it. No operation recurses with the document's depth. The search for
/// elements skips comments, processing instructions, declarations and CDATA sections. One thread at a time
/// may use a parser.
///
/// An allocation failure throws std::bad_alloc and leaves the parser usable: without elements after
/// SetDocument, with valid positions after an edit.
///
/// "Contract" marks operations without a caller in the library.
class QxXmlParser {
public:
    /// One element: character offsets into the document, and links as indices into the array.
    struct ElemPos {
        std::int32_t startTagOpen;  ///< "<" of the start tag
        std::int32_t startTagClose; ///< ">" of the start tag
        std::int32_t endTagOpen;    ///< "<" of the end tag; the "/" of an empty element
        std::int32_t endTagClose;   ///< ">" of the end tag; startTagClose for an empty element
        std::int32_t scanPos;       ///< the next "<" after the element, or the end of the text
        std::int32_t parent;        ///< 0 for a top-level element
        std::int32_t firstChild;    ///< 0 if none
        std::int32_t nextSibling;   ///< 0 if none
    };

    QxXmlParser() = default;
    virtual ~QxXmlParser() = default;

    /// Stores the text, which may be part of the current document, and parses its first top-level element;
    /// ignores the rest. False, without elements, for an empty text, a parse error (see GetError) or a text
    /// too long for 32-bit offsets, which is not stored either.
    bool SetDocument(std::wstring_view text);
    /// Contract.
    std::wstring_view GetDocument() const noexcept { return m_document.View(); }
    /// Contract. The most recent parse error; a successful parse does not clear it.
    const QxString& GetError() const noexcept { return m_error; }
    /// Contract. The offset of that error: the tag that is wrong or has no end, or the end of the text.
    std::int32_t GetErrorOffset() const noexcept { return m_errorOffset; }

    // Navigation. Names are case-sensitive and ignore the element's namespace prefix; an empty name matches
    // any element. Views are valid until the next edit or SetDocument.
    //
    // restart first resets the position (for a child: the current child), even if nothing is found.

    /// Clears the current element and the current child.
    void ResetPosition() noexcept;
    /// Moves to the next matching sibling, or without a current element to the first matching top-level
    /// element, and clears the current child. Without a match, returns false and changes nothing.
    bool FindElement(const SoughtName& name = {}, bool restart = false) noexcept;
    /// The same for the current child, among the children of the current element. Without a current element,
    /// selects the first top-level element first.
    bool FindChildElement(const SoughtName& name = {}, bool restart = false) noexcept;
    /// Searches from the first child on; fast for a reader that asks for each name once, in document order.
    /// name must be one token without a prefix. The reader keeps found, initially 0: the last leading child
    /// already consumed.
    bool FindUniqueChild(std::wstring_view name, std::int32_t& found) noexcept;
    /// Makes the current child the current element. Without one, returns false and changes nothing.
    bool IntoElement() noexcept;
    /// Makes the parent the current element and the element its current child. At the top, returns false and
    /// changes nothing.
    bool OutOfElement() noexcept;
    /// IntoElement, and until OutOfSubDocument the text ends behind the element's markup, as if that
    /// (GetChildSubDocument) had been parsed alone.
    bool IntoSubDocument() noexcept;
    /// Requires that the element is current again.
    void OutOfSubDocument() noexcept;
    /// Contract. Makes the element at that index of Positions(), which must be above 0, the current element
    /// and clears the current child.
    void SelectElement(std::int32_t element) noexcept;

    // Reading the current element or the current child. Without one, texts are empty.

    /// Contract.
    std::wstring_view GetTagName() const noexcept;
    /// Contract.
    std::wstring_view GetChildTagName() const noexcept;
    /// Contract.
    QxString GetData() const;
    QxString GetChildData() const;
    /// False, with value unchanged, if the attribute is missing or not in double quotes.
    bool FindAttribute(const SoughtName& name, QxString& value) const;
    bool FindChildAttribute(const SoughtName& name, QxString& value) const;
    /// Contract. Empty if not found.
    QxString GetAttribute(const SoughtName& name) const;
    /// Empty if not found.
    QxString GetChildAttribute(const SoughtName& name) const;
    /// The value without unescaping, for text in which an entity would be an error.
    std::wstring_view GetRawAttribute(const SoughtName& name) const noexcept;
    /// Converted like GetChildNumber and GetChildFlag.
    std::int32_t GetChildAttributeNumber(const SoughtName& name) const noexcept;
    bool GetChildAttributeFlag(const SoughtName& name) const noexcept;
    /// Contract. The element's markup and the white space after it.
    std::wstring_view GetSubDocument() const noexcept;
    /// The element's markup and the white space after it.
    std::wstring_view GetChildSubDocument() const noexcept;

    /// The leading decimal number of the data; 0 without digits.
    std::int32_t GetChildNumber() const noexcept;
    /// Whether the data is "true", in any case, or "1".
    bool GetChildFlag() const noexcept;

    // Editing: contract. Positions stay valid. New elements get no line break or indentation.

    /// Adds an element after the current element, or as the document's first, and makes it current.
    void AddElement(std::wstring_view name, std::wstring_view data = {});
    /// Adds a child after the current child, or as the first, and makes it the current child. False without a
    /// current element.
    bool AddChildElement(std::wstring_view name, std::wstring_view data = {});
    /// Replaces the whole content, children included, by text. Setters return false without an element.
    bool SetData(std::wstring_view data);
    bool SetChildData(std::wstring_view data);
    /// Replaces the attribute's value, or adds the attribute after the others. Also false, without a change,
    /// if the start tag ends inside a quoted value: parsing ends it at the first ">".
    bool SetAttribute(std::wstring_view name, std::wstring_view value);
    bool SetChildAttribute(std::wstring_view name, std::wstring_view value);

    /// Contract. The positions in use, in document order; entry 0 is the virtual root.
    const ElemPos* Positions() const noexcept { return m_positions.data(); }
    std::size_t PositionCount() const noexcept { return m_positions.size(); }

private:
    struct AttributeValue {
        std::wstring_view text;
        bool hasEntity = false; ///< false: nothing to unescape
    };
    /// A name in a start tag, without prefix, and what follows it.
    struct AttributePos {
        std::wstring_view name;
        AttributeValue value;
        bool hasValue = false; ///< false: no "=" or no quoted value follows
    };
    /// The attributes of one element as far as they have been read, so that reading all of them by name scans
    /// the start tag once.
    struct AttributeScan {
        static constexpr std::size_t Most = 8; ///< later ones are scanned each time
        std::int32_t element = 0;              ///< 0 if none
        std::int32_t next = 0;                 ///< where the scan continues
        std::size_t count = 0;
        std::array<AttributePos, Most + 1> attributes; ///< the last entry is the one being read
    };

    ElemPos& At(std::int32_t element) { return m_positions[static_cast<std::size_t>(element)]; }
    const ElemPos& At(std::int32_t element) const { return m_positions[static_cast<std::size_t>(element)]; }
    bool IsEmptyElement(std::int32_t element) const noexcept {
        return At(element).startTagClose == At(element).endTagOpen + 1;
    }
    /// The document, or its part up to the end of the sub-document.
    std::wstring_view Text() const noexcept {
        return std::wstring_view(GetDocument().data(), GetDocument().size() - m_behind);
    }
    std::wstring_view Piece(std::int32_t from, std::int32_t to) const noexcept {
        return std::wstring_view(GetDocument().data() + from, static_cast<std::size_t>(to - from));
    }

    // Parsing
    void ClearElements();
    void ReservePositions();

    // Reading
    std::int32_t FirstTopLevel() const noexcept { return m_positions.empty() ? 0 : At(0).firstChild; }
    std::int32_t FindFrom(std::int32_t candidate, const SoughtName& name) const noexcept;
    bool HasName(std::int32_t element, const SoughtName& name) const noexcept;
    bool HasPlainName(std::int32_t element, std::wstring_view name) const noexcept;
    bool HasSpacedOrPrefixedName(std::int32_t element, std::wstring_view name) const noexcept;
    std::wstring_view TagName(std::int32_t element) const noexcept;
    std::wstring_view Content(std::int32_t element, bool& raw) const noexcept;
    QxString Unescaped(std::wstring_view text) const;
    bool HasEntity(std::wstring_view content) const noexcept;
    QxString Data(std::int32_t element) const;
    const AttributeValue* FindValue(std::int32_t element, const SoughtName& name) const noexcept;
    bool ReadSought(std::int32_t& next, const SoughtName& name, AttributePos& attribute) const noexcept;
    bool ReadPlainAttribute(std::int32_t& next, AttributePos& attribute) const noexcept;
    bool ReadAttribute(std::int32_t& next, AttributePos& attribute) const noexcept;
    bool ReadQuoted(std::int32_t from, std::int32_t& next, AttributeValue& value) const noexcept;
    QxString TextOf(const AttributeValue& value) const;
    std::wstring_view RawAttribute(std::int32_t element, const SoughtName& name) const noexcept;
    bool Attribute(std::int32_t element, const SoughtName& name, QxString& value) const;
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

    QxXmlText m_document;
    std::size_t m_behind = 0; ///< characters behind the sub-document
    QxString m_error;
    std::int32_t m_errorOffset = 0;
    mutable QxStringPool m_texts; ///< allocates returned values
    mutable AttributeScan m_attributes;
    QxXmlText m_edit; ///< the new text of an edit; a member to reuse its buffer
    std::vector<ElemPos> m_positions;
    std::int32_t m_current = 0;
    std::int32_t m_currentChild = 0;
};
