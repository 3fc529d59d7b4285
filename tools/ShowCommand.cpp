// show: the properties of records.

#include "Commands.h"
#include "Console.h"
#include "Findings.h"
#include "RecordObject.h"
#include "RecordWalk.h"

namespace {

UniqueBstr ReadBstr(const std::wstring& path, const wchar_t*& encoding) {
    const TextFile file = ReadTextFile(path);
    encoding = file.encoding;
    return UniqueBstr(file.text);
}

/// The class that reads a text; empty, with a message, if it is not a record.
std::wstring ClassOf(std::wstring_view text, const wchar_t* encoding, const std::wstring& label) {
    XmlTree tree;
    if (!tree.Parse(text)) {
        const XmlTree::Place place = tree.PlaceOf(tree.ErrorOffset());
        Console::ErrorLine(label + L":" + std::to_wstring(place.line) + L":" + std::to_wstring(place.column) +
                           L": " + tree.Error() + L" (the file is read as " + encoding + L")");
        return {};
    }
    const std::wstring root(tree.Root().Name());
    std::wstring className = RecordObject::ClassOfRoot(root);
    if (className.empty())
        Console::ErrorLine(label + L": no record has the root element " + root);
    return className;
}

ExitCode ShowFile(const std::wstring& path, RecordView& view) {
    const std::wstring label = FileLabel(path);
    const wchar_t* encoding = L"";
    UniqueBstr text = ReadBstr(path, encoding);
    const std::wstring className = ClassOf(text.View(), encoding, label);
    if (className.empty())
        return ExitNoRecord;
    RecordObject record(className);
    Console::Progress(L"The library is reading");
    const bool isRead = record.PutXml(text);
    text = UniqueBstr();
    Console::EndProgress();
    if (!isRead) {
        Console::ErrorLine(label + L": the library refuses it: " + record.Error());
        return ExitRefused;
    }
    view.BeginRecord(label, className);
    RecordWalk(view).Object(record.Get());
    view.EndRecord();
    return ExitOk;
}

} // namespace

ExitCode Show(const Options& options) {
    const auto view = RecordView::Make(options.format, options.files.size() > 1);
    return ForEachFile(options, [&](const std::wstring& path) { return ShowFile(path, *view); });
}
