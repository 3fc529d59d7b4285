#include "tests/support/ComClient.h"
#include "tests/support/Library.h"
#include "tests/support/TypeLibrary_expected.h"

#include <cwctype>

// Late binding and identity, for every class.

namespace {

ComPtr<IDispatch> CreateDispatch(const LibraryClass& of) {
    ComPtr<IDispatch> object;
    REQUIRE_HR(CoCreateInstance(of.classId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.PutVoid()),
               S_OK);
    return object;
}

HRESULT NameToId(IDispatch* object, std::wstring name, DISPID& id) {
    LPOLESTR names = name.data();
    return object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
}

std::wstring Wide(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

std::wstring WithCase(std::wstring text, bool upper) {
    for (wchar_t& c : text)
        c = static_cast<wchar_t>(upper ? towupper(c) : towlower(c));
    return text;
}

/// The columns of a member's row, "slot | DISPID | kind | name | parameters".
std::vector<std::string> Columns(const std::string& row) {
    std::vector<std::string> columns;
    std::size_t start = 0;
    for (std::size_t end; (end = row.find(" | ", start)) != std::string::npos; start = end + 3)
        columns.push_back(row.substr(start, end - start));
    columns.push_back(row.substr(start));
    return columns;
}

VARIANT TextVariant(const UniqueBstr& text) {
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_BSTR;
    value.bstrVal = text.Get();
    return value;
}

VARIANT NumberVariant(LONG number) {
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_I4;
    value.lVal = number;
    return value;
}

/// The exception of a failing late-bound call.
class Exception {
public:
    Exception() = default;
    Exception(const Exception&) = delete;
    Exception& operator=(const Exception&) = delete;
    ~Exception() {
        SysFreeString(info.bstrSource);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrHelpFile);
    }
    std::wstring_view Description() const { return BstrView(info.bstrDescription); }

    EXCEPINFO info{};
};

constexpr DISPID PrintJobXml = 1, PrintJobSize = 6;

HRESULT Invoke(IDispatch* object, DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result = nullptr,
               REFIID iid = IID_NULL) {
    return object->Invoke(id, iid, LOCALE_USER_DEFAULT, flags, &parameters, result, nullptr, nullptr);
}

HRESULT InvokePut(IDispatch* object, DISPID id, VARIANT value) {
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{&value, &put, 1, 1};
    return Invoke(object, id, DISPATCH_PROPERTYPUT, parameters);
}

} // namespace

TEST_CASE("Dispatch_has_one_type_information") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto object = CreateDispatch(each);
        UINT count = 0xCDCDCDCD;
        CHECK_HR(object->GetTypeInfoCount(&count), S_OK);
        CHECK(count == 1);
        CHECK_HR(object->GetTypeInfoCount(nullptr), E_POINTER);
    }
}

TEST_CASE("Dispatch_returns_the_type_information_of_its_interface") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto object = CreateDispatch(each);
        ComPtr<ITypeInfo> info;
        REQUIRE_HR(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put()), S_OK);
        TYPEATTR* attributes = nullptr;
        REQUIRE_HR(info->GetTypeAttr(&attributes), S_OK);
        const GUID guid = attributes->guid;
        info->ReleaseTypeAttr(attributes);
        CHECK((guid == each.interfaceId));

        for (const UINT index : {1u, 2u, 0xFFFFFFFFu}) {
            void* refused = GarbagePointer();
            CHECK_HR(object->GetTypeInfo(index, LOCALE_USER_DEFAULT, reinterpret_cast<ITypeInfo**>(&refused)),
                     DISP_E_BADINDEX);
            CHECK(refused == nullptr);
        }
        CHECK_HR(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
        CHECK_HR(object->GetTypeInfo(1, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
    }
}

TEST_CASE("Dispatch_finds_every_member_by_name_in_any_letter_case") {
    std::size_t found = 0;
    for (const LibraryClass& each : LibraryClasses()) {
        const auto object = CreateDispatch(each);
        for (const std::string& row : expectedInterface("I" + each.name).rows) {
            INFO(each.name << ": " << row);
            const std::wstring name = Wide(Columns(row)[3]);
            for (const std::wstring& spelling : {name, WithCase(name, true), WithCase(name, false)}) {
                DISPID id = DISPID_UNKNOWN;
                CHECK_HR(NameToId(object.Get(), spelling, id), S_OK);
                CHECK(id == std::stol(Columns(row)[1]));
            }
            ++found;
        }
    }
    CHECK(found == 70 + 28 + 9 + 21 + 50 + 18 + 19 + 25 + 25 + 64);
}

TEST_CASE("Dispatch_finds_the_parameters_of_a_method_by_name") {
    const auto results = CreatePolicyResults();
    wchar_t method[] = L"addruleviolation", trigger[] = L"TriggerId", action[] = L"RuleAction";
    LPOLESTR names[] = {method, action, trigger};
    DISPID ids[3] = {};
    REQUIRE_HR(results->GetIDsOfNames(IID_NULL, names, 3, LOCALE_USER_DEFAULT, ids), S_OK);
    CHECK(ids[0] == 10);
    CHECK(ids[1] == 1);
    CHECK(ids[2] == 0);
}

TEST_CASE("Dispatch_refuses_unknown_names") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto object = CreateDispatch(each);
        for (const wchar_t* name : {L"NoSuchMember", L"", L"Xm", L"XmlX", L"get_Xml", L"Xml "}) {
            INFO(Narrow(name));
            DISPID id = 42;
            CHECK_HR(NameToId(object.Get(), name, id), DISP_E_UNKNOWNNAME);
            CHECK(id == DISPID_UNKNOWN);
        }
    }
}

TEST_CASE("Dispatch_refuses_null_name_lists") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto object = CreateDispatch(each);
        wchar_t name[] = L"Xml";
        LPOLESTR names = name;
        DISPID id = 0;
        CHECK_HR(object->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id), E_POINTER);
        CHECK_HR(object->GetIDsOfNames(IID_NULL, &names, 1, 0, nullptr), E_POINTER);
    }
}

TEST_CASE("Dispatch_invokes_for_the_null_interface_only") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto object = CreateDispatch(each);
        DISPPARAMS none{};
        for (const IID& iid : {IID_IDispatch, each.interfaceId})
            CHECK_HR(Invoke(object.Get(), 1, DISPATCH_PROPERTYGET, none, nullptr, iid),
                     DISP_E_UNKNOWNINTERFACE);
    }
}

TEST_CASE("Dispatch_refuses_null_parameters") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto object = CreateDispatch(each);
        CHECK_HR(object->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, nullptr, nullptr,
                                nullptr, nullptr),
                 E_POINTER);
    }
}

TEST_CASE("Dispatch_needs_neither_result_nor_exception_nor_argument_error") {
    const auto job = CreatePrintJob();
    DISPPARAMS none{};
    CHECK_HR(Invoke(job.Get(), PrintJobXml, DISPATCH_PROPERTYGET, none), S_OK);
    CHECK_HR(InvokePut(job.Get(), PrintJobXml, TextVariant(UniqueBstr(L"<x/>"))), DISP_E_EXCEPTION);
}

TEST_CASE("Dispatch_refuses_a_call_with_too_few_arguments") {
    const auto results = CreatePolicyResults();
    DISPPARAMS none{};
    CHECK_HR(Invoke(results.Get(), 11, DISPATCH_METHOD, none), DISP_E_BADPARAMCOUNT);
    VARIANT one = NumberVariant(5);
    DISPPARAMS single{&one, nullptr, 1, 0};
    CHECK_HR(Invoke(results.Get(), 10, DISPATCH_METHOD, single), DISP_E_BADPARAMCOUNT);
    CHECK(Value(results, &IPolicyResults::get_PolicyViolated) == VARIANT_FALSE);
}

TEST_CASE("Dispatch_converts_arguments_and_refuses_what_it_cannot_convert") {
    const auto job = CreatePrintJob();
    CHECK_HR(InvokePut(job.Get(), PrintJobSize, TextVariant(UniqueBstr(L"42"))), S_OK);
    CHECK(Value(job, &IPrintJob::get_JobSize) == 42);
    CHECK_HR(InvokePut(job.Get(), PrintJobSize, TextVariant(UniqueBstr(L"many"))), DISP_E_TYPEMISMATCH);
    CHECK(Value(job, &IPrintJob::get_JobSize) == 42);
    VARIANT wide = NumberVariant(0);
    wide.vt = VT_R8;
    wide.dblVal = 1e12;
    CHECK_HR(InvokePut(job.Get(), PrintJobSize, wide), DISP_E_OVERFLOW);
    CHECK(Value(job, &IPrintJob::get_JobSize) == 42);
}

TEST_CASE("Dispatch_fills_the_exception_with_the_description_of_the_failure") {
    for (const LibraryClass& each : LibraryClasses()) {
        if (each.name == "WindowsPrintInfo" || each.name.rfind("Copy", 0) == 0 || each.name == "JobContents")
            continue; // their texts are not of the form "... element is missing."
        INFO(each.name);
        const auto object = CreateDispatch(each);
        const UniqueBstr xml(L"<Unknown/>");
        Exception exception;
        CHECK_HR(InvokeByName(object.Get(), L"Xml", DISPATCH_PROPERTYPUT, {TextVariant(xml)}, nullptr,
                              &exception.info),
                 DISP_E_EXCEPTION);
        CHECK_TEXT(exception.Description(), Wide(each.name) + L" element is missing.");
        CHECK_HR(exception.info.scode, E_FAIL);
        CHECK(exception.info.wCode == 0);
    }
}

TEST_CASE("Dispatch_does_not_describe_a_failure_with_an_earlier_one") {
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_Xml, L"<x/>"), E_FAIL); // sets the thread's error information
    const auto lines = CreateCopyLines();
    Exception exception;
    CHECK_HR(
        InvokeByName(lines.Get(), L"Item", DISPATCH_METHOD, {NumberVariant(0)}, nullptr, &exception.info),
        DISP_E_EXCEPTION);
    CHECK_HR(exception.info.scode, E_INVALIDARG);
    CHECK_TEXT(exception.Description(), L"");
}

TEST_CASE("Dispatch_and_the_virtual_table_reach_the_same_state") {
    const auto job = CreatePrintJob();
    CHECK_HR(job->put_JobSize(7), S_OK);
    VARIANT value;
    VariantInit(&value);
    DISPPARAMS none{};
    CHECK_HR(Invoke(job.Get(), PrintJobSize, DISPATCH_PROPERTYGET, none, &value), S_OK);
    CHECK(value.vt == VT_I4);
    CHECK(value.lVal == 7);
    CHECK_HR(InvokePut(job.Get(), PrintJobSize, NumberVariant(8)), S_OK);
    CHECK(Value(job, &IPrintJob::get_JobSize) == 8);
}

TEST_CASE("ErrorInfo_is_supported_for_the_object_s_interface_only") {
    for (const LibraryClass& each : LibraryClasses()) {
        const auto object = CreateDispatch(each);
        ComPtr<ISupportErrorInfo> support;
        REQUIRE_HR(object->QueryInterface(IID_ISupportErrorInfo, support.PutVoid()), S_OK);
        for (const LibraryClass& other : LibraryClasses()) {
            INFO(each.name << " asked for I" << other.name);
            CHECK_HR(support->InterfaceSupportsErrorInfo(other.interfaceId),
                     other.name == each.name ? S_OK : S_FALSE);
        }
        for (const IID& iid : {IID_IUnknown, IID_IDispatch, IID_ISupportErrorInfo, IID_NULL})
            CHECK_HR(support->InterfaceSupportsErrorInfo(iid), S_FALSE);
    }
}

TEST_CASE("QueryInterface_keeps_the_identity_from_every_interface_to_every_other") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto object = CreateDispatch(each);
        ComPtr<IUnknown> identity;
        REQUIRE_HR(object->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
        const IID own[] = {IID_IUnknown, IID_IDispatch, IID_ISupportErrorInfo, each.interfaceId};
        for (const IID& from : own) {
            ComPtr<IUnknown> first;
            REQUIRE_HR(object->QueryInterface(from, first.PutVoid()), S_OK);
            for (const IID& to : own) {
                ComPtr<IUnknown> second, back, unknown;
                REQUIRE_HR(first->QueryInterface(to, second.PutVoid()), S_OK);
                REQUIRE_HR(second->QueryInterface(from, back.PutVoid()), S_OK);
                CHECK(back.Get() == first.Get());
                REQUIRE_HR(second->QueryInterface(IID_IUnknown, unknown.PutVoid()), S_OK);
                CHECK(unknown.Get() == identity.Get());
            }
        }
    }
}

TEST_CASE("QueryInterface_refuses_what_the_object_lacks") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto object = CreateDispatch(each);
        for (const IID& iid : {IID_IMarshal, IID_IPersist, IID_IClassFactory, IID_NULL}) {
            void* refused = GarbagePointer();
            CHECK_HR(object->QueryInterface(iid, &refused), E_NOINTERFACE);
            CHECK(refused == nullptr);
        }
        CHECK_HR(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
        CHECK_HR(object->QueryInterface(IID_IMarshal, nullptr), E_POINTER);
    }
}

TEST_CASE("References_are_counted_by_every_interface_together") {
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto object = CreateDispatch(each);
        CHECK(object->AddRef() == 2);
        ComPtr<ISupportErrorInfo> support;
        REQUIRE_HR(object->QueryInterface(IID_ISupportErrorInfo, support.PutVoid()), S_OK);
        CHECK(support->AddRef() == 4);
        CHECK(support->Release() == 3);
        CHECK(object->Release() == 2);
    }
}
