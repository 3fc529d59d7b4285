#pragma once

#include "ComPtr.h"
#include "common/QxException.h"

#include <windows.h>
#include <oaidl.h>

#include <utility>
#include <type_traits>

/// A failed COM call: its HRESULT and, where the called object gave one, its error information.
class ComError {
public:
    explicit ComError(HRESULT code, ComPtr<IErrorInfo> info = {}) noexcept
        : m_code(code), m_info(std::move(info)) {}

    HRESULT Code() const noexcept { return m_code; }
    const ComPtr<IErrorInfo>& Info() const noexcept { return m_info; }
    /// The system's text for the code, or a substitute; worked out on first use.
    const QxString& Message() const;

private:
    HRESULT m_code;
    ComPtr<IErrorInfo> m_info;
    mutable QxString m_message;
};

/// Throws a ComError when the code is a failure.
inline void ThrowIfFailed(HRESULT code) {
    if (FAILED(code))
        throw ComError(code);
}

/// Throws the ComError of a failed call on an object's interface, with the thread's error information if the
/// object vouches for that interface.
[[noreturn]] void ThrowCallFailure(HRESULT code, IUnknown* object, REFIID iid);

/// Makes a call on an object's interface and throws a ComError when it fails, with the error information that
/// the object left for its caller. An object may fail without leaving any, so what an earlier call left goes
/// first.
template<class Call>
void CallObject(IUnknown* object, REFIID iid, Call&& call) {
    SetErrorInfo(0, nullptr);
    if (const HRESULT result = call(); FAILED(result))
        ThrowCallFailure(result, object, iid);
}

/// Logs "[source] Exception: message" and leaves the message as the calling thread's error description.
/// Returns the result of attaching the error information. Never throws.
HRESULT ReportException(const wchar_t* message, const wchar_t* source) noexcept;

/// Passes on the error's own information, or reports its message as ReportException does. Returns the
/// error's code. Never throws.
HRESULT ReportComError(const ComError& error, const wchar_t* source) noexcept;

/// Reports the exception being handled and returns the HRESULT that stands for it: the one place where
/// exceptions become results. To be called from a catch block only.
HRESULT ReportCurrentException(const wchar_t* source) noexcept;

/// Returns a failure that carries no error information of its own, so that a caller does not take an
/// earlier failure's description for it.
HRESULT FailWithoutInfo(HRESULT code) noexcept;

/// The error boundary: runs a method's body so that no exception leaves it. The body returns an HRESULT, or
/// nothing for S_OK. The source is the fixed text under which failures are reported.
template<class Body>
HRESULT RunMethod(const wchar_t* source, Body&& body) noexcept {
    try {
        if constexpr (std::is_void_v<decltype(body())>) {
            body();
            return S_OK;
        } else {
            return body();
        }
    } catch (...) {
        return ReportCurrentException(source);
    }
}
