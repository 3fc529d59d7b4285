#pragma once

#include "CatalogueWords.h"
#include "RecordTables.h"

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

/// Finds words in rows for which the catalogue has no code. Rows keep the words, but their codes lack them.
class UnknownWords {
public:
    void Check(const RecordRows& rows);
    /// One message for each word, or one for a catalogue that cannot be read.
    std::vector<std::wstring> Messages() const;

private:
    using Use = CatalogueWords::Use;

    void CheckText(Use use, const TableCell& cell);

    CatalogueWords m_words;
    enum class State : std::uint8_t { Unread, Read, Failed } m_state = State::Unread;
    std::wstring m_path;
    /// What is unknown in a text. Texts repeat.
    std::map<Use, std::unordered_map<std::string, std::vector<std::wstring>>> m_texts;
    std::map<std::pair<Use, std::wstring>, std::size_t> m_counts;
};
