#include "Installation.h"

#include "Registry.h"

#include <objbase.h>

std::wstring ClassIdText(const std::wstring& className) {
    CLSID classId;
    wchar_t text[40];
    const bool found = SUCCEEDED(CLSIDFromProgID((L"Corvane." + className).c_str(), &classId)) &&
                       StringFromGUID2(classId, text, 40) > 0;
    return found ? text : L"";
}

std::wstring ServerKey(const std::wstring& classId) {
    return L"CLSID\\" + classId + L"\\InprocServer32";
}

std::wstring RegisteredModule(const std::wstring& className) {
    const std::wstring classId = ClassIdText(className);
    return classId.empty() ? L"" : ReadText(HKEY_CLASSES_ROOT, ServerKey(classId), nullptr).value_or(L"");
}

std::wstring CatalogueBeside(const std::wstring& module) {
    return module.substr(0, module.find_last_of(L"\\/") + 1) + L"JobAttributes.xml";
}
