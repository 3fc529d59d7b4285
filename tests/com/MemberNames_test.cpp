#include "tests/support/ComClient.h"
#include "tests/support/Library.h"

#include <cwctype>

// Late binding looks members up in the library's own name table. For any name the result must equal that of
// the interface's type information.

namespace {

/// The result of a lookup, as text.
std::string Answer(HRESULT result, const std::vector<DISPID>& ids) {
    std::string text = std::to_string(result);
    for (const DISPID id : ids)
        text += " " + std::to_string(id);
    return text;
}

class Interface {
public:
    explicit Interface(const LibraryClass& of) {
        REQUIRE_HR(
            CoCreateInstance(of.classId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, m_object.PutVoid()),
            S_OK);
        REQUIRE_HR(m_object->GetTypeInfo(0, LOCALE_USER_DEFAULT, m_info.Put()), S_OK);
    }

    /// Compares both lookups of the names.
    void CompareList(const std::vector<const wchar_t*>& names) const {
        auto** const list = const_cast<LPOLESTR*>(names.data());
        const auto count = static_cast<UINT>(names.size());
        std::vector<DISPID> own(count + 1, 4711), expected(count + 1, 4711);
        const HRESULT ownResult =
            m_object->GetIDsOfNames(IID_NULL, list, count, LOCALE_USER_DEFAULT, own.data());
        const HRESULT expectedResult = m_info->GetIDsOfNames(list, count, expected.data());
        for (const wchar_t* name : names)
            UNSCOPED_INFO(Narrow(name ? name : L"(null)"));
        CHECK(Answer(ownResult, own) == Answer(expectedResult, expected));
    }
    void Compare(const std::wstring& name) const { CompareList({name.c_str()}); }

    /// The name of every function, followed by the names of its arguments.
    std::vector<std::vector<std::wstring>> Functions() const {
        std::vector<std::vector<std::wstring>> functions;
        TYPEATTR* attributes = nullptr;
        REQUIRE_HR(m_info->GetTypeAttr(&attributes), S_OK);
        const UINT count = attributes->cFuncs;
        m_info->ReleaseTypeAttr(attributes);
        for (UINT i = 0; i < count; ++i)
            functions.push_back(NamesOf(i));
        return functions;
    }

private:
    std::vector<std::wstring> NamesOf(UINT index) const {
        FUNCDESC* function = nullptr;
        REQUIRE_HR(m_info->GetFuncDesc(index, &function), S_OK);
        const MEMBERID id = function->memid;
        m_info->ReleaseFuncDesc(function);
        BSTR texts[16] = {};
        UINT count = 0;
        REQUIRE_HR(m_info->GetNames(id, texts, 16, &count), S_OK);
        std::vector<std::wstring> names;
        for (UINT i = 0; i < count; ++i) {
            names.emplace_back(BstrView(texts[i]));
            SysFreeString(texts[i]);
        }
        return names;
    }

    ComPtr<IDispatch> m_object;
    ComPtr<ITypeInfo> m_info;
};

/// The name in other letter cases.
std::vector<std::wstring> CaseVariants(const std::wstring& name) {
    std::vector<std::wstring> variants(4, name);
    for (std::size_t i = 0; i < name.size(); ++i) {
        variants[0][i] = static_cast<wchar_t>(std::towupper(name[i]));
        variants[1][i] = static_cast<wchar_t>(std::towlower(name[i]));
        variants[2][i] = variants[i % 2][i];
        variants[3][i] = static_cast<wchar_t>(name[i] ^ 0x20); // swaps upper and lower case
    }
    return variants;
}

/// The name with a character added, removed, or replaced by one with a similar look, sort order or code.
std::vector<std::wstring> Misspellings(const std::wstring& name) {
    std::vector<std::wstring> variants{L" " + name,    name + L" ",    name + L"s",
                                       L"get_" + name, name.substr(1), name.substr(0, name.size() - 1)};
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto fullWidth = static_cast<wchar_t>(name[i] - L'!' + 0xFF01);
        const auto otherPlane = static_cast<wchar_t>(name[i] + 0x100);
        const auto control = static_cast<wchar_t>(name[i] & 0x1F);
        const auto neighbour = static_cast<wchar_t>(name[i] ^ 1);
        for (const wchar_t other :
             {fullWidth, otherPlane, control, neighbour, L'\x0130', L'\x0131', L'\x017F', L'\x212A', L'0'}) {
            variants.push_back(name);
            variants.back()[i] = other;
        }
        for (const wchar_t inserted : {L'\x00AD', L'\x0301', L'\x200B', L'-', L'_'})
            variants.push_back(std::wstring(name).insert(i, 1, inserted));
    }
    return variants;
}

} // namespace

TEST_CASE("MemberNames_in_any_letter_case_resolve_as_in_the_type_information") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const Interface dispatch(each);
        const auto functions = dispatch.Functions();
        REQUIRE(functions.size() >= 9);
        for (const auto& names : functions) {
            dispatch.Compare(names[0]);
            for (const std::wstring& variant : CaseVariants(names[0]))
                dispatch.Compare(variant);
        }
    }
}

TEST_CASE("MemberNames_misspelt_resolve_as_in_the_type_information") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const Interface dispatch(each);
        for (const auto& names : dispatch.Functions()) {
            for (const std::wstring& variant : Misspellings(names[0]))
                dispatch.Compare(variant);
        }
    }
}

TEST_CASE("MemberNames_of_arguments_resolve_as_in_the_type_information") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const Interface dispatch(each);
        for (const auto& names : dispatch.Functions()) {
            std::vector<const wchar_t*> list;
            for (const std::wstring& name : names) {
                dispatch.Compare(name); // an argument's name alone names no member
                list.push_back(name.c_str());
                dispatch.CompareList(list);
            }
            dispatch.CompareList({names[0].c_str(), L"NoSuchArgument"});
            dispatch.CompareList({L"NoSuchMember", names.back().c_str()});
            dispatch.CompareList({names[0].c_str(), names[0].c_str()});
        }
    }
}

TEST_CASE("MemberNames_with_invalid_text_resolve_as_in_the_type_information") {
    const std::wstring longName(70000, L'x');
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const Interface dispatch(each);
        for (const wchar_t* name : {L"", L" ", L"\x00E4", L"\xD835", L"\x1F", L"@", L"[", L"0", L"Version2"})
            dispatch.Compare(name);
        dispatch.Compare(longName);
        dispatch.CompareList({nullptr});
        dispatch.CompareList({L"Xml", nullptr});
        dispatch.CompareList({L"", L""});
    }
}
