#include "DocumentMutator.h"

#include "tests/support/ComClient.h"
#include "tests/support/ProgramFolder.h"

#include <algorithm>

namespace {

constexpr std::size_t LongestDocument = 100000;

const wchar_t OddCharacters[] = {
    L'<',  L'>',   L'&',    L'"',    L'\'',     L'/',      L'=',      L';',      L'!',     L'?', L'-',
    L'[',  L']',   L'#',    L':',    L' ',      L'\t',     L'\n',     L'0',      L'-',     L'9', L'a',
    L'\0', L'\x1', L'\x7F', L'\xE9', L'\x2028', L'\xD83D', L'\xDE00', L'\xFEFF', L'\xFFFF'};
const std::wstring_view Tokens[] = {L"<",
                                    L">",
                                    L"/>",
                                    L"</",
                                    L"<a>",
                                    L"</a>",
                                    L"<a/>",
                                    L"<!--",
                                    L"-->",
                                    L"<![CDATA[",
                                    L"]]>",
                                    L"<?xml ?>",
                                    L"<?",
                                    L"?>",
                                    L"<!DOCTYPE a [<!ENTITY b \"c\">]>",
                                    L"&amp;",
                                    L"&lt;",
                                    L"&#0;",
                                    L"&#xD800;",
                                    L"&#x110000;",
                                    L"&#65;",
                                    L"&#99999999999;",
                                    L"&b;",
                                    L"&",
                                    L"&&&;",
                                    L" Version=\"7.26\"",
                                    L" Version=\"\"",
                                    L" Version=\"-1.-1\"",
                                    L" Type=\"Device\"",
                                    L" a='b' a='b'",
                                    L"<CopyLine>",
                                    L"</CopyLine>",
                                    L"<CopyLine/>",
                                    L"<JobContents>",
                                    L"<JobCopyLines/>",
                                    L"<WindowsPrintInfo/>",
                                    L"<PolicyResults/>",
                                    L"<PrintJob Version=\"4.1\">",
                                    L"</PrintJob>",
                                    L"true",
                                    L"2010-02-30T25:61:61",
                                    L"9999-12-31T23:59:59",
                                    L"0100-01-01T00:00:00",
                                    L"4294967296.4294967296"};
const std::wstring_view Numbers[] = {L"0",
                                     L"-1",
                                     L"2147483647",
                                     L"2147483648",
                                     L"-2147483648",
                                     L"-2147483649",
                                     L"4294967295",
                                     L"4294967296",
                                     L"18446744073709551616",
                                     L"99999999999999999999999999999999999",
                                     L"1e9",
                                     L"0x7FFFFFFF",
                                     L"007",
                                     L"3.5",
                                     L"3.9",
                                     L"4.2.0.1",
                                     L"4.0.0.0.0",
                                     L".",
                                     L""};

/// A piece of the text.
struct Piece {
    std::size_t start;
    std::size_t length;
};

Piece SomePiece(Random& random, const std::wstring& text) {
    const std::size_t start = random.Below(text.size() + 1);
    const std::size_t longest = std::min<std::size_t>(text.size() - start, random.OneIn(4) ? 2000 : 40);
    return {start, random.Below(longest + 1)};
}

/// A random tag's name, after "<" or "</"; length 0 if none is found.
Piece SomeName(Random& random, const std::wstring& text) {
    const std::size_t open = text.find(L'<', random.Below(text.size()));
    if (open == std::wstring::npos)
        return {0, 0};
    const std::size_t start = open + 1 + (text.compare(open + 1, 1, L"/") == 0);
    return {start, std::min(text.find_first_of(L" />", start), text.size()) - start};
}

void ChangeCharacters(Random& random, std::wstring& text) {
    for (std::uint32_t i = random.Below(4) + 1; i > 0 && !text.empty(); --i)
        text[random.Below(text.size())] = random.Of(OddCharacters);
}

void ChangeBit(Random& random, std::wstring& text) {
    if (!text.empty())
        text[random.Below(text.size())] ^= static_cast<wchar_t>(1u << random.Below(16));
}

void DeletePiece(Random& random, std::wstring& text) {
    const Piece piece = SomePiece(random, text);
    text.erase(piece.start, piece.length);
}

void RepeatPiece(Random& random, std::wstring& text) {
    const Piece piece = SomePiece(random, text);
    const std::wstring copy = text.substr(piece.start, piece.length);
    for (std::uint32_t i = random.OneIn(8) ? 50 : 1; i > 0 && text.size() < LongestDocument; --i)
        text.insert(piece.start, copy);
}

void MovePiece(Random& random, std::wstring& text) {
    const Piece piece = SomePiece(random, text);
    const std::wstring moved = text.substr(piece.start, piece.length);
    text.erase(piece.start, piece.length);
    text.insert(random.Below(text.size() + 1), moved);
}

void SwapTags(Random& random, std::wstring& text) {
    Piece first = SomeName(random, text), second = SomeName(random, text);
    if (first.start > second.start)
        std::swap(first, second);
    if (first.start + first.length > second.start)
        return;
    const std::wstring name = text.substr(first.start, first.length);
    const std::wstring other = text.substr(second.start, second.length);
    text.replace(second.start, second.length, name);
    text.replace(first.start, first.length, other);
}

void Truncate(Random& random, std::wstring& text) {
    text.resize(random.Below(text.size() + 1));
}

void ChangeNumber(Random& random, std::wstring& text) {
    const std::size_t start = text.find_first_of(L"0123456789", random.Below(text.size()));
    if (start == std::wstring::npos)
        return;
    const std::size_t end = std::min(text.find_first_not_of(L"0123456789", start), text.size());
    text.replace(start, end - start, random.Of(Numbers));
}

void InsertToken(Random& random, std::wstring& text) {
    text.insert(random.Below(text.size() + 1), random.Of(Tokens));
}

/// Nests a piece, sometimes the whole text, deep inside elements, which may lack their end tags.
void Nest(Random& random, std::wstring& text) {
    const Piece piece = random.OneIn(4) ? Piece{0, text.size()} : SomePiece(random, text);
    const std::uint32_t depth = random.OneIn(8) ? 10000 : random.Below(50) + 1;
    std::wstring before, after;
    for (std::uint32_t i = 0; i < depth; ++i) {
        before += L"<a>";
        after += L"</a>";
    }
    if (!random.OneIn(4))
        text.insert(piece.start + piece.length, after);
    text.insert(piece.start, before);
}

using Mutation = void (*)(Random&, std::wstring&);
/// The parser refuses most damage to markup at once. Damaged numbers reach the records, so their mutations
/// are more frequent.
constexpr Mutation Mutations[] = {ChangeNumber, ChangeNumber, ChangeNumber, ChangeCharacters,
                                  ChangeBit,    DeletePiece,  RepeatPiece,  MovePiece,
                                  SwapTags,     SwapTags,     ChangeNumber, ChangeNumber,
                                  InsertToken,  InsertToken,  Truncate,     Nest};

} // namespace

std::wstring WithRoot(const std::wstring& document, const wchar_t* root) {
    const std::size_t start = document.find(L'<') + 1;
    const std::size_t end = document.find_first_of(L" />", start);
    const std::size_t closing = document.rfind(L"</");
    if (start == 0 || end == std::wstring::npos || closing == std::wstring::npos || closing < end)
        return document;
    return document.substr(0, start) + root + document.substr(end, closing + 2 - end) + root + L">";
}

DocumentMutator::DocumentMutator(std::uint32_t seed) : m_seed(seed) {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(TestDataFolder() / "golden"))
        names.push_back(file.path().filename().string());
    std::sort(names.begin(), names.end());
    for (const std::string& name : names)
        m_originals.push_back(ReadTestFile(("golden/" + name).c_str()));
}

std::wstring DocumentMutator::Document(int number) const {
    Random random(std::uint64_t{m_seed} << 32 | static_cast<std::uint32_t>(number));
    std::wstring text = random.Of(m_originals);
    if (random.OneIn(10)) {
        // The start of one document and the end of another.
        const std::wstring& other = random.Of(m_originals);
        Truncate(random, text);
        text += other.substr(random.Below(other.size() + 1));
    }
    for (std::uint32_t i = random.OneIn(4) ? random.Below(6) + 2 : 1; i > 0; --i)
        random.Of(Mutations)(random, text);
    if (text.size() > LongestDocument)
        text.resize(LongestDocument);
    return text;
}
