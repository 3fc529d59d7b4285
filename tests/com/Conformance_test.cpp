#include "tests/support/ConformanceTables.h"
#include "tests/support/Library.h"
#include "tests/support/RecordTest.h"
#include "tests/support/TypeLibraryWalk.h"
#include "tests/support/Wine.h"

#include <cstdio>
#include <set>

// Calls every member that the module's type library lists, through its vtable slot and through
// IDispatch::Invoke. New members are tested without a change here.

namespace {

constexpr WORD Get = DISPATCH_PROPERTYGET, Put = DISPATCH_PROPERTYPUT, PutRef = DISPATCH_PROPERTYPUTREF,
               Method = DISPATCH_METHOD;

void CheckDefault(const Default& expected, const VARIANT& value) {
    INFO(Show(value));
    switch (expected.kind) {
    case Default::Exactly:
        CHECK(Show(value) == expected.value);
        break;
    case Default::BeginsWith:
        REQUIRE(value.vt == VT_BSTR);
        CHECK(Narrow(BstrView(value.bstrVal)).substr(0, expected.value.size()) == expected.value);
        break;
    case Default::LocalTime:
        REQUIRE(value.vt == VT_DATE);
        CHECK(IsLocalNow(value.date));
        break;
    case Default::UniversalTime:
        REQUIRE(value.vt == VT_DATE);
        CHECK(IsUtcNow(value.date));
        break;
    case Default::Refused:
        FAIL("a refused getter has no value");
    }
}

ComPtr<IUnknown> IdentityOf(IUnknown* object) {
    ComPtr<IUnknown> identity;
    REQUIRE_HR(object->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
    return identity;
}

/// A child whose QueryInterface fails with an unusual code.
class FailingChild : public IDispatch {
public:
    static constexpr HRESULT Failure = E_ACCESSDENIED;

    virtual ~FailingChild() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return Failure;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }

    ULONG references = 1;
};

/// Exercises the members of one class, each on a new object.
class Exerciser {
public:
    Exerciser(const LibraryClass& of, ITypeInfo& vtable) : m_class(of), m_members(MembersOf(vtable)) {}

    /// Returns the number of members it exercised.
    std::size_t Run() {
        std::size_t covered = 0;
        for (const Member& member : m_members) {
            INFO(Name(member) << (member.kind == INVOKE_PROPERTYPUT ? " put" : ""));
            Exercise(member);
            ++covered;
        }
        ExerciseGaps();
        return covered;
    }

private:
    std::string Name(const Member& member) const { return "I" + m_class.name + "." + member.name; }

    ComPtr<IDispatch> NewObject() const {
        ComPtr<IDispatch> object;
        REQUIRE_HR(CoCreateInstance(m_class.classId, nullptr, CLSCTX_INPROC_SERVER, m_class.interfaceId,
                                    object.PutVoid()),
                   S_OK);
        return object;
    }

    const Member* Find(MEMBERID id, INVOKEKIND kind) const {
        for (const Member& member : m_members)
            if (member.id == id && member.kind == kind)
                return &member;
        return nullptr;
    }

    const Member& GetterOf(const Member& putter) const {
        const Member* getter = Find(putter.id, INVOKE_PROPERTYGET);
        REQUIRE(getter != nullptr);
        return *getter;
    }

    void Exercise(const Member& member) {
        switch (member.kind) {
        case INVOKE_PROPERTYGET:
            return ExerciseGet(member);
        case INVOKE_FUNC:
            return ExerciseMethod(member);
        case INVOKE_PROPERTYPUT:
            if (member.name == "Xml")
                return ExerciseXmlPut(member);
            if (member.parameters.at(0).type == VT_DISPATCH)
                return ExerciseChildPut(member);
            return ExerciseValuePut(member);
        default:
            FAIL("no member is of kind " << member.kind);
        }
    }

    void ExerciseGet(const Member& getter) {
        REQUIRE(getter.parameters.size() == 1);
        REQUIRE(getter.parameters[0].isResult);
        const VARTYPE type = getter.parameters[0].type;
        const Default expected = DefaultOf(Name(getter), type);
        const auto object = NewObject();
        CHECK_HR(CallSlot(object.Get(), getter, {ByReference(type, nullptr)}), E_POINTER);
        CHECK_TEXT(TakeErrorDescription(), L"<none>");

        const GetResult slot = GetThroughSlot(object.Get(), getter);
        if (expected.kind == Default::Refused) {
            CHECK_HR(slot.result, WrongLogTargetType);
            CHECK(slot.isUntouched);
        } else {
            CHECK_HR(slot.result, S_OK);
            CheckDefault(expected, slot.value.value);
        }
        for (const WORD flags : {Get, static_cast<WORD>(Get | Method)}) {
            const InvokeResult invoked = Invoke(object.Get(), getter.id, flags);
            if (expected.kind == Default::Refused) {
                CHECK_HR(invoked.result, DISP_E_EXCEPTION);
                CHECK_HR(invoked.exceptionCode, WrongLogTargetType);
            } else {
                CHECK_HR(invoked.result, S_OK);
                CHECK(Show(invoked.value.value) == Show(slot.value.value));
            }
        }
        CheckRefusedPuts(object.Get(), getter);
    }

    /// No property accepts a put by reference; a read-only property accepts no put.
    void CheckRefusedPuts(IDispatch* object, const Member& getter) {
        const VARTYPE type = getter.parameters[0].type;
        const Variant value = type == VT_DISPATCH ? Variant::Object(nullptr) : std::move(RangeOf(type)[0]);
        CHECK_HR(Invoke(object, getter.id, PutRef, {value.value}).result, DISP_E_MEMBERNOTFOUND);
        if (!Find(getter.id, INVOKE_PROPERTYPUT)) {
            const HRESULT refused = Invoke(object, getter.id, Put, {value.value}).result;
            if (!RunsUnderWine() || refused != DISP_E_BADPARAMCOUNT) // Wine 10
                CHECK_HR(refused, DISP_E_MEMBERNOTFOUND);
        }
    }

    void ExerciseValuePut(const Member& putter) {
        const Member& getter = GetterOf(putter);
        const std::string name = Name(putter);
        const auto object = NewObject();
        const auto late = NewObject();
        std::string last = "none";
        const std::vector<Variant> range = RangeOf(putter.parameters.at(0).type);
        REQUIRE_FALSE(range.empty());
        for (const Variant& value : range) {
            INFO("put " << Show(value.value));
            const bool accepted = IsAccepted(name, value.value);
            CHECK_HR(PutThroughSlot(object.Get(), putter, value), accepted ? S_OK : E_FAIL);
            CHECK_HR(Invoke(late.Get(), putter.id, Put, {value.value}).result,
                     accepted ? S_OK : DISP_E_EXCEPTION);
            if (accepted)
                last = Stored(name, value.value);
            CheckHolds(object.Get(), getter, last);
            CheckHolds(late.Get(), getter, last);
        }
    }

    /// Checks that both ways to get a property return the value.
    void CheckHolds(IDispatch* object, const Member& getter, const std::string& expected) {
        const GetResult slot = GetThroughSlot(object, getter);
        CHECK_HR(slot.result, S_OK);
        CHECK(Show(slot.value.value) == expected);
        const InvokeResult invoked = Invoke(object, getter.id, Get);
        CHECK_HR(invoked.result, S_OK);
        CHECK(Show(invoked.value.value) == expected);
    }

    /// Checks that a record reads what another one of its class wrote.
    void ExerciseXmlPut(const Member& putter) {
        const Member& getter = GetterOf(putter);
        const auto source = NewObject();
        const GetResult xml = GetThroughSlot(source.Get(), getter);
        REQUIRE_HR(xml.result, S_OK);
        const auto object = NewObject();
        CHECK_HR(PutThroughSlot(object.Get(), putter, xml.value), S_OK);
        CheckHolds(object.Get(), getter, Show(xml.value.value));
        const auto late = NewObject();
        CHECK_HR(Invoke(late.Get(), putter.id, Put, {xml.value.value}).result, S_OK);
        CheckHolds(late.Get(), getter, Show(xml.value.value));

        for (const Variant& wrong : RangeOf(VT_BSTR)) {
            INFO("put " << Show(wrong.value));
            CHECK_HR(PutThroughSlot(object.Get(), putter, wrong), E_FAIL);
            const InvokeResult invoked = Invoke(object.Get(), putter.id, Put, {wrong.value});
            CHECK_HR(invoked.result, DISP_E_EXCEPTION);
            CHECK_HR(invoked.exceptionCode, E_FAIL);
        }
    }

    void ExerciseChildPut(const Member& putter) {
        const auto object = NewObject();
        const Variant child = NewChild(putter.parameters.at(0).interfaceId);
        CHECK_HR(PutThroughSlot(object.Get(), putter, child), S_OK);
        CheckChild(object.Get(), putter, child.value.pdispVal);
        const Variant second = NewChild(putter.parameters.at(0).interfaceId);
        CHECK_HR(Invoke(object.Get(), putter.id, Put, {second.value}).result, S_OK);
        CheckChild(object.Get(), putter, second.value.pdispVal);
        IsRequiredChild(Name(putter)) ? CheckRequiredChild(object.Get(), putter, child)
                                      : CheckOptionalChild(object.Get(), putter, child);

        FailingChild failing;
        CHECK_HR(PutThroughSlot(object.Get(), putter, child), S_OK);
        VARIANT argument;
        VariantInit(&argument);
        argument.vt = VT_DISPATCH;
        argument.pdispVal = &failing;
        CHECK_HR(CallSlot(object.Get(), putter, {argument}), FailingChild::Failure);
        CHECK(failing.references == 1);
        CheckChild(object.Get(), putter, child.value.pdispVal);
    }

    static Variant NewChild(REFIID interfaceId) {
        for (const LibraryClass& each : LibraryClasses())
            if (each.interfaceId == interfaceId)
                return Variant::Object(Create<IDispatch>(each.classId).Get());
        FAIL("no class has the child's interface");
        return {};
    }

    /// Checks that the property returns the same object, or null.
    void CheckChild(IDispatch* object, const Member& putter, IDispatch* child) {
        const GetResult slot = GetThroughSlot(object, GetterOf(putter));
        const InvokeResult invoked = Invoke(object, putter.id, Get);
        CHECK_HR(slot.result, S_OK);
        CHECK_HR(invoked.result, S_OK);
        for (const VARIANT* got : {&slot.value.value, &invoked.value.value}) {
            REQUIRE(Show(*got) == (child ? "object" : "no object"));
            if (child)
                CHECK(IdentityOf(got->pdispVal).Get() == IdentityOf(child).Get());
        }
    }

    void CheckRequiredChild(IDispatch* object, const Member& putter, const Variant& child) {
        const Variant null = Variant::Object(nullptr), stranger = Variant::Object(CreateCopyLine().Get());
        CHECK_HR(PutThroughSlot(object, putter, child), S_OK);
        CHECK_HR(PutThroughSlot(object, putter, null), E_POINTER);
        CheckChild(object, putter, child.value.pdispVal);
        const InvokeResult invoked = Invoke(object, putter.id, Put, {null.value});
        CHECK_HR(invoked.result, DISP_E_EXCEPTION);
        CHECK_HR(invoked.exceptionCode, E_POINTER);
        CheckChild(object, putter, child.value.pdispVal);
        CHECK_HR(PutThroughSlot(object, putter, stranger), E_NOINTERFACE);
        CheckChild(object, putter, child.value.pdispVal);
    }

    void CheckOptionalChild(IDispatch* object, const Member& putter, const Variant& child) {
        const Variant null = Variant::Object(nullptr), stranger = Variant::Object(CreateCopyLine().Get());
        CHECK_HR(PutThroughSlot(object, putter, null), S_OK);
        CheckChild(object, putter, nullptr);
        CHECK_HR(PutThroughSlot(object, putter, child), S_OK);
        CHECK_HR(Invoke(object, putter.id, Put, {null.value}).result, S_OK);
        CheckChild(object, putter, nullptr);
        CHECK_HR(PutThroughSlot(object, putter, child), S_OK);
        CHECK_HR(PutThroughSlot(object, putter, stranger), S_OK);
        CheckChild(object, putter, nullptr);
    }

    void ExerciseMethod(const Member& called) {
        const std::size_t count = called.parameters.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (!called.parameters[i].isOut)
                continue;
            std::vector<VARIANT> places(count, Garbage());
            std::vector<VARIANT> arguments = NeutralArguments(called, places);
            arguments[i] = ByReference(called.parameters[i].type, nullptr);
            INFO("null for parameter " << i);
            CHECK_HR(CallSlot(NewObject().Get(), called, arguments), E_POINTER);
            CHECK_TEXT(TakeErrorDescription(), L"<none>");
        }

        const HRESULT expected = MethodResult(Name(called));
        std::vector<VARIANT> places(count, Garbage()), latePlaces(count, Garbage());
        CHECK_HR(CallSlot(NewObject().Get(), called, NeutralArguments(called, places)), expected);
        std::vector<VARIANT> arguments = NeutralArguments(called, latePlaces);
        const bool hasResult = count > 0 && called.parameters.back().isResult;
        if (hasResult)
            arguments.pop_back();
        InvokeResult invoked = Invoke(NewObject().Get(), called.id, Method, arguments);
        CHECK_HR(invoked.result, SUCCEEDED(expected) ? S_OK : DISP_E_EXCEPTION);
        CHECK_HR(invoked.exceptionCode, expected);
        if (hasResult && SUCCEEDED(invoked.result))
            std::swap(latePlaces.back(), invoked.value.value);
        CheckOutValues(called, places, latePlaces, SUCCEEDED(expected));
        CHECK_HR(Invoke(NewObject().Get(), called.id, Put, {VARIANT{}}).result, DISP_E_MEMBERNOTFOUND);
    }

    /// Zeros, empty texts and variables for the out-values.
    static std::vector<VARIANT> NeutralArguments(const Member& called, std::vector<VARIANT>& places) {
        std::vector<VARIANT> arguments;
        for (std::size_t i = 0; i < called.parameters.size(); ++i) {
            const VARTYPE type = called.parameters[i].type;
            VARIANT argument{};
            argument.vt = type; // zero, false, or null as the empty text
            arguments.push_back(called.parameters[i].isOut ? ByReference(type, &places[i]) : argument);
        }
        return arguments;
    }

    /// Checks that no garbage is left and that both calls return the same values. Frees them.
    static void CheckOutValues(const Member& called, std::vector<VARIANT>& places,
                               std::vector<VARIANT>& latePlaces, bool succeeded) {
        for (std::size_t i = 0; i < called.parameters.size(); ++i) {
            if (!called.parameters[i].isOut)
                continue;
            INFO("parameter " << i);
            REQUIRE_FALSE(IsGarbage(places[i], called.parameters[i].type));
            Variant slot, late;
            slot.value = places[i];
            slot.value.vt = called.parameters[i].type;
            if (!succeeded) {
                CHECK(Show(slot.value) == "no object");
                continue;
            }
            REQUIRE_FALSE(IsGarbage(latePlaces[i], called.parameters[i].type));
            late.value = latePlaces[i];
            late.value.vt = called.parameters[i].type;
            CHECK(Show(slot.value) == Show(late.value));
            CHECK(Show(slot.value) != "null text");
        }
    }

    void ExerciseGaps() {
        std::set<MEMBERID> used;
        for (const Member& member : m_members)
            used.insert(member.id);
        const auto object = NewObject();
        for (MEMBERID id = -1; id <= *used.rbegin() + 2; ++id) {
            if (used.contains(id))
                continue;
            INFO("I" << m_class.name << " DISPID " << id);
            CHECK_HR(Invoke(object.Get(), id, Get).result, DISP_E_MEMBERNOTFOUND);
            CHECK_HR(Invoke(object.Get(), id, Method).result, DISP_E_MEMBERNOTFOUND);
            const Variant value = Variant::Number(1);
            CHECK_HR(Invoke(object.Get(), id, Put, {value.value}).result, DISP_E_MEMBERNOTFOUND);
        }
    }

    const LibraryClass& m_class;
    std::vector<Member> m_members;
};

} // namespace

TEST_CASE("Conformance_every_member_of_the_type_library_keeps_its_contract") {
    // As published: IPrintJob, IJobContents, ICopyLines, ICopyLine, IWindowsPrintInfo, IPolicyResults,
    // ICopyJob, IScanJob, IFaxJob, ILogicalPrinter.
    constexpr std::size_t published = 70 + 28 + 9 + 21 + 50 + 18 + 19 + 25 + 25 + 64;
    ComPtr<ITypeLib> library;
    REQUIRE_HR(LoadTypeLibEx(LibraryPath().c_str(), REGKIND_NONE, library.Put()), S_OK);
    std::size_t covered = 0;
    for (const LibraryClass& each : LibraryClasses()) {
        const ComPtr<ITypeInfo> dispatchView = typeNamed(*library.Get(), "I" + each.name);
        covered += Exerciser(each, *vtableView(*dispatchView.Get()).Get()).Run();
    }
    std::printf("covered %zu of %zu members\n", covered, published);
    CHECK(covered == published);
}
