#pragma once

#include "tests/support/ComClient.h"

// The members of an interface, from its type library, and both ways to call them.

/// Owns a VARIANT of one of the types that the interfaces use.
class Variant {
public:
    Variant() { VariantInit(&value); }
    Variant(Variant&& other) noexcept : value(other.value) { VariantInit(&other.value); }
    Variant& operator=(Variant other) noexcept {
        std::swap(value, other.value);
        return *this;
    }
    ~Variant() { VariantClear(&value); }

    static Variant Number(LONG number);
    static Variant Flag(VARIANT_BOOL flag);
    static Variant Date(DATE date);
    static Variant Text(std::wstring_view text);
    static Variant NullText();
    /// Adds a reference. Null is a null object.
    static Variant Object(IDispatch* object);

    VARIANT value;
};

/// The value as comparable text: 5, true, date 1.5, "text", object, no object. A long text is shown by its
/// length and hash.
std::string Show(const VARIANT& value);

struct Parameter {
    VARTYPE type; ///< VT_BSTR, VT_I4, VT_DATE, VT_BOOL or VT_DISPATCH, without VT_BYREF
    bool isOut;
    bool isResult;
    IID interfaceId; ///< of a VT_DISPATCH
};

struct Member {
    std::string name;
    MEMBERID id;
    INVOKEKIND kind;
    ULONG_PTR offset; ///< of its slot, in bytes
    std::vector<Parameter> parameters;
};

/// All members of the virtual-table view of an interface.
std::vector<Member> MembersOf(ITypeInfo& vtableView);

/// Calls a member's slot by its offset. Each argument has the type of its parameter; those of out-parameters
/// are VT_BYREF.
HRESULT CallSlot(IUnknown* object, const Member& member, std::vector<VARIANT> arguments);

/// An argument that passes a pointer to the place of a value; null passes a null pointer.
VARIANT ByReference(VARTYPE type, VARIANT* place);
/// Fills an out-value with garbage.
VARIANT Garbage();
bool IsGarbage(const VARIANT& place, VARTYPE type);

struct GetResult {
    HRESULT result;
    Variant value; ///< valid if the call succeeded
    bool isUntouched;
};
GetResult GetThroughSlot(IUnknown* object, const Member& getter);
HRESULT PutThroughSlot(IUnknown* object, const Member& putter, const Variant& value);

/// The outcome of a late-bound call.
struct InvokeResult {
    HRESULT result;
    HRESULT exceptionCode; ///< S_OK unless the result is DISP_E_EXCEPTION
    Variant value;
};
/// Arguments in natural order.
InvokeResult Invoke(IDispatch* object, MEMBERID id, WORD flags, std::vector<VARIANT> arguments = {});
