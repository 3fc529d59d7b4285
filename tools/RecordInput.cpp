#include "RecordInput.h"

#include "Console.h"

#include <new>

std::wstring InputProblem::Text() const {
    std::wstring place = file;
    if (record > 0)
        place += L":" + std::to_wstring(line) + L": record " + std::to_wstring(record);
    return place + L": " + reason;
}

void RecordInput::SkipTo(const Position& position) {
    const bool isEnd = position.files == m_files.size() && position.file.empty();
    if (!isEnd && (position.files >= m_files.size() || m_files[position.files] != position.file))
        throw ToolError(L"the files are not those of the interrupted run: file " +
                            std::to_wstring(position.files + 1) + L" was " + position.file,
                        L"Start again with another folder.");
    m_file = position.files;
    m_skip = m_records = position.records;
}

RecordInput::Position RecordInput::Behind() const {
    return {m_file, m_file < m_files.size() ? m_files[m_file] : L"", m_records};
}

RecordInput::Position RecordInput::Before() const {
    Position position = Behind();
    position.records -= position.records > 0 ? 1 : 0;
    return position;
}

bool RecordInput::NextRecord(RecordRows& rows, std::optional<InputProblem>& problem) {
    if (!m_stream)
        m_stream.emplace(m_files[m_file]);
    RecordText record;
    do {
        if (!m_stream->Next(record))
            return false;
        m_records = record.number;
    } while (record.number <= m_skip);
    if (m_stream->Size() > 0)
        Console::Progress(FileLabel(m_files[m_file]), static_cast<std::size_t>(m_stream->BytesRead() >> 10),
                          static_cast<std::size_t>(m_stream->Size() >> 10));
    if (const auto found = m_reader.Read(record, m_stream->Encoding(), rows))
        problem =
            InputProblem{found->code, FileLabel(m_files[m_file]), found->line, record.number, found->reason};
    return true;
}

/// The reason without the file's name.
InputProblem RecordInput::FileProblem(std::wstring reason) const {
    const std::wstring label = FileLabel(m_files[m_file]);
    if (reason.starts_with(label + L": "))
        reason.erase(0, label.size() + 2);
    return {ExitCannotRun, label, 0, 0, reason};
}

bool RecordInput::Next(RecordRows& rows, std::optional<InputProblem>& problem) {
    problem.reset();
    rows.Clear();
    while (m_file < m_files.size()) {
        try {
            if (NextRecord(rows, problem))
                return true;
        } catch (const ToolError& error) {
            problem = FileProblem(error.Message());
        } catch (const std::bad_alloc&) {
            problem = FileProblem(L"out of memory");
        }
        m_stream.reset();
        ++m_file;
        m_records = m_skip = 0;
        if (problem)
            return true;
    }
    return false;
}
