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

    std::size_t Random(std::size_t count);
    template<std::size_t Count>
    std::string_view AnyOf(const std::string_view (&texts)[Count]);
    /// A known name, or one of the text's.
    std::string_view RandomName();
    std::string_view Part(std::size_t begin, std::size_t end) const;
    std::size_t NameEnd(const Element& element) const;
    std::string MutatedContent(const Element& element);

    void Replace(const Element& element, std::string_view text);
    void Insert(std::string_view part);
    void InsertNew();
    void Rename(const Element& element);
    /// Replaces the version, or adds one.
    void SetVersion(const Element& element);
    void SetContent(const Element& element, std::string_view content);

    std::string m_text;
    std::minstd_rand m_random;
    MutateBytes m_mutateBytes;
    std::vector<Element> m_elements; ///< in the order of their start tags
};
