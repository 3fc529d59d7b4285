#include "RecordStream.h"

#include "Console.h"

#include "common/text/TextEncoding.h"
#include "common/xml/QxXmlScan.h"

#include <algorithm>
#include <array>

namespace {

/// Whether the text begins with the word as a whole token.
bool StartsWithWord(std::wstring_view text, std::wstring_view word) {
    return (text.size() > word.size() ? QxXmlScan::EndsToken(text[word.size()])
                                      : text.size() == word.size()) &&
           QxXmlScan::Equal(text.substr(0, word.size()), word);
}

constexpr std::size_t Piece = std::size_t{1} * 1024 * 1024;
/// The parser's offsets have 32 bits.
constexpr std::size_t LongestRecord = std::size_t{256} * 1024 * 1024;
/// A comment without an end must not hide the records behind it.
constexpr std::size_t LongestComment = std::size_t{64} * 1024;
/// Longer than any name of a record.
constexpr std::size_t TagBeginning = 64;

/// Records that no record contains.
constexpr std::array<std::wstring_view, 5> OuterRecords{L"PrintJob", L"CopyJob", L"ScanJob", L"FaxJob",
                                                        L"LogicalPrinter"};

/// The part of UTF-8 or UTF-16 without a character that is cut off at its end.
std::size_t WholeCharacters(std::string_view bytes, std::string_view mark) {
    std::size_t size = bytes.size();
    if (mark.size() == 2) {
        size -= size % 2;
        const std::size_t high = mark[0] == '\xFF' ? size - 1 : size - 2;
        const bool isHalf = size > 2 && (static_cast<unsigned char>(bytes[high]) & 0xFC) == 0xD8;
        return isHalf ? size - 2 : size;
    }
    for (std::size_t back = 1; back <= 3 && back < size; ++back) {
        const auto byte = static_cast<unsigned char>(bytes[size - back]);
        if (byte >= 0xC0)
            return back < (byte >= 0xF0 ? 4u : byte >= 0xE0 ? 3u : 2u) ? size - back : size;
        if (byte < 0x80)
            break;
    }
    return size;
}

} // namespace

RecordStream::RecordStream(const std::wstring& path) : m_file(path), m_path(path) {
}

/// Returns false at the end of the file.
bool RecordStream::ReadMore() {
    if (m_isAtEnd)
        return false;
    if (m_text.size() - m_at > LongestRecord)
        throw ToolError(
            FileLabel(m_path) + L":" + std::to_wstring(m_line) +
            L": the record has more than 256 million characters; the rest of the file is not read");
    const std::size_t before = m_bytes.size();
    m_bytes.resize(before + Piece);
    const std::size_t read = m_file.Read(m_bytes.data() + before, Piece);
    m_bytes.resize(before + read);
    m_bytesRead += read;
    m_isAtEnd = read == 0;
    const bool isKnown = m_encoding[0] != L'\0';
    if (isKnown || m_isAtEnd || m_bytes.size() >= 3) // the longest mark
        Decode();
    return true;
}

void RecordStream::Decode() {
    const FileEncoding encoding = EncodingOf(m_bytes);
    if (m_encoding[0] == L'\0' && !encoding.hasMark)
        m_bytes.insert(0, encoding.mark);
    m_encoding = encoding.name;
    const std::size_t whole = m_isAtEnd ? m_bytes.size() : WholeCharacters(m_bytes, encoding.mark);
    m_text.erase(0, m_at);
    m_at = 0;
    if (m_text.empty() && m_text.capacity() > 16 * Piece)
        m_text.shrink_to_fit();
    TextEncoding::Malformed malformed;
    m_text += TextEncoding::Decode(std::string_view(m_bytes).substr(0, whole), &malformed);
    m_hasLost = m_hasLost || malformed.count > 0;
    m_bytes.erase(encoding.mark.size(), whole - encoding.mark.size());
}

bool RecordStream::Has(std::size_t offset) {
    while (m_at + offset >= m_text.size())
        if (!ReadMore())
            return false;
    return true;
}

/// At most `length` characters.
std::wstring_view RecordStream::Ahead(std::size_t offset, std::size_t length) {
    if (!Has(offset + length - 1) && !Has(offset))
        return {};
    return std::wstring_view(m_text).substr(m_at + offset, length);
}

std::size_t RecordStream::Find(wchar_t sought, std::size_t from) {
    while (Has(from)) {
        const auto at = QxXmlScan::Find(m_text, sought, static_cast<std::int32_t>(m_at + from));
        if (static_cast<std::size_t>(at) < m_text.size())
            return static_cast<std::size_t>(at) - m_at;
        from = m_text.size() - m_at;
    }
    return None;
}

void RecordStream::Consume(std::size_t length) {
    const auto begin = m_text.begin() + static_cast<std::ptrdiff_t>(m_at);
    m_line += static_cast<std::size_t>(std::count(begin, begin + static_cast<std::ptrdiff_t>(length), L'\n'));
    m_at += length;
}

/// The length of white space, a comment or a declaration; 0 if there is none.
std::size_t RecordStream::SkippedLength(std::size_t offset) {
    std::size_t length = 0;
    while (Has(offset + length) && QxXmlScan::IsSpace(m_text[m_at + offset + length]))
        ++length;
    const std::wstring_view beginning = Ahead(offset + length, 9);
    std::wstring_view end;
    if (beginning.starts_with(L"<!--"))
        end = L"-->";
    else if (beginning.starts_with(L"<![CDATA["))
        end = L"]]>";
    else if (beginning.starts_with(L"<?"))
        end = L"?>";
    else if (beginning.starts_with(L"<!"))
        end = L">";
    else
        return length;
    const std::wstring_view ahead = Ahead(offset + length, LongestComment);
    const std::size_t close = ahead.find(end, 2);
    return close == std::wstring_view::npos ? length : length + close + end.size();
}

bool RecordStream::StartsElement(std::size_t offset) {
    const std::wstring_view tag = Ahead(offset, 2);
    return tag.size() == 2 && tag[0] == L'<' && !QxXmlScan::EndsToken(tag[1]);
}

/// The length of the text up to the next element.
std::size_t RecordStream::OutsideLength() {
    std::size_t at = 1;
    while ((at = Find(L'<', at)) != None && !StartsElement(at))
        ++at;
    return at == None ? m_text.size() - m_at : at;
}

std::size_t RecordStream::RecordLength() {
    const std::wstring name(QxXmlScan::TagName(Ahead(0, TagBeginning), 0));
    m_root = QxXmlScan::WithoutPrefix(name);
    const std::size_t open = Find(L'<', 1);
    const std::size_t close = Find(L'>', 1);
    if (close != None && close < open && m_text[m_at + close - 1] == L'/')
        return close + 1;
    for (std::size_t at = open; at != None; at = Find(L'<', at + 1)) {
        const std::wstring_view tag = Ahead(at + 1, TagBeginning);
        if (tag.starts_with(L'!')) {
            at += std::max<std::size_t>(SkippedLength(at), 1) - 1;
        } else if (tag.starts_with(L'/')) {
            if (StartsWithWord(tag.substr(1), name)) {
                const std::size_t end = Find(L'>', at);
                return end == None ? m_text.size() - m_at : end + 1;
            }
        } else if (StartsWithWord(tag, name) ||
                   std::any_of(OuterRecords.begin(), OuterRecords.end(), [&](std::wstring_view outer) {
                       return tag.starts_with(outer[0]) && StartsWithWord(tag, outer);
                   })) {
            return at;
        }
    }
    return m_text.size() - m_at;
}

bool RecordStream::Next(RecordText& record) {
    Consume(m_length);
    m_length = 0;
    while (const std::size_t skipped = SkippedLength(0))
        Consume(skipped);
    if (!Has(0))
        return false;
    m_root.clear();
    m_length = StartsElement(0) ? RecordLength() : OutsideLength();
    const std::wstring_view text = std::wstring_view(m_text).substr(m_at, m_length);
    record = {text, m_root, ++m_number, m_line, m_hasLost && text.find(L'\xFFFD') != std::wstring_view::npos};
    return true;
}
