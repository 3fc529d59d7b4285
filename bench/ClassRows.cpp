// Rows common to all classes: creation by the class factory, look-up of member names.

#include "Rows.h"

#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"

#include "JobObjects.h"

#include <objbase.h>

#include <algorithm>

namespace {

struct Class {
    std::string name;
    CLSID id;
};

std::string Narrow(std::wstring_view text) {
    return std::string(text.begin(), text.end());
}

/// All classes of the type library.
std::vector<Class> Classes() {
    ComPtr<ITypeLib> library;
    Require(LoadTypeLibEx(SHIPPED_LIBRARY, REGKIND_NONE, library.Put()) == S_OK, "the type library");
    std::vector<Class> classes;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        TYPEKIND kind;
        ComPtr<ITypeInfo> type;
        TYPEATTR* attributes = nullptr;
        UniqueBstr name;
        library->GetTypeInfoType(i, &kind);
        if (kind != TKIND_COCLASS)
            continue;
        Require(library->GetTypeInfo(i, type.Put()) == S_OK && type->GetTypeAttr(&attributes) == S_OK &&
                    type->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr) == S_OK,
                "a class of the type library");
        classes.push_back({Narrow(name.View()), attributes->guid});
        type->ReleaseTypeAttr(attributes);
    }
    Require(classes.size() == 10, "the number of classes");
    return classes;
}

/// The cheapest possible object: a reference count only.
class Stub final : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (!IsEqualGUID(iid, IID_IUnknown))
            return E_NOINTERFACE;
        *object = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG count = --m_references;
        if (count == 0)
            delete this;
        return count;
    }

private:
    ~Stub() = default;
    ULONG m_references = 1;
};

class StubFactory final : public IClassFactory {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
        auto* const stub = new Stub;
        const HRESULT result = stub->QueryInterface(iid, object);
        stub->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

/// Repeats short work, so that the time per call can be measured.
template<class Work>
Contender Repeated(const std::string& name, Work work) {
    return {name,
            [work] {
                for (int i = 0; i < 100; ++i)
                    work();
            },
            100};
}

void Create(IClassFactory* factory) {
    ComPtr<IUnknown> object;
    factory->CreateInstance(nullptr, IID_IUnknown, object.PutVoid());
    Use(object ? 1 : 0);
}

void AddFactoryRow(Table& table, const std::vector<Class>& classes) {
    StubFactory stub;
    std::vector<ComPtr<IClassFactory>> factories;
    std::vector<Contender> contenders;
    std::vector<Goal> goals;
    for (const Class& one : classes) {
        // Jobs also create their job contents by ProgID; another row measures that.
        if (one.name.ends_with("Job"))
            continue;
        ComPtr<IClassFactory> factory;
        ComPtr<IUnknown> object;
        Require(CoGetClassObject(one.id, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                                 factory.PutVoid()) == S_OK &&
                    factory->CreateInstance(nullptr, IID_IUnknown, object.PutVoid()) == S_OK && object,
                "an object from the class factory");
        contenders.push_back(Repeated(one.name, [factory] { Create(factory.Get()); }));
        goals.push_back({"empty stub", 4, one.name});
    }
    contenders.push_back(Repeated("empty stub", [&stub] { Create(&stub); }));
    table.Time("object from the class factory", contenders, goals);
}

struct Member {
    std::wstring name;
    MEMBERID id = 0;
};

/// The interface's own members, in slot order.
std::vector<Member> Members(IDispatch* object) {
    ComPtr<ITypeInfo> type;
    TYPEATTR* attributes = nullptr;
    Require(object->GetTypeInfo(0, 0, type.Put()) == S_OK && type->GetTypeAttr(&attributes) == S_OK,
            "the type information");
    std::vector<Member> members;
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        UniqueBstr name;
        Require(type->GetFuncDesc(i, &function) == S_OK &&
                    type->GetDocumentation(function->memid, name.Put(), nullptr, nullptr, nullptr) == S_OK,
                "a member");
        constexpr MEMBERID firstInherited = 0x60000000;
        if (function->memid < firstInherited)
            members.push_back({std::wstring(name.View()), function->memid});
        type->ReleaseFuncDesc(function);
    }
    type->ReleaseTypeAttr(attributes);
    Require(!members.empty(), "no members");
    return members;
}

DISPID Find(IDispatch* object, const Member& member) {
    auto* name = const_cast<LPOLESTR>(member.name.c_str());
    DISPID id = DISPID_UNKNOWN;
    object->GetIDsOfNames(IID_NULL, &name, 1, 0, &id);
    return id;
}

void AddNameRow(Table& table, const Class& one) {
    ComPtr<IDispatch> object;
    Require(CoCreateInstance(one.id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.PutVoid()) == S_OK,
            "an object");
    const std::vector<Member> members = Members(object.Get());
    for (const Member& member : members)
        Require(Find(object.Get(), member) == member.id, "the identifier of a name");
    const Member& first = members.front();
    const Member& last = members.back();
    table.Time("GetIDsOfNames of I" + one.name,
               {Repeated("last, " + Narrow(last.name),
                         [object, last] { Use(static_cast<std::size_t>(Find(object.Get(), last))); }),
                Repeated("first, " + Narrow(first.name),
                         [object, first] { Use(static_cast<std::size_t>(Find(object.Get(), first))); })},
               {{"first, " + Narrow(first.name), 1.5}});
}

} // namespace

void AddClassRows(Table& table) {
    const std::vector<Class> classes = Classes();
    for (const Class& one : classes)
        AddNameRow(table, one);
    AddFactoryRow(table, classes);
}
