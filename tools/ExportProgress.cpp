#include "ExportProgress.h"

#include "Console.h"
#include "NewFile.h"
#include "TextFile.h"
#include "Utf8.h"

#include <map>

namespace {

constexpr wchar_t Introduction[] =
    L"The tables in this folder are partial. To complete them, repeat the command with --continue.\r\n";

std::map<std::wstring, std::wstring> ReadValues(const std::wstring& path) {
    std::map<std::wstring, std::wstring> values;
    const std::wstring text = ReadTextFile(path).text;
    for (std::size_t at = 0, end; (end = text.find(L"\r\n", at)) != std::wstring::npos; at = end + 2) {
        const std::wstring line = text.substr(at, end - at);
        if (const std::size_t equals = line.find(L'='); equals != std::wstring::npos)
            values[line.substr(0, equals)] = line.substr(equals + 1);
    }
    return values;
}

} // namespace

void ExportProgress::Write(const std::wstring& path) const {
    std::wstring text = Introduction;
    const auto add = [&](const std::wstring& name, const std::wstring& value) {
        text += name + L"=" + value + L"\r\n";
    };
    add(L"files", std::to_wstring(position.files));
    add(L"file", position.file);
    add(L"records", std::to_wstring(position.records));
    for (std::size_t table = 0; table < Tables; ++table) {
        add(L"size" + std::to_wstring(table), std::to_wstring(sizes.at(table)));
        add(L"rows" + std::to_wstring(table), std::to_wstring(rowCounts.at(table)));
    }
    add(L"result", std::to_wstring(result));
    add(L"complete", std::to_wstring(static_cast<int>(isComplete)));

    WriteNewFile(path, Utf8(text));
}

ExportProgress ExportProgress::Read(const std::wstring& path) {
    auto values = ReadValues(path);
    const auto number = [&](const std::wstring& name) {
        const std::wstring& value = values[name];
        // Nineteen digits always fit 64 bits.
        if (value.empty() || value.size() > 19 || value.find_first_not_of(L"0123456789") != std::wstring::npos)
            throw ToolError(path + L": the file is damaged", L"Export again into another folder.");
        return std::stoull(value);
    };
    ExportProgress progress;
    progress.position = {static_cast<std::size_t>(number(L"files")), values[L"file"],
                         static_cast<std::size_t>(number(L"records"))};
    for (std::size_t table = 0; table < Tables; ++table) {
        progress.sizes.at(table) = number(L"size" + std::to_wstring(table));
        progress.rowCounts.at(table) = number(L"rows" + std::to_wstring(table));
    }
    progress.result = static_cast<ExitCode>(number(L"result"));
    progress.isComplete = number(L"complete") != 0;
    return progress;
}
