#include "UnknownWords.h"

#include "Escaping.h"
#include "Installation.h"
#include "Utf8.h"

namespace {

/// Texts that do not repeat must not fill the memory.
constexpr std::size_t MostTexts = 10000;
constexpr std::size_t MostWords = 100;

const wchar_t* NameOf(CatalogueWords::Use use) {
    switch (use) {
    case CatalogueWords::Use::PaperSize:
        return L"paper size ";
    case CatalogueWords::Use::PageAttributes:
        return L"page attribute ";
    case CatalogueWords::Use::Finishing:
        return L"finishing option ";
    default:
        return L"language ";
    }
}

} // namespace

void UnknownWords::CheckText(Use use, const TableCell& cell) {
    if (cell.Text().empty())
        return;
    auto& texts = m_texts[use];
    auto known = texts.find(cell.Text());
    if (known == texts.end()) {
        if (texts.size() == MostTexts)
            texts.clear();
        known = texts.emplace(cell.Text(), m_words.Unknown(use, Wide(cell.Text()))).first;
    }
    for (const std::wstring& word : known->second)
        if (const auto key = std::pair(use, word); m_counts.size() < MostWords || m_counts.contains(key))
            ++m_counts[key];
}

void UnknownWords::Check(const RecordRows& rows) {
    if (m_state == State::Unread) {
        m_path = CatalogueBeside(LoadedLibrary());
        m_state = m_words.Load(m_path) ? State::Read : State::Failed;
    }
    if (m_state == State::Failed)
        return;
    for (const TableRow& line : rows[RecordTable::CopyLines]) {
        CheckText(Use::PaperSize, line[CopyLineColumn("paper_size")]);
        CheckText(Use::PageAttributes, line[CopyLineColumn("attributes")]);
    }
    for (const TableRow& job : rows[RecordTable::Jobs]) {
        CheckText(Use::Finishing, job[JobColumn("job_finishing")]);
        CheckText(Use::Pdl, job[JobColumn("job_pdl")]);
    }
}

std::vector<std::wstring> UnknownWords::Messages() const {
    std::vector<std::wstring> messages;
    if (m_state == State::Failed)
        messages.push_back(L"The catalogue " + m_path +
                           L" cannot be read: the codes of papers and attributes are 0.");
    for (const auto& [key, count] : m_counts)
        messages.push_back(L"The catalogue does not define the " + std::wstring(NameOf(key.first)) +
                           Quoted(key.second) + L": " + Count(count, L"row") + L" without its code");
    return messages;
}
