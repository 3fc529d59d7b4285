// Some compilers' programs unmask floating-point exceptions. No date that such a host puts or gets may raise
// one in the library.

#include "tests/support/Library.h"
#include "tests/support/Members.h"
#include "tests/support/TypeLibraryWalk.h"

#include <bit>
#include <cfloat>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>
#include <utility>

namespace {

/// Unmasks invalid operation, division by zero and overflow in x87 and SSE during its lifetime.
class Unmasked {
public:
    Unmasked() : m_sse(_mm_getcsr()), m_x87(_control87(0, 0)) {
        _control87(_EM_UNDERFLOW | _EM_INEXACT | _EM_DENORMAL, _MCW_EM);
        _mm_setcsr(Sse);
    }
    ~Unmasked() {
        _control87(m_x87, _MCW_EM); // also waits for a pending exception
        _mm_setcsr(m_sse);
    }
    Unmasked(const Unmasked&) = delete;
    Unmasked& operator=(const Unmasked&) = delete;

    static constexpr unsigned Sse = 0x1900;

private:
    unsigned m_sse;
    unsigned m_x87;
};

/// Counts the exceptions raised during its lifetime. Masks each one at the fault, so that the program
/// continues.
class RaisedExceptions {
public:
    RaisedExceptions() : m_handler(AddVectoredExceptionHandler(1, Note)) { s_count = 0; }
    ~RaisedExceptions() { RemoveVectoredExceptionHandler(m_handler); }
    RaisedExceptions(const RaisedExceptions&) = delete;
    RaisedExceptions& operator=(const RaisedExceptions&) = delete;

    /// The count since the last call.
    int Take() { return std::exchange(s_count, 0); }

private:
    /// The start of the processor's save area, see the instruction fxsave.
    struct SavedState {
        WORD x87Control, x87Status;
        BYTE others[20];
        DWORD sse;
    };

    /// Masks all floating-point exceptions and clears their flags.
    static void MaskExceptions(CONTEXT& context) {
#ifdef _WIN64
        auto& saved = reinterpret_cast<SavedState&>(context.FltSave);
        context.MxCsr = Masked(context.MxCsr);
#else
        // Two copies of the x87 state.
        context.FloatSave.ControlWord |= X87Masks;
        context.FloatSave.StatusWord &= ~static_cast<DWORD>(X87Flags);
        auto& saved = *reinterpret_cast<SavedState*>(context.ExtendedRegisters);
#endif
        saved.x87Control = static_cast<WORD>(saved.x87Control | X87Masks);
        saved.x87Status = static_cast<WORD>(saved.x87Status & ~X87Flags);
        saved.sse = Masked(saved.sse);
    }

    static DWORD Masked(DWORD sse) {
        constexpr DWORD masks = 0x1F80, flags = 0x3F;
        return (sse | masks) & ~flags;
    }

    static constexpr WORD X87Masks = 0x3F, X87Flags = 0x80FF;
    static constexpr DWORD MultipleFaults = 0xC00002B4, MultipleTraps = 0xC00002B5;

    static LONG CALLBACK Note(EXCEPTION_POINTERS* raised) {
        const DWORD code = raised->ExceptionRecord->ExceptionCode;
        const bool isFloat = (code >= STATUS_FLOAT_DENORMAL_OPERAND && code <= STATUS_FLOAT_UNDERFLOW) ||
                             code == MultipleFaults || code == MultipleTraps;
        if (!isFloat)
            return EXCEPTION_CONTINUE_SEARCH;
        ++s_count;
        MaskExceptions(*raised->ContextRecord);
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    static inline int s_count = 0;
    void* m_handler;
};

constexpr std::uint64_t Patterns[] = {
    0x7FF8000000000000, 0xFFF8000000000000,
    0x7FFFFFFFFFFFFFFF, // quiet NaNs
    0x7FF0000000000001, 0xFFF0000000000001,
    0x7FF4000000000000,                     // signalling NaNs
    0x7FF0000000000000, 0xFFF0000000000000, // infinities
    0x7FEFFFFFFFFFFFFF, 0xFFEFFFFFFFFFFFFF, // the greatest number and its negative
    0x0000000000000001, 0x800FFFFFFFFFFFFF,
    0x0010000000000000,                     // denormals and the least normal number
    0x0000000000000000, 0x8000000000000000, // zeros
    0x43E0000000000000, 0xC3E0000000000000, // beyond 64-bit numbers
    0x41E0000000000000, 0xC1E0000000200000, // beyond 32-bit numbers
    0x4146924100000000, 0x41469240FFFFFFFF,
    0x4146924080000000, // just after 31 December 9999, and its last instant
    0xC1241035FFFFFFFF, 0xC124103600000000,
    0xC124103400000000, // around 1 January 100
    0x3ED845C8A0CE5129, 0x3FF8000000000000,
    0xBFF4000000000000, // half a second, a day and a half, before day zero
    0x40E3A6651EB851EC, // an ordinary time
};

DATE DateOf(std::uint64_t bits) {
    return std::bit_cast<DATE>(bits);
}

VARIANT DateArgument(std::uint64_t bits) {
    VARIANT argument;
    VariantInit(&argument);
    argument.vt = VT_DATE;
    std::memcpy(&argument.date, &bits, sizeof(bits));
    return argument;
}

const Member* MemberWith(const std::vector<Member>& members, const std::string& name, INVOKEKIND kind) {
    for (const Member& member : members)
        if (member.name == name && member.kind == kind)
            return &member;
    return nullptr;
}

/// The date properties and Xml of one class.
class DateClass {
public:
    DateClass(const LibraryClass& of, ITypeInfo& vtable) : m_members(MembersOf(vtable)) {
        REQUIRE_HR(
            CoCreateInstance(of.classId, nullptr, CLSCTX_INPROC_SERVER, of.interfaceId, m_object.PutVoid()),
            S_OK);
        for (const Member& member : m_members)
            if (member.kind == INVOKE_PROPERTYPUT && member.parameters.at(0).type == VT_DATE)
                m_putters.push_back(&member);
    }

    std::size_t Properties() const { return m_putters.size(); }

    /// Checks that each property keeps the bits; writes and reads the XML.
    void Check(std::uint64_t bits) {
        for (const Member* putter : m_putters) {
            INFO(putter->name);
            const Member* getter = MemberWith(m_members, putter->name, INVOKE_PROPERTYGET);
            REQUIRE(getter != nullptr);
            CHECK_HR(Call(*putter, DateArgument(bits)), S_OK);
            std::uint64_t got = ~bits;
            VARIANT place;
            VariantInit(&place);
            place.vt = VT_BYREF | VT_DATE;
            place.byref = &got;
            CHECK_HR(Call(*getter, place), S_OK);
            CHECK(got == bits);
        }
        BSTR xml = nullptr;
        VARIANT place;
        VariantInit(&place);
        place.vt = VT_BYREF | VT_BSTR;
        place.pbstrVal = &xml;
        REQUIRE_HR(Call(*MemberWith(m_members, "Xml", INVOKE_PROPERTYGET), place), S_OK);
        VARIANT text;
        VariantInit(&text);
        text.vt = VT_BSTR;
        text.bstrVal = xml;
        CHECK_HR(Call(*MemberWith(m_members, "Xml", INVOKE_PROPERTYPUT), text), S_OK);
        SysFreeString(xml);
    }

    /// The same through late binding.
    void CheckLateBound(std::uint64_t bits) {
        ComPtr<IDispatch> object;
        REQUIRE_HR(m_object->QueryInterface(IID_IDispatch, object.PutVoid()), S_OK);
        for (const Member* putter : m_putters) {
            INFO(putter->name);
            VARIANT argument = DateArgument(bits), result;
            VariantInit(&result);
            DISPID put = DISPID_PROPERTYPUT;
            DISPPARAMS parameters{&argument, &put, 1, 1}, none{};
            const auto invoke = [&](WORD flags, DISPPARAMS& arguments, VARIANT* value) {
                const Unmasked unmasked;
                return object->Invoke(putter->id, IID_NULL, LOCALE_USER_DEFAULT, flags, &arguments, value,
                                      nullptr, nullptr);
            };
            CHECK_HR(invoke(DISPATCH_PROPERTYPUT, parameters, nullptr), S_OK);
            CHECK_HR(invoke(DISPATCH_PROPERTYGET, none, &result), S_OK);
            std::uint64_t got = ~bits;
            std::memcpy(&got, &result.date, sizeof(got));
            CHECK(got == bits);
        }
    }

private:
    HRESULT Call(const Member& member, const VARIANT& argument) {
        VARTYPE type = argument.vt;
        VARIANT copy = argument, result;
        VARIANTARG* pointer = &copy;
        VariantInit(&result);
        HRESULT called = E_UNEXPECTED;
        {
            const Unmasked unmasked;
            called =
                DispCallFunc(m_object.Get(), member.offset, CC_STDCALL, VT_I4, 1, &type, &pointer, &result);
        }
        REQUIRE_HR(called, S_OK);
        return result.lVal;
    }

    ComPtr<IUnknown> m_object;
    std::vector<Member> m_members;
    std::vector<const Member*> m_putters;
};

} // namespace

TEST_CASE("FloatExceptions_reach_the_handler_of_this_test") {
    RaisedExceptions raised;
    const volatile DATE quiet = DateOf(0x7FF8000000000000), one = 1;
    const __m128d numbers = _mm_set_sd(quiet), others = _mm_set_sd(one);
    volatile int less = 0;
    unsigned state = 0;
    {
        const Unmasked unmasked;
        state = _mm_getcsr();
        less = _mm_comilt_sd(numbers, others);
    }
    static_cast<void>(less);
    CHECK(state == Unmasked::Sse);
    CHECK(raised.Take() == 1);
#ifndef _WIN64 // the C runtime controls the x87 in 32 bits only
    const volatile DATE signalling = DateOf(0x7FF0000000000001);
    {
        const Unmasked unmasked;
        const volatile long double loaded = signalling;
        static_cast<void>(loaded);
    }
    CHECK(raised.Take() == 1);
#endif
}

TEST_CASE("FloatExceptions_are_never_raised_by_dates") {
    ComPtr<ITypeLib> library;
    REQUIRE_HR(LoadTypeLibEx(LibraryPath().c_str(), REGKIND_NONE, library.Put()), S_OK);
    RaisedExceptions raised;
    std::size_t properties = 0;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto dispatchView = typeNamed(*library.Get(), "I" + each.name);
        DateClass dates(each, *vtableView(*dispatchView.Get()).Get());
        properties += dates.Properties();
        for (const std::uint64_t bits : Patterns) {
            INFO(std::hex << bits);
            dates.Check(bits);
            CHECK(raised.Take() == 0);
            dates.CheckLateBound(bits);
            CHECK(raised.Take() == 0);
        }
    }
    CHECK(properties == 7);
}
