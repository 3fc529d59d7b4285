#include "RecordObject.h"

#include "Console.h"
#include "SystemError.h"

#include <algorithm>

namespace {

DISPID MemberOf(IDispatch* object, const wchar_t* name) {
    DISPID member = DISPID_UNKNOWN;
    auto* names = const_cast<LPOLESTR>(name);
    const HRESULT result = object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member);
    if (FAILED(result))
        throw ToolError(std::wstring(L"the member ") + name + L" does not exist: " + ErrorText(result));
    return member;
}

} // namespace

std::wstring RecordObject::ClassOfRoot(std::wstring_view root) {
    if (root == L"JobCopyLines")
        return L"CopyLines";
    const auto* const found = std::find(ClassNames.begin(), ClassNames.end(), root);
    return found == ClassNames.end() || root == L"CopyLines" ? L"" : *found;
}

RecordObject::RecordObject(const std::wstring& className) {
    const std::wstring progId = L"Corvane." + className;
    CLSID classId;
    HRESULT result = CLSIDFromProgID(progId.c_str(), &classId);
    if (SUCCEEDED(result))
        result = CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, m_object.PutVoid());
    if (FAILED(result))
        throw ToolError(progId + L" cannot be created: " + ErrorText(result),
                        L"To find out why, run \"jobobjects check\".");
    m_xml = MemberOf(Get(), L"Xml");
}

RecordObject::RecordObject(IDispatch* object) : m_object(object), m_xml(MemberOf(object, L"Xml")) {
}

bool RecordObject::PutXml(const UniqueBstr& xml) {
    VARIANT argument;
    argument.vt = VT_BSTR;
    argument.bstrVal = xml.Get();
    return SUCCEEDED(InvokeMember(Get(), m_xml, DISPATCH_PROPERTYPUT, &argument, nullptr, m_error));
}

UniqueBstr RecordObject::Xml() {
    VARIANT value;
    VariantInit(&value);
    if (FAILED(InvokeMember(Get(), m_xml, DISPATCH_PROPERTYGET, nullptr, &value, m_error)))
        throw ToolError(L"the record cannot write its XML: " + m_error);
    UniqueBstr xml;
    *xml.Put() = value.bstrVal;
    return xml;
}

HRESULT InvokeMember(IDispatch* object, DISPID member, WORD flags, VARIANT* argument, VARIANT* result,
                     std::wstring& error) {
    DISPID put = DISPID_PROPERTYPUT;
    const bool isPut = (flags & DISPATCH_PROPERTYPUT) != 0;
    DISPPARAMS parameters{argument, isPut ? &put : nullptr, argument ? 1u : 0u, isPut ? 1u : 0u};
    EXCEPINFO exception{};
    HRESULT outcome = object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result,
                                     &exception, nullptr);
    if (FAILED(outcome)) {
        const bool told = outcome == DISP_E_EXCEPTION;
        if (told && exception.pfnDeferredFillIn)
            exception.pfnDeferredFillIn(&exception);
        if (told && FAILED(exception.scode))
            outcome = exception.scode;
        error = told && exception.bstrDescription
                    ? WithErrorNumber(std::wstring(BstrView(exception.bstrDescription)), outcome)
                    : ErrorText(outcome);
    }
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return outcome;
}
