#include "ErrorReporting.h"

#include "common/QxMisc.h"
#include "common/log/QxLogger.h"
#include "common/text/SystemText.h"

#include <exception>
#include <new>
#include <stdexcept>
#include <string>

namespace {

constexpr wchar_t GeneralMessage[] = L"A general exception occurred.";

/// The system's message without its line end; empty if there is none.
QxString SystemMessage(HRESULT code) {
    const std::wstring text = SystemText(static_cast<DWORD>(code), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                                         SystemTextLines::AsStored);
    std::wstring_view view(text);
    if (view.size() >= 2 && view.back() == L'\n') {
        view.remove_suffix(1);
        if (view.back() == L'\r')
            view.remove_suffix(1);
    }
    return QxString(view);
}

QxString SubstituteText(HRESULT code) {
    constexpr auto firstDispatchError = static_cast<HRESULT>(0x80040200);
    constexpr auto lastDispatchError = static_cast<HRESULT>(0x8004FFFF);
    if (code > firstDispatchError && code <= lastDispatchError)
        return QxMisc::FormatString(L"IDispatch error #%d", static_cast<int>(code - firstDispatchError));
    return QxMisc::FormatString(L"Unknown error 0x%0lX", static_cast<unsigned long>(code));
}

HRESULT AttachDescription(const wchar_t* message) noexcept {
    ComPtr<ICreateErrorInfo> creator;
    HRESULT result = CreateErrorInfo(creator.Put());
    if (FAILED(result))
        return FailWithoutInfo(result);
    // Source and interface stay unset: callers see the description only. SetDescription copies.
    creator->SetDescription(const_cast<wchar_t*>(message));
    ComPtr<IErrorInfo> info;
    result = creator->QueryInterface(IID_IErrorInfo, info.PutVoid());
    return FAILED(result) ? FailWithoutInfo(result) : SetErrorInfo(0, info.Get());
}

HRESULT ReportStandardException(const std::exception& error, const wchar_t* source) noexcept {
    try {
        const std::string_view text = error.what();
        // The standard library's texts are ASCII.
        std::wstring wide;
        for (const char c : text)
            wide += static_cast<wchar_t>(static_cast<unsigned char>(c));
        ReportException(wide.c_str(), source);
    } catch (...) {
        ReportException(GeneralMessage, source); // out of memory
    }
    return E_FAIL;
}

} // namespace

const QxString& ComError::Message() const {
    if (m_message.empty())
        m_message = SystemMessage(m_code);
    if (m_message.empty())
        m_message = SubstituteText(m_code);
    return m_message;
}

void ThrowCallFailure(HRESULT code, IUnknown* object, REFIID iid) {
    ComPtr<ISupportErrorInfo> support;
    ComPtr<IErrorInfo> info;
    if (SUCCEEDED(object->QueryInterface(IID_ISupportErrorInfo, support.PutVoid())) && support &&
        support->InterfaceSupportsErrorInfo(iid) == S_OK)
        GetErrorInfo(0, info.Put());
    throw ComError(code, std::move(info));
}

HRESULT ReportException(const wchar_t* message, const wchar_t* source) noexcept {
    LogError(LogCom, L"[%ls] Exception: %ls", source, message);
    return AttachDescription(message);
}

HRESULT ReportComError(const ComError& error, const wchar_t* source) noexcept {
    QxString message;
    try {
        message = error.Message();
    } catch (...) {
        // Out of memory: report the failure without its text.
    }
    if (error.Info()) {
        LogError(LogCom, L"[%ls] COM exception: %ls", source, message.c_str());
        SetErrorInfo(0, error.Info().Get());
    } else {
        ReportException(message.c_str(), source);
    }
    return error.Code();
}

HRESULT ReportCurrentException(const wchar_t* source) noexcept {
    try {
        throw;
    } catch (const QxException& error) {
        ReportException(error.Message().c_str(), source);
    } catch (const ComError& error) {
        return ReportComError(error, source);
    } catch (const std::bad_alloc&) {
        return ReportComError(ComError(E_OUTOFMEMORY), source);
    } catch (const std::length_error&) {
        return ReportComError(ComError(E_OUTOFMEMORY), source); // a text larger than the address space
    } catch (const std::exception& error) {
        return ReportStandardException(error, source);
    } catch (...) {
        ReportException(GeneralMessage, source);
    }
    return E_FAIL;
}

HRESULT FailWithoutInfo(HRESULT code) noexcept {
    SetErrorInfo(0, nullptr);
    return code;
}
