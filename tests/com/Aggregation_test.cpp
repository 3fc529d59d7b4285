#include "tests/support/ComClient.h"
#include "tests/support/Library.h"

// LogicalPrinter in an aggregate: clients see the outer object only.

namespace {

/// An outer object that implements IPersist and delegates every other interface to a logical printer.
class Outer : public IPersist {
public:
    /// The object is on the test's stack, so the count destroys nothing.
    Outer() {
        result = CoCreateInstance(__uuidof(LogicalPrinter), this, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                  inner.PutVoid());
    }
    virtual ~Outer() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        ++queries;
        if (iid != IID_IUnknown && iid != IID_IPersist)
            return inner->QueryInterface(iid, object);
        *object = static_cast<IPersist*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* classId) override {
        *classId = CLSID{};
        return S_FALSE;
    }

    ComPtr<ILogicalPrinter> Printer() {
        ComPtr<ILogicalPrinter> printer;
        REQUIRE_HR(QueryInterface(__uuidof(ILogicalPrinter), printer.PutVoid()), S_OK);
        return printer;
    }

    HRESULT result = E_UNEXPECTED;
    ComPtr<IUnknown> inner;
    ULONG references = 1;
    int queries = 0;
};

IUnknown* IdentityOf(IUnknown* object) {
    ComPtr<IUnknown> identity;
    REQUIRE_HR(object->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
    return identity.Get();
}

} // namespace

TEST_CASE("Aggregation_gives_the_outer_object_the_inner_IUnknown") {
    Outer outer;
    REQUIRE_HR(outer.result, S_OK);
    REQUIRE(outer.inner);
    CHECK(outer.references == 1); // the inner object holds no reference to the outer one
    CHECK(IdentityOf(outer.inner.Get()) == outer.inner.Get());
    CHECK(outer.inner.Get() != static_cast<IUnknown*>(&outer));
}

TEST_CASE("Aggregation_shows_the_identity_of_the_outer_object") {
    Outer outer;
    REQUIRE_HR(outer.result, S_OK);
    const auto printer = outer.Printer();
    CHECK(IdentityOf(printer.Get()) == static_cast<IUnknown*>(&outer));
    for (const IID& iid : {IID_IDispatch, IID_ISupportErrorInfo, __uuidof(ILogicalPrinter)}) {
        ComPtr<IUnknown> object;
        REQUIRE_HR(printer->QueryInterface(iid, object.PutVoid()), S_OK);
        CHECK(IdentityOf(object.Get()) == static_cast<IUnknown*>(&outer));
    }
}

TEST_CASE("Aggregation_reaches_the_outer_object_through_any_inner_interface") {
    Outer outer;
    REQUIRE_HR(outer.result, S_OK);
    const auto printer = outer.Printer();
    ComPtr<IPersist> persist;
    REQUIRE_HR(printer->QueryInterface(IID_IPersist, persist.PutVoid()), S_OK);
    CHECK(persist.Get() == static_cast<IPersist*>(&outer));
    ComPtr<ISupportErrorInfo> support;
    REQUIRE_HR(printer->QueryInterface(IID_ISupportErrorInfo, support.PutVoid()), S_OK);
    ComPtr<ILogicalPrinter> back;
    REQUIRE_HR(support->QueryInterface(__uuidof(ILogicalPrinter), back.PutVoid()), S_OK);
    CHECK(back.Get() == printer.Get());
}

TEST_CASE("Aggregation_counts_references_in_the_outer_object") {
    Outer outer;
    REQUIRE_HR(outer.result, S_OK);
    {
        const auto printer = outer.Printer();
        CHECK(outer.references == 2);
        CHECK(printer->AddRef() == 3);
        CHECK(outer.references == 3);
        CHECK(printer->Release() == 2);
        const int queries = outer.queries;
        CHECK(IdentityOf(printer.Get()) == static_cast<IUnknown*>(&outer));
        CHECK(outer.queries == queries + 1);
    }
    CHECK(outer.references == 1);
}

TEST_CASE("Aggregation_counts_the_inner_IUnknown_separately") {
    Outer outer;
    REQUIRE_HR(outer.result, S_OK);
    CHECK(outer.inner->AddRef() == 2);
    CHECK(outer.references == 1);
    CHECK(outer.inner->Release() == 1);
}

TEST_CASE("Aggregation_refuses_interfaces_that_neither_object_has") {
    Outer outer;
    REQUIRE_HR(outer.result, S_OK);
    const auto printer = outer.Printer();
    for (const IID& iid : {IID_IMarshal, __uuidof(IPrintJob)}) {
        void* object = GarbagePointer();
        CHECK_HR(printer->QueryInterface(iid, &object), E_NOINTERFACE);
        CHECK(object == nullptr);
        object = GarbagePointer();
        CHECK_HR(outer.inner->QueryInterface(iid, &object), E_NOINTERFACE);
        CHECK(object == nullptr);
    }
    CHECK_HR(outer.inner->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    CHECK_HR(outer.inner->QueryInterface(IID_IDispatch, nullptr), E_POINTER);
}

TEST_CASE("Aggregation_with_another_interface_than_IUnknown_is_refused") {
    struct Bare : IUnknown {
        virtual ~Bare() = default;
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
        ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
        ULONG STDMETHODCALLTYPE Release() override { return --references; }
        ULONG references = 1;
    } outer;
    const Library library;
    ComPtr<IClassFactory> factory;
    REQUIRE_HR(library.GetClassObject(__uuidof(LogicalPrinter), IID_IClassFactory, factory.PutVoid()), S_OK);
    for (const IID& iid : {IID_IDispatch, __uuidof(ILogicalPrinter), IID_ISupportErrorInfo, IID_IMarshal}) {
        void* object = GarbagePointer();
        CHECK_HR(factory->CreateInstance(&outer, iid, &object), CLASS_E_NOAGGREGATION);
        CHECK(object == nullptr);
    }
    CHECK(outer.references == 1);
}

TEST_CASE("Aggregation_keeps_the_library_loaded_until_the_inner_object_goes") {
    const Library library;
    {
        Outer outer;
        REQUIRE_HR(outer.result, S_OK);
        CHECK_HR(library.CanUnloadNow(), S_FALSE);
        const auto printer = outer.Printer();
        CHECK_HR(library.CanUnloadNow(), S_FALSE);
    }
    CHECK_HR(library.CanUnloadNow(), S_OK);
}

TEST_CASE("Aggregation_destroys_the_inner_object_with_its_last_own_reference") {
    const Library library;
    Outer outer;
    REQUIRE_HR(outer.result, S_OK);
    IUnknown* const inner = outer.inner.Detach();
    CHECK_HR(library.CanUnloadNow(), S_FALSE);
    CHECK(inner->Release() == 0);
    CHECK_HR(library.CanUnloadNow(), S_OK);
}

TEST_CASE("Aggregation_works_through_the_virtual_table_and_through_late_binding") {
    Outer outer;
    REQUIRE_HR(outer.result, S_OK);
    const auto printer = outer.Printer();
    REQUIRE_HR(Put(printer, &ILogicalPrinter::put_PrinterName, L"Office"), S_OK);

    ComPtr<IDispatch> dispatch;
    REQUIRE_HR(outer.QueryInterface(IID_IDispatch, dispatch.PutVoid()), S_OK);
    VARIANT value;
    VariantInit(&value);
    REQUIRE_HR(InvokeByName(dispatch.Get(), L"PrinterName", DISPATCH_PROPERTYGET, {}, &value), S_OK);
    REQUIRE(value.vt == VT_BSTR);
    CHECK_TEXT(BstrView(value.bstrVal), L"Office");

    REQUIRE_HR(InvokeByName(dispatch.Get(), L"Location", DISPATCH_PROPERTYPUT, {value}), S_OK);
    VariantClear(&value);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Location), L"Office");
    CHECK(outer.references == 3);
}

TEST_CASE("Aggregation_reports_failures_with_their_description") {
    Outer outer;
    REQUIRE_HR(outer.result, S_OK);
    const auto printer = outer.Printer();
    CHECK_HR(Put(printer, &ILogicalPrinter::put_Xml, L"<x/>"), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"LogicalPrinter element is missing.");
    ComPtr<ISupportErrorInfo> support;
    REQUIRE_HR(outer.QueryInterface(IID_ISupportErrorInfo, support.PutVoid()), S_OK);
    CHECK_HR(support->InterfaceSupportsErrorInfo(__uuidof(ILogicalPrinter)), S_OK);
}

TEST_CASE("Aggregation_without_an_outer_object_makes_a_plain_one") {
    const auto printer = CreateLogicalPrinter();
    CHECK(printer->AddRef() == 2);
    CHECK(printer->Release() == 1);
    CHECK(IdentityOf(printer.Get()) != nullptr);
}
