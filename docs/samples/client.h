// Helpers of the C++ samples in the object reference, without a framework. Use your own smart pointers if you
// have some.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "JobObjects.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <utility>

/// Initialises COM on this thread until main ends.
class Apartment {
public:
    Apartment() {
        if (FAILED(CoInitialize(nullptr)))
            std::exit(EXIT_FAILURE);
    }
    ~Apartment() { CoUninitialize(); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
};

/// Owns one reference.
template<class Interface>
class Ref {
public:
    Ref() = default;
    Ref(Ref&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    Ref(const Ref&) = delete;
    Ref& operator=(const Ref&) = delete;
    ~Ref() {
        if (m_object)
            m_object->Release();
    }
    Interface* operator->() const { return m_object; }
    Interface** Put() { return &m_object; }

private:
    Interface* m_object = nullptr;
};

/// Owns a BSTR, passed to the library or received from it.
class Text {
public:
    Text() = default;
    explicit Text(const wchar_t* text) : m_text(SysAllocString(text)) {}
    Text(Text&& other) noexcept : m_text(std::exchange(other.m_text, nullptr)) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(m_text); }
    operator BSTR() const { return m_text; }
    const wchar_t* Get() const { return m_text ? m_text : L""; }
    BSTR* Put() { return &m_text; }

private:
    BSTR m_text = nullptr;
};

template<class... Values>
void Print(const wchar_t* format, Values... values) {
    wchar_t line[1024];
    std::swprintf(line, std::size(line), format, values...);
    std::printf("%ls", line);
}

/// The description of the last failure on this thread.
inline Text ErrorText() {
    Text description;
    Ref<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) == S_OK)
        info->GetDescription(description.Put());
    return description;
}

/// Ends the program if a call failed.
inline void Check(HRESULT result) {
    if (SUCCEEDED(result))
        return;
    std::fprintf(stderr, "failed with 0x%08lX: %ls\n", static_cast<unsigned long>(result), ErrorText().Get());
    std::exit(EXIT_FAILURE);
}

template<class Class, class Interface>
Ref<Interface> Create() {
    Ref<Interface> object;
    Check(CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                           reinterpret_cast<void**>(object.Put())));
    return object;
}

inline const wchar_t* TrueOrFalse(VARIANT_BOOL value) {
    return value == VARIANT_FALSE ? L"False" : L"True";
}
