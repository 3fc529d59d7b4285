#pragma once

#include "ChildClass.h"
#include "MethodName.h"
#include "common/com/Bstr.h"
#include "common/com/ErrorReporting.h"
#include "common/QxDateTime.h"
#include "common/xml/QxXmlWriter.h"

#include <algorithm>
#include <concepts>
#include <cstdint>

// Property accessors by value type. A getter checks its pointer first (E_POINTER) and clears the value before
// it works.

inline BSTR ToAutomation(const QxString& value) {
    return NewBstr(value);
}
inline BSTR ToAutomation(const std::wstring& value) {
    return NewBstr(value);
}
inline BSTR ToAutomation(const QxXmlWriter& value) {
    return NewBstr(value.Text());
}
template<std::integral Number>
LONG ToAutomation(Number value) noexcept {
    return static_cast<LONG>(value);
}
inline VARIANT_BOOL ToAutomation(bool value) noexcept {
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}

/// Gets the value that the body returns; reports a failure under the source.
template<class Out, class Body>
HRESULT GetValue(Out* pVal, const wchar_t* source, Body&& body) noexcept {
    if (!pVal)
        return FailWithoutInfo(E_POINTER);
    *pVal = Out{};
    return RunMethod(source, [&] { *pVal = ToAutomation(body()); });
}

/// Copies the date's 64 bits: loading a NaN could raise a floating-point exception.
HRESULT GetDate(DATE* pVal, const QxDateTime& field) noexcept;
HRESULT GetText(BSTR* pVal, const QxString& field, const wchar_t* source) noexcept;
HRESULT PutText(QxString& field, BSTR value, const wchar_t* source) noexcept;

/// Logs "[source] Invalid Xml fragment" and throws it as a QxException.
[[noreturn]] void ThrowInvalidXmlFragment(const wchar_t* source);

/// Gets a number or flag; cannot fail.
template<class Out, class Field>
HRESULT GetField(Out* pVal, const Field& field) noexcept {
    if (!pVal)
        return FailWithoutInfo(E_POINTER);
    *pVal = ToAutomation(field);
    return S_OK;
}

/// Gets the held child with a reference added, or null.
template<class Interface>
HRESULT GetChild(Interface** pVal, const ComPtr<Interface>& field) noexcept {
    if (!pVal)
        return FailWithoutInfo(E_POINTER);
    *pVal = ComPtr<Interface>(field).Detach();
    return S_OK;
}

/// Replaces an optional child. Null or E_NOINTERFACE clears it; any other failure of the query is reported
/// and leaves the child unchanged.
template<class Interface>
HRESULT PutOptionalChild(ComPtr<Interface>& field, Interface* value, const wchar_t* source) noexcept {
    return RunMethod(source, [&] {
        ComPtr<Interface> child;
        const HRESULT result =
            value ? value->QueryInterface(ChildClass<Interface>::Iid, child.PutVoid()) : E_NOINTERFACE;
        if (result != E_NOINTERFACE)
            ThrowIfFailed(result);
        field = std::move(child);
    });
}

/// Replaces a required child; refuses null.
template<class Interface>
HRESULT PutRequiredChild(ComPtr<Interface>& field, Interface* value, const wchar_t* source) noexcept {
    if (!value)
        return FailWithoutInfo(E_POINTER);
    return RunMethod(source, [&] {
        ComPtr<Interface> child;
        ThrowIfFailed(value->QueryInterface(ChildClass<Interface>::Iid, child.PutVoid()));
        field = std::move(child);
    });
}

// Property signatures. The accessors' names are macro arguments, so that a search finds them. Anything
// special about a property is written out in its class.

#define TEXT_PROPERTY(getter, putter, field)                                                                 \
    HRESULT STDMETHODCALLTYPE getter(BSTR* pVal) override {                                                  \
        return GetText(pVal, field, METHOD_SOURCE(getter));                                                  \
    }                                                                                                        \
    HRESULT STDMETHODCALLTYPE putter(BSTR newVal) override {                                                 \
        return PutText(field, newVal, METHOD_SOURCE(putter));                                                \
    }
#define NUMBER_PROPERTY(getter, putter, field)                                                               \
    HRESULT STDMETHODCALLTYPE getter(LONG* pVal) override {                                                  \
        return GetField(pVal, field);                                                                        \
    }                                                                                                        \
    HRESULT STDMETHODCALLTYPE putter(LONG newVal) override {                                                 \
        field = newVal;                                                                                      \
        return S_OK;                                                                                         \
    }
#define MINIMUM_NUMBER_PROPERTY(getter, putter, field, minimum)                                              \
    HRESULT STDMETHODCALLTYPE getter(LONG* pVal) override {                                                  \
        return GetField(pVal, field);                                                                        \
    }                                                                                                        \
    HRESULT STDMETHODCALLTYPE putter(LONG newVal) override {                                                 \
        field = std::max<LONG>(newVal, minimum);                                                             \
        return S_OK;                                                                                         \
    }
#define FLAG_PROPERTY(getter, putter, field)                                                                 \
    HRESULT STDMETHODCALLTYPE getter(VARIANT_BOOL* pVal) override {                                          \
        return GetField(pVal, field);                                                                        \
    }                                                                                                        \
    HRESULT STDMETHODCALLTYPE putter(VARIANT_BOOL newVal) override {                                         \
        field = newVal != VARIANT_FALSE;                                                                     \
        return S_OK;                                                                                         \
    }
#define DATE_PROPERTY(getter, putter, field)                                                                 \
    HRESULT STDMETHODCALLTYPE getter(DATE* pVal) override {                                                  \
        return GetDate(pVal, field);                                                                         \
    }                                                                                                        \
    HRESULT STDMETHODCALLTYPE putter(DATE newVal) override {                                                 \
        field = QxDateTime(newVal);                                                                          \
        return S_OK;                                                                                         \
    }
#define OPTIONAL_CHILD_PROPERTY(getter, putter, Interface, field)                                            \
    HRESULT STDMETHODCALLTYPE getter(Interface** pVal) override {                                            \
        return GetChild(pVal, field);                                                                        \
    }                                                                                                        \
    HRESULT STDMETHODCALLTYPE putter(Interface* newVal) override {                                           \
        return PutOptionalChild(field, newVal, METHOD_SOURCE(putter));                                       \
    }
#define REQUIRED_CHILD_PROPERTY(getter, putter, Interface, field)                                            \
    HRESULT STDMETHODCALLTYPE getter(Interface** pVal) override {                                            \
        return GetChild(pVal, field);                                                                        \
    }                                                                                                        \
    HRESULT STDMETHODCALLTYPE putter(Interface* newVal) override {                                           \
        return PutRequiredChild(field, newVal, METHOD_SOURCE(putter));                                       \
    }

// The same for a wrapped plain record that has accessors.

#define WRAPPED_TEXT_PROPERTY(getter, putter, value, setValue)                                               \
    HRESULT STDMETHODCALLTYPE getter(BSTR* pVal) override {                                                  \
        return GetText(pVal, value, METHOD_SOURCE(getter));                                                  \
    }                                                                                                        \
    HRESULT STDMETHODCALLTYPE putter(BSTR newVal) override {                                                 \
        return RunMethod(METHOD_SOURCE(putter), [&] { setValue(QxString(BstrView(newVal))); });              \
    }
#define WRAPPED_NUMBER_PROPERTY(getter, putter, value, setValue)                                             \
    HRESULT STDMETHODCALLTYPE getter(LONG* pVal) override {                                                  \
        return GetField(pVal, value);                                                                        \
    }                                                                                                        \
    HRESULT STDMETHODCALLTYPE putter(LONG newVal) override {                                                 \
        setValue(newVal);                                                                                    \
        return S_OK;                                                                                         \
    }
/// A read-only property, computed on each call.
#define DERIVED_PROPERTY(getter, Type, expression)                                                           \
    HRESULT STDMETHODCALLTYPE getter(Type* pVal) override {                                                  \
        return GetValue(pVal, METHOD_SOURCE(getter), [&] { return expression; });                            \
    }
