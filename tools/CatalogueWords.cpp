#include "CatalogueWords.h"

#include "Console.h"
#include "TextFile.h"

#include <algorithm>
#include <cwchar>

std::wstring LowerCase(std::wstring text) {
    for (wchar_t& c : text)
        if (c >= L'A' && c <= L'Z')
            c = static_cast<wchar_t>(c - L'A' + L'a');
    return text;
}

std::int64_t CatalogueCode(XmlTree::Element element) {
    const auto code = element.Find(L"DbId");
    return code ? std::wcstol(code->value.c_str(), nullptr, 10) : 0;
}

std::vector<CataloguePaper> PapersOf(const XmlTree& catalogue) {
    const auto isDefault = [](XmlTree::Element element) {
        const auto value = element.Find(L"Default");
        return value && (LowerCase(value->value) == L"true" || value->value == L"1");
    };
    std::vector<CataloguePaper> papers;
    for (auto size = catalogue.Root().Child(L"PaperSizes").FirstChild(); size; size = size.NextSibling()) {
        auto name = size.Child(L"PaperNames").FirstChild();
        while (name && !isDefault(name))
            name = name.NextSibling();
        const XmlTree::Element dimensions = size.Child(L"PaperDimensions");
        if (name)
            papers.push_back({CatalogueCode(size), name.Text(), dimensions.Child(L"X").Text(),
                              dimensions.Child(L"Y").Text()});
    }
    return papers;
}

bool CatalogueWords::Load(const std::wstring& path) {
    XmlTree tree;
    try {
        if (!tree.Parse(ReadTextFile(path).text))
            return false;
    } catch (const ToolError&) {
        return false;
    }
    for (XmlTree::Element element = tree.Root(); element; element = element.Next()) {
        const std::wstring_view name = element.Name();
        if (name == L"PaperName")
            m_paperSizes.insert(LowerCase(element.Text()));
        else if (name == L"First" || name == L"Second" || name == L"PageAttribute")
            m_pageAttributes.insert(LowerCase(element.Text()));
        else if (name == L"FinishingAttribute")
            m_finishing.insert(LowerCase(element.Text()));
        else if (name == L"Pdl")
            m_pdls.insert(LowerCase(element.Text()));
    }
    return true;
}

std::vector<std::wstring> CatalogueWords::Unknown(Use use, std::wstring_view text) const {
    std::vector<std::wstring> unknown;
    const auto check = [&](const Words& words, std::wstring_view word) {
        if (!word.empty() && !words.contains(LowerCase(std::wstring(word))))
            unknown.emplace_back(word);
    };
    if (use == Use::PaperSize || use == Use::Pdl) {
        check(use == Use::PaperSize ? m_paperSizes : m_pdls, text);
        return unknown;
    }
    while (!text.empty()) {
        const std::wstring_view word = text.substr(0, text.find(L','));
        check(use == Use::Finishing ? m_finishing : m_pageAttributes, word);
        text.remove_prefix(std::min(word.size() + 1, text.size()));
    }
    return unknown;
}
