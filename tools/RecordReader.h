#pragma once

#include "Commands.h"
#include "RecordObject.h"
#include "RecordStream.h"
#include "RecordTables.h"
#include "XmlTree.h"

#include "JobObjects.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Why a record has no rows.
struct RecordProblem {
    ExitCode code; ///< ExitRefused or ExitNoRecord
    std::size_t line;
    std::wstring reason;
};

/// Turns records into rows through the library, which decides about versions, defaults and codes.
///
/// Reads all records of a class into one object, because creating a job creates its children by ProgID, which
/// takes ten times as long as reading it.
class RecordReader {
public:
    /// Throws ToolError if the library cannot be used.
    RecordReader();
    /// Clears and fills the rows. Without a problem, the record has at least one row.
    std::optional<RecordProblem> Read(const RecordText& record, const wchar_t* encoding, RecordRows& rows);

private:
    RecordObject& ObjectOf(const std::wstring& className);
    template<class Interface>
    static ComPtr<Interface> Child(const wchar_t* className);
    /// The object of that class after reading the text, as the given interface.
    template<class Interface>
    ComPtr<Interface> ReadInto(const wchar_t* className, const UniqueBstr& text);

    void ReadClass(const std::wstring& className, const UniqueBstr& text, RecordRows& rows);
    void ReadPart(const std::wstring& className, const UniqueBstr& text, RecordRows& rows);
    void PrintJob(const UniqueBstr& text, RecordRows& rows);
    template<class Interface>
    ComPtr<Interface> DeviceJob(const wchar_t* className, const UniqueBstr& text, RecordRows& rows);
    void Printer(const UniqueBstr& text, RecordRows& rows);
    void Contents(IJobContents* contents, TableRow& job, RecordRows& rows);
    void CopyLineElements(XmlTree::Element parent, RecordRows& rows);
    void Time(DATE date, const UniqueBstr& text, const wchar_t* element, TableCell& cell) const;

    std::map<std::wstring, RecordObject, std::less<>> m_objects;
    /// Given to each job before it reads. It drops a child that the record does not have.
    ComPtr<IPolicyResults> m_policy;
    ComPtr<IWindowsPrintInfo> m_printInfo;
    ComPtr<IJobContents> m_pageCounterContents;
    ComPtr<ICopyLine> m_line;
    XmlTree m_tree;
    DATE m_startUtc = 0, m_startLocal = 0;
};
