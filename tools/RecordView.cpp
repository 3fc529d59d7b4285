#include "RecordView.h"

#include "Console.h"
#include "Escaping.h"

#include <algorithm>
#include <vector>

namespace {

/// A table, with nested objects indented.
class TextView final : public RecordView {
public:
    explicit TextView(bool areSeveralFiles) : m_areSeveralFiles(areSeveralFiles) {}

    void BeginRecord(const std::wstring& file, const std::wstring& className) override {
        Console::Line(m_areSeveralFiles ? file + L": " + className : className);
        m_depth = 1;
    }
    void EndRecord() override {}
    void Value(const std::wstring& name, std::size_t width, const PropertyValue& value) override {
        ShowLine(name, width, ValueText(value));
    }
    void Failure(const std::wstring& name, std::size_t width, const std::wstring& error) override {
        ShowLine(name, width, L"(" + error + L")");
    }
    void BeginObject(const std::wstring& name) override {
        Console::Line(std::wstring(2 * m_depth, L' ') + name);
        ++m_depth;
    }
    void EndObject() override { --m_depth; }
    void BeginItems() override {}
    void BeginItem(std::size_t index) override { BeginObject(L"Item " + std::to_wstring(index)); }
    void EndItem() override { EndObject(); }
    void EndItems() override {}

private:
    static std::wstring ValueText(const PropertyValue& value) {
        if (const auto* text = std::get_if<std::wstring>(&value))
            return text->empty() ? L"(empty)" : *text;
        if (const auto* number = std::get_if<std::int64_t>(&value))
            return std::to_wstring(*number);
        if (const auto* flag = std::get_if<bool>(&value))
            return *flag ? L"true" : L"false";
        return L"(none)";
    }
    void ShowLine(const std::wstring& name, std::size_t width, const std::wstring& value) const {
        std::wstring line(2 * m_depth, L' ');
        line += name;
        line.append(std::max(width, name.size()) - name.size() + 2, L' ');
        Console::Line(line + value);
    }

    bool m_areSeveralFiles;
    std::size_t m_depth = 1;
};

/// One JSON object per record. Items are an array "Items".
class JsonView final : public RecordView {
public:
    void BeginRecord(const std::wstring& file, const std::wstring& className) override {
        Write(L"{\"file\":" + Escaping::Json(file) + L",\"class\":" + Escaping::Json(className) +
              L",\"record\":{");
        m_isFirst = true;
    }
    void EndRecord() override { Write(L"}}\r\n"); }
    void Value(const std::wstring& name, std::size_t, const PropertyValue& value) override {
        WriteName(name);
        if (const auto* text = std::get_if<std::wstring>(&value))
            Write(Escaping::Json(*text));
        else if (const auto* number = std::get_if<std::int64_t>(&value))
            Write(std::to_wstring(*number));
        else if (const auto* flag = std::get_if<bool>(&value))
            Write(*flag ? L"true" : L"false");
        else
            Write(L"null");
    }
    void Failure(const std::wstring& name, std::size_t, const std::wstring& error) override {
        WriteName(name);
        Write(L"{\"error\":" + Escaping::Json(error) + L"}");
    }
    void BeginObject(const std::wstring& name) override {
        WriteName(name);
        Begin(L"{");
    }
    void EndObject() override { End(L"}"); }
    void BeginItems() override {
        WriteName(L"Items");
        Begin(L"[");
    }
    void BeginItem(std::size_t) override {
        WriteComma();
        Begin(L"{");
    }
    void EndItem() override { End(L"}"); }
    void EndItems() override { End(L"]"); }

private:
    static void Write(const std::wstring& text) { Console::Text(text); }
    void WriteComma() {
        if (!m_isFirst)
            Write(L",");
        m_isFirst = false;
    }
    void WriteName(const std::wstring& name) {
        WriteComma();
        Write(Escaping::Json(name) + L":");
    }
    void Begin(const wchar_t* bracket) {
        Write(bracket);
        m_isFirst = true;
    }
    void End(const wchar_t* bracket) {
        Write(bracket);
        m_isFirst = false;
    }

    bool m_isFirst = true;
};

/// One row per property, with the path to it: "JobContents.JobCopyLines.Items[0].Sheets".
class CsvView final : public RecordView {
public:
    void BeginRecord(const std::wstring& file, const std::wstring& className) override {
        m_file = file;
        m_path = {className};
    }
    void EndRecord() override {}
    void Value(const std::wstring& name, std::size_t, const PropertyValue& value) override {
        if (const auto* text = std::get_if<std::wstring>(&value))
            Add(name, *text);
        else if (const auto* number = std::get_if<std::int64_t>(&value))
            Add(name, *number);
        else if (const auto* flag = std::get_if<bool>(&value))
            Add(name, std::wstring(*flag ? L"true" : L"false"));
        else
            Add(name, Cell());
    }
    void Failure(const std::wstring& name, std::size_t, const std::wstring& error) override {
        Add(name, L"(" + error + L")");
    }
    void BeginObject(const std::wstring& name) override { m_path.push_back(m_path.back() + L"." + name); }
    void EndObject() override { m_path.pop_back(); }
    void BeginItems() override {}
    void BeginItem(std::size_t index) override { BeginObject(L"Items[" + std::to_wstring(index) + L"]"); }
    void EndItem() override { EndObject(); }
    void EndItems() override {}

private:
    void Add(const std::wstring& name, const Cell& value) {
        m_rows.Add({m_file, m_path.back() + L"." + name, value});
    }

    Rows m_rows{Format::Csv, {L"file", L"property", L"value"}};
    std::wstring m_file;
    std::vector<std::wstring> m_path; ///< the last entry is the current object's
};

} // namespace

std::unique_ptr<RecordView> RecordView::Make(Format format, bool areSeveralFiles) {
    switch (format) {
    case Format::Json:
        return std::make_unique<JsonView>();
    case Format::Csv:
        return std::make_unique<CsvView>();
    default:
        return std::make_unique<TextView>(areSeveralFiles);
    }
}
