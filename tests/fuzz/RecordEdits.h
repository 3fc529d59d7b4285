#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// Random edits of a record's XML. They keep a parseable text parseable, so they reach states behind the
/// parser that edits of bytes rarely reach.
class RecordEdits {
public:
    /// Changes bytes at random and returns their new number, at most maxSize.
    using MutateBytes = std::size_t (*)(unsigned char* bytes, std::size_t size, std::size_t maxSize);

    RecordEdits(std::string_view text, unsigned seed, MutateBytes mutateBytes);

    const std::string& Text() const noexcept { return m_text; }

    /// Makes one edit. False if nothing can be edited.
    bool Edit();
    /// Inserts an element of another text. False if one of the texts has none.
    bool Graft(std::string_view other);

private:
    /// Offsets in the text.
    struct Element {
        std::size_t open, contentBegin, contentEnd, end;
    };

    static std::vector<Element> FindElements(std::string_view text);
    static std::size_t NameEnd(std::string_view text, const Element& element);

    std::size_t Random(std::size_t count);
    /// Not the root, unless that is the only one.
    Element RandomChild();
    std::string_view RandomName();
    std::string_view Part(std::size_t begin, std::size_t end) const;

    void Replace(const Element& element, std::string_view text);
    void Insert(std::string_view part);
    void Rename(const Element& element);
    void SetAttribute(const Element& element);
    void SetContent(const Element& element);
    void MutateContent(const Element& element);

    std::string m_text;
    std::minstd_rand m_random;
    MutateBytes m_mutateBytes;
    std::vector<Element> m_elements; ///< in the order of their start tags
};
