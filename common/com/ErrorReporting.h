#pragma once

#include "ComPtr.h"
#include "common/QxException.h"

#include <windows.h>
#include <oaidl.h>

#include <utility>
#include <type_traits>

/// A failed COM call: its HRESULT and the object's error information, if any.
class ComError {
public:
    explicit ComError(HRESULT code, ComPtr<IErrorInfo> info = {}) noexcept
        : m_code(code), m_info(std::move(info)) {}

    HRESULT Code() const noexcept { return m_code; }
    const ComPtr<IErrorInfo>& Info() const noexcept { return m_info; }
    /// The system's text for the code, or a substitute; looked up on first use.
    const QxString& Message() const;

private:
    HRESULT m_code;
    ComPtr<IErrorInfo> m_info;
    mutable QxString m_message;
};

/// Throws a ComError if the code is a failure.
inline void ThrowIfFailed(HRESULT code) {
    if (FAILED(code))
        throw ComError(code);
}

/// Throws the ComError of a failed call, with the thread's error information if the object supports it for
/// the interface (ISupportErrorInfo).
[[noreturn]] void ThrowCallFailure(HRESULT code, IUnknown* object, REFIID iid);

/// Calls an object's interface and throws a ComError with the object's error information on failure. Clears
/// the thread's error information first: an object may fail without setting any.
template<class Call>
void CallObject(IUnknown* object, REFIID iid, Call&& call) {
    SetErrorInfo(0, nullptr);
    if (const HRESULT result = call(); FAILED(result))
        ThrowCallFailure(result, object, iid);
}

/// Logs "[source] Exception: message" and sets the message as the thread's error description. Returns the
/// result of setting it.
HRESULT ReportException(const wchar_t* message, const wchar_t* source) noexcept;

/// Passes on the error's information, or reports its message like ReportException. Returns the error's code.
HRESULT ReportComError(const ComError& error, const wchar_t* source) noexcept;

/// Reports the exception being handled and returns its HRESULT: the only place where exceptions become
/// results. Call it from a catch block only.
HRESULT ReportCurrentException(const wchar_t* source) noexcept;

/// Returns the code and clears the thread's error information, so that the caller does not get the
/// description of an earlier failure.
HRESULT FailWithoutInfo(HRESULT code) noexcept;

/// The error boundary: runs a method's body and reports exceptions under the source, a fixed text. The body
/// returns an HRESULT, or void for S_OK.
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
