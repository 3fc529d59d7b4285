#include "Accessors.h"

#include "common/log/QxLogger.h"

#include <cstring>

HRESULT GetText(BSTR* pVal, const QxString& field, const wchar_t* source) noexcept {
    return GetValue(pVal, source, [&]() -> const QxString& { return field; });
}

HRESULT PutText(QxString& field, BSTR value, const wchar_t* source) noexcept {
    return RunMethod(source, [&] { field = QxString(BstrView(value)); });
}

HRESULT GetDate(DATE* pVal, const QxDateTime& field) noexcept {
    if (!pVal)
        return FailWithoutInfo(E_POINTER);
    const std::uint64_t bits = field.Bits();
    static_assert(sizeof(bits) == sizeof(*pVal));
    std::memcpy(pVal, &bits, sizeof(bits));
    return S_OK;
}

void ThrowInvalidXmlFragment(const wchar_t* source) {
    const std::wstring message = L"[" + std::wstring(source) + L"] Invalid Xml fragment";
    LogError(L"%ls", message.c_str());
    throw QxException(QxString(message));
}
