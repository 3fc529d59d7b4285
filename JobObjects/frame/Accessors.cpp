#include "Accessors.h"

#include "common/log/QxLogger.h"

HRESULT GetText(BSTR* pVal, const QxString& field, const wchar_t* source) noexcept {
    return GetValue(pVal, source, [&]() -> const QxString& { return field; });
}

HRESULT PutText(QxString& field, BSTR value, const wchar_t* source) noexcept {
    return RunMethod(source, [&] { field = QxString(BstrView(value)); });
}

void ThrowInvalidXmlFragment(const wchar_t* source) {
    const std::wstring message = L"[" + std::wstring(source) + L"] Invalid Xml fragment";
    LogError(L"%ls", message.c_str());
    throw QxException(QxString(message));
}
