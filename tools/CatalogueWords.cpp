#include "CatalogueWords.h"

#include "Console.h"
#include "TextFile.h"
#include "XmlTree.h"

#include <algorithm>

std::wstring LowerCase(std::wstring text) {
    for (wchar_t& c : text)
        if (c >= L'A' && c <= L'Z')
            c = static_cast<wchar_t>(c - L'A' + L'a');
    return text;
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
