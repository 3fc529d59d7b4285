#include "RecordWalk.h"

#include "Console.h"
#include "DateText.h"
#include "RecordObject.h"
#include "SystemError.h"
#include "XmlTree.h"

#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"

#include <algorithm>

namespace {

/// Owns a VARIANT.
struct Value : VARIANT {
    Value() noexcept { VariantInit(this); }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
    ~Value() { VariantClear(this); }
};

/// The failure of a property that the log target's type does not have.
constexpr HRESULT DoesNotApply = HRESULT_FROM_WIN32(ERROR_INVALID_OPERATION);

std::wstring Widened(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

PropertyValue ValueOf(const VARIANT& value) {
    switch (value.vt) {
    case VT_BSTR:
        return std::wstring(BstrView(value.bstrVal));
    case VT_I4:
        return static_cast<std::int64_t>(value.lVal);
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE;
    case VT_DATE:
        return Widened(DateText(value.date));
    default:
        return L"(a value of type " + std::to_wstring(value.vt) + L")";
    }
}

} // namespace

// NOLINTBEGIN(misc-no-recursion): the library's objects nest only a few levels deep.

void RecordWalk::Object(IDispatch* object) {
    Object(object, TypeOf(object));
}

void RecordWalk::Object(IDispatch* object, const Type& type) {
    for (const Property& property : type.properties)
        ShowProperty(object, property, type.width);
    if (type.isCollection)
        Items(object);
}

void RecordWalk::ShowProperty(IDispatch* object, const Property& property, std::size_t width) {
    Value value;
    std::wstring error;
    const HRESULT result =
        InvokeMember(object, property.member, DISPATCH_PROPERTYGET, nullptr, &value, error);
    if (result == DoesNotApply)
        return;
    if (FAILED(result))
        m_view.Failure(property.name, width, error);
    else if (value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN)
        Child(property, width, value.punkVal);
    else
        m_view.Value(property.name, width, ValueOf(value));
}

void RecordWalk::Child(const Property& property, std::size_t width, IUnknown* child) {
    ComPtr<IDispatch> object;
    if (!child || FAILED(child->QueryInterface(IID_IDispatch, object.PutVoid()))) {
        m_view.Value(property.name, width, {});
        return;
    }
    m_view.BeginObject(property.name);
    Object(object.Get());
    m_view.EndObject();
}

/// Reads the items from the collection's XML into one object: Item creates an object for each call, which
/// takes a hundred times as long.
void RecordWalk::Items(IDispatch* collection) {
    RecordObject lines(collection);
    XmlTree tree;
    if (!tree.Parse(lines.Xml().View()))
        throw ToolError(L"the copy lines' XML does not parse: " + tree.Error());
    m_view.BeginItems();
    std::size_t index = 0;
    if (XmlTree::Element item = tree.Root().FirstChild()) {
        RecordObject line(RecordObject::ClassOfRoot(item.Name()));
        const Type& type = TypeOf(line.Get());
        for (; item; item = item.NextSibling()) {
            if (!line.PutXml(UniqueBstr(item.Markup())))
                throw ToolError(L"a copy line cannot be read: " + line.Error());
            m_view.BeginItem(index++);
            Object(line.Get(), type);
            m_view.EndItem();
            Console::Progress(L"Showing", item.Offset(), tree.Document().size());
        }
    }
    m_view.EndItems();
}

// NOLINTEND(misc-no-recursion)

/// Adds a property that can be read without arguments, except XML, which repeats the others.
void RecordWalk::AddProperty(ITypeInfo* info, const FUNCDESC& function, Type& type) {
    if (function.invkind != INVOKE_PROPERTYGET || function.cParams > 0 ||
        (function.wFuncFlags & FUNCFLAG_FRESTRICTED))
        return;
    UniqueBstr name;
    UINT count = 0;
    if (FAILED(info->GetNames(function.memid, name.Put(), 1, &count)) || count == 0 ||
        name.View().ends_with(L"Xml"))
        return;
    type.properties.push_back({function.memid, std::wstring(name.View())});
    type.width = std::max(type.width, name.View().size());
    type.isCollection = type.isCollection || name.View() == L"Count";
}

const RecordWalk::Type& RecordWalk::TypeOf(IDispatch* object) {
    ComPtr<ITypeInfo> info;
    UniqueBstr name;
    TYPEATTR* attributes = nullptr;
    HRESULT result = object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put());
    if (SUCCEEDED(result))
        result = info->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr);
    if (SUCCEEDED(result))
        result = info->GetTypeAttr(&attributes);
    if (FAILED(result))
        throw ToolError(L"the type information cannot be loaded: " + ErrorText(result));
    const UINT functions = attributes->cFuncs;
    info->ReleaseTypeAttr(attributes);
    const auto [type, isNew] = m_types.try_emplace(std::wstring(name.View()));
    for (UINT i = 0; i < functions && isNew; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(info->GetFuncDesc(i, &function)))
            continue;
        AddProperty(info.Get(), *function, type->second);
        info->ReleaseFuncDesc(function);
    }
    return type->second;
}
