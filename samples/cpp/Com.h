#pragma once

// Everything that a C++ client of an Automation library needs: two owners and an error check. Copy it into
// your program.

#include <windows.h>
#include <oleauto.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

/// Smart pointer: owns one reference to an object.
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
    /// For an out-parameter: job->get_JobContents(contents.Out()).
    Interface** Out() {
        *this = Ref();
        return &m_object;
    }

private:
    Interface* m_object = nullptr;
};

/// Owns a BSTR, the string type of the interfaces.
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

/// The exception for a failing call.
struct Failure {
    std::wstring message;
};

/// Throws if a call failed, with the library's error description.
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

/// Creates an object: Create<IPrintJob, PrintJob>(). The identifiers come from the generated header.
template<class Interface, class Class>
Ref<Interface> Create() {
    Ref<Interface> object;
    Check(CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                           reinterpret_cast<void**>(object.Out())));
    return object;
}
