#include "CatalogueSql.h"

#include "Catalogue.h"
#include "CatalogueWords.h"
#include "Console.h"
#include "TextFile.h"
#include "XmlTree.h"

#include <cstdint>
#include <map>

namespace {

using Element = XmlTree::Element;

/// Statements for one database, table after table. Each table is emptied first, so that running them twice
/// changes nothing.
class SqlTables {
public:
    SqlTables(const XmlTree& tree, bool isSqlServer) : m_tree(tree), m_isSqlServer(isSqlServer) {}

    void Show() {
        Console::Line(L"BEGIN TRANSACTION;");
        PaperSizes();
        PageAttributes();
        Empty(L"finishing_options");
        for (auto word = First(L"FinishingAttributes"); word; word = word.NextSibling())
            Insert(L"finishing_options (code, name)", {Number(CatalogueCode(word)), Text(word.Text())});
        Languages();
        Console::Line(L"COMMIT;");
    }

private:
    Element First(std::wstring_view section) const { return m_tree.Root().Child(section).FirstChild(); }

    static void Empty(const std::wstring& table) { Console::Line(L"DELETE FROM " + table + L";"); }
    static void Insert(const std::wstring& table, std::initializer_list<std::wstring> values) {
        std::wstring line = L"INSERT INTO " + table + L" VALUES (";
        for (const std::wstring& value : values)
            line += (line.back() == L'(' ? L"" : L", ") + value;
        Console::Line(line + L");");
    }
    static std::wstring Number(std::int64_t number) { return std::to_wstring(number); }
    /// Without N, SQL Server would convert the text to a code page. SQLite does not know N.
    std::wstring Text(const std::wstring& text) const {
        std::wstring quoted = m_isSqlServer ? L"N'" : L"'";
        for (const wchar_t c : text)
            quoted.append(c == L'\'' ? 2 : 1, c);
        return quoted + L"'";
    }

    void PaperSizes() const {
        Empty(L"paper_sizes");
        for (const CataloguePaper& paper : PapersOf(m_tree))
            Insert(L"paper_sizes (code, name, width, height)",
                   {Number(paper.code), Text(paper.name), paper.width, paper.height});
    }

    /// Both words of a pair have its number.
    void PageAttributes() const {
        Empty(L"page_attributes");
        std::int64_t number = 0;
        for (auto pair = First(L"PageAttributePairs"); pair; pair = pair.NextSibling()) {
            ++number;
            for (auto side = pair.FirstChild(); side; side = side.NextSibling())
                PageAttribute(side, Number(number));
        }
        for (auto word = First(L"PageAttributes"); word; word = word.NextSibling())
            PageAttribute(word, L"NULL");
    }
    void PageAttribute(Element word, const std::wstring& pair) const {
        Insert(L"page_attributes (code, name, pair)", {Number(CatalogueCode(word)), Text(word.Text()), pair});
    }

    /// Of several words with one code, the library uses the first in alphabetical order.
    void Languages() const {
        Empty(L"languages");
        std::map<std::wstring, Element> words;
        for (auto word = First(L"Pdls"); word; word = word.NextSibling())
            words[LowerCase(word.Text())] = word;
        std::map<std::int64_t, std::wstring> names;
        for (const auto& [key, word] : words)
            names.try_emplace(CatalogueCode(word), word.Text());
        for (const auto& [code, name] : names)
            Insert(L"languages (code, name)", {Number(code), Text(name)});
    }

    const XmlTree& m_tree;
    bool m_isSqlServer;
};

} // namespace

ExitCode ShowCatalogueSql(const std::wstring& path, const std::wstring& dialect) {
    if (dialect != L"sqlite" && dialect != L"postgresql" && dialect != L"sqlserver")
        throw UsageError{L"unknown database " + dialect};
    if (LintCatalogueFile(path, nullptr).problems > 0)
        throw ToolError(FileLabel(path) + L" has mistakes",
                        L"To list them, run \"jobobjects catalogue " + FileLabel(path) + L"\".");
    XmlTree tree;
    tree.Parse(ReadTextFile(path).text);
    SqlTables(tree, dialect == L"sqlserver").Show();
    return ExitOk;
}
