#pragma once

// What a C++ client of an Automation library needs, in one page: two owners and a check. Copy it into your
// program.

#include <windows.h>
#include <oleauto.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

/// Owns one reference to an object: adds one when it is copied, gives it back at the end of its life.
template<class Interface>
class Ref {
public:
    Ref() = default;
    Ref(const Ref& other) : m_object(other.m_object) {
        if (m_object)
            m_object->AddRef();
    }
    Ref(Ref&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    Ref& operator=(Ref other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~Ref() {
        if (m_object)
            m_object->Release();
    }

    Interface* Get() const { return m_object; }
    Interface* operator->() const { return m_object; }
    /// The place for an out-parameter: job->get_JobContents(contents.Out()).
    Interface** Out() {
        *this = Ref();
        return &m_object;
    }

private:
    Interface* m_object = nullptr;
};

/// Owns a BSTR, the text that travels through the interfaces.
class Bstr {
public:
    Bstr() = default;
    Bstr(std::wstring_view text) : m_text(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
    Bstr(const wchar_t* text) : Bstr(std::wstring_view(text)) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(m_text); }

    /// For an in-parameter.
    BSTR In() const { return m_text; }
    /// For an out-parameter: job->get_Xml(xml.Out()).
    BSTR* Out() {
        SysFreeString(std::exchange(m_text, nullptr));
        return &m_text;
    }
    std::wstring_view View() const { return std::wstring_view(m_text, SysStringLen(m_text)); }

private:
    BSTR m_text = nullptr;
};

/// What a failing call is thrown as.
struct Failure {
    std::wstring message;
};

/// Throws when a call failed, with the description that the library has left on the thread.
inline void Check(HRESULT result) {
    if (SUCCEEDED(result))
        return;
    wchar_t number[16];
    std::swprintf(number, 16, L" (0x%08lX)", static_cast<unsigned long>(result));
    Ref<IErrorInfo> info;
    Bstr description;
    if (GetErrorInfo(0, info.Out()) == S_OK)
        info->GetDescription(description.Out());
    throw Failure{std::wstring(description.View()) + number};
}

/// A new object: Create<IPrintJob, PrintJob>(). The generated header ties the identifiers to the types.
template<class Interface, class Class>
Ref<Interface> Create() {
    Ref<Interface> object;
    Check(CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                           reinterpret_cast<void**>(object.Out())));
    return object;
}
