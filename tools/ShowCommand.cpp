// show: a record as a table of the properties that its type information lists.

#include "Commands.h"
#include "Console.h"
#include "RecordObject.h"
#include "SystemError.h"
#include "TextFile.h"
#include "XmlTree.h"

#include "common/com/Bstr.h"

#include <algorithm>
#include <cwchar>
#include <vector>

namespace {

struct Property {
    DISPID member;
    std::wstring name;
};

/// Owns a VARIANT.
struct Value : VARIANT {
    Value() noexcept { VariantInit(this); }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value() { VariantClear(this); }
};

/// Adds a property that can be read without arguments, except XML, which repeats the others.
void AddProperty(ITypeInfo* info, const FUNCDESC& function, std::vector<Property>& properties) {
    if (function.invkind != INVOKE_PROPERTYGET || function.cParams > 0 ||
        (function.wFuncFlags & FUNCFLAG_FRESTRICTED))
        return;
    UniqueBstr name;
    UINT count = 0;
    if (FAILED(info->GetNames(function.memid, name.Put(), 1, &count)) || count == 0)
        return;
    if (!name.View().ends_with(L"Xml"))
        properties.push_back({function.memid, std::wstring(name.View())});
}

std::vector<Property> PropertiesOf(IDispatch* object) {
    ComPtr<ITypeInfo> info;
    TYPEATTR* type = nullptr;
    HRESULT result = object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put());
    if (SUCCEEDED(result))
        result = info->GetTypeAttr(&type);
    if (FAILED(result))
        throw ToolError(L"the type information cannot be loaded: " + ErrorText(result));
    const UINT functions = type->cFuncs;
    info->ReleaseTypeAttr(type);
    std::vector<Property> properties;
    for (UINT i = 0; i < functions; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(info->GetFuncDesc(i, &function)))
            continue;
        AddProperty(info.Get(), *function, properties);
        info->ReleaseFuncDesc(function);
    }
    return properties;
}

std::wstring DateText(DATE date) {
    SYSTEMTIME t;
    if (!VariantTimeToSystemTime(date, &t))
        return L"(invalid date)";
    wchar_t text[32];
    const int length = std::swprintf(text, 32, L"%04d-%02d-%02d %02d:%02d:%02d", t.wYear, t.wMonth, t.wDay,
                                     t.wHour, t.wMinute, t.wSecond);
    return {text, static_cast<std::size_t>(std::max(length, 0))};
}

/// Escapes line breaks and tabs.
std::wstring OneLine(std::wstring_view text) {
    std::wstring line;
    for (const wchar_t c : text) {
        if (c == L'\n')
            line += L"\\n";
        else if (c == L'\r')
            line += L"\\r";
        else if (c == L'\t')
            line += L"\\t";
        else
            line += c < L' ' ? L'\xFFFD' : c;
    }
    return line;
}

std::wstring ValueText(const VARIANT& value) {
    switch (value.vt) {
    case VT_BSTR:
        return OneLine(BstrView(value.bstrVal));
    case VT_I4:
        return std::to_wstring(value.lVal);
    case VT_BOOL:
        return value.boolVal ? L"true" : L"false";
    case VT_DATE:
        return DateText(value.date);
    default:
        return L"(a value of type " + std::to_wstring(value.vt) + L")";
    }
}

// NOLINTBEGIN(misc-no-recursion): the library's objects nest only a few levels deep.
class Table {
public:
    void ShowObject(IDispatch* object, std::size_t depth) {
        const std::vector<Property> properties = PropertiesOf(object);
        std::size_t width = 0;
        for (const Property& property : properties)
            width = std::max(width, property.name.size());
        bool isCollection = false;
        for (const Property& property : properties) {
            ShowProperty(object, property, width, depth);
            isCollection = isCollection || property.name == L"Count";
        }
        if (isCollection)
            ShowItems(object, depth);
    }

private:
    static void ShowLine(std::size_t depth, std::wstring name, std::size_t width, std::wstring_view value) {
        name.resize(std::max(width, name.size()), L' ');
        std::wstring line = std::wstring(2 * depth, L' ') + name + L"  " + std::wstring(value);
        line.erase(line.find_last_not_of(L' ') + 1);
        Console::Line(line);
    }

    void ShowProperty(IDispatch* object, const Property& property, std::size_t width, std::size_t depth) {
        Value value;
        std::wstring error;
        if (FAILED(InvokeMember(object, property.member, DISPATCH_PROPERTYGET, nullptr, &value, error))) {
            // Expected of a log target: only the property of its current type can be read.
            ShowLine(depth, property.name, width, L"(" + error + L")");
        } else if (value.vt != VT_DISPATCH && value.vt != VT_UNKNOWN) {
            ShowLine(depth, property.name, width, ValueText(value));
        } else {
            ShowChild(property.name, width, value.punkVal, depth);
        }
    }

    void ShowChild(const std::wstring& name, std::size_t width, IUnknown* child, std::size_t depth) {
        ComPtr<IDispatch> object;
        if (!child || FAILED(child->QueryInterface(IID_IDispatch, object.PutVoid()))) {
            ShowLine(depth, name, width, L"(none)");
            return;
        }
        ShowLine(depth, name, 0, L"");
        ShowObject(object.Get(), depth + 1);
    }

    void ShowItems(IDispatch* collection, std::size_t depth) {
        std::wstring error;
        Value count;
        DISPID members[2];
        const wchar_t* const names[2] = {L"Count", L"Item"};
        for (int i = 0; i < 2; ++i) {
            auto* name = const_cast<LPOLESTR>(names[i]);
            if (FAILED(collection->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &members[i])))
                return;
        }
        if (FAILED(InvokeMember(collection, members[0], DISPATCH_PROPERTYGET, nullptr, &count, error)))
            return;
        for (LONG i = 0; i < count.lVal; ++i) {
            Value item;
            Value index;
            index.vt = VT_I4;
            index.lVal = i;
            const std::wstring name = L"Item " + std::to_wstring(i);
            if (FAILED(InvokeMember(collection, members[1], DISPATCH_METHOD | DISPATCH_PROPERTYGET, &index,
                                    &item, error)))
                ShowLine(depth, name, 0, L"(" + error + L")");
            else
                ShowChild(name, 0, item.punkVal, depth);
        }
    }
};

// NOLINTEND(misc-no-recursion)

} // namespace

ExitCode Show(Arguments arguments) {
    const std::wstring text = ReadTextFile(arguments[0]).text;
    XmlTree tree;
    if (!tree.Parse(text)) {
        Console::ErrorLine(arguments[0] + L": " + tree.Error());
        return ExitFindings;
    }
    const std::wstring& root = tree[XmlTree::Root].name;
    const std::wstring className = RecordObject::ClassOfRoot(root);
    if (className.empty()) {
        Console::ErrorLine(arguments[0] + L": no record has the root element " + root);
        return ExitFindings;
    }
    RecordObject record(className);
    if (!record.PutXml(text)) {
        Console::ErrorLine(arguments[0] + L": the library refuses it: " + record.Error());
        return ExitFindings;
    }
    Console::Line(className);
    Table().ShowObject(record.Get(), 1);
    return ExitOk;
}
