#include "RecordClasses.h"

#include "JobObjectClasses.h"

namespace {

template<class Interface>
RecordClass ClassOf(const wchar_t* name, REFCLSID classId) {
    return {name, classId, __uuidof(Interface),
            [](IUnknown* record, BSTR text) { return static_cast<Interface*>(record)->put_Xml(text); },
            [](IUnknown* record, BSTR* text) { return static_cast<Interface*>(record)->get_Xml(text); }};
}

} // namespace

const std::vector<RecordClass>& RecordClasses() {
#define RECORD_CLASS(name, Interface) ClassOf<Interface>(L## #name, __uuidof(name)),
    static const std::vector<RecordClass> classes{JOBOBJECTS_CLASSES(RECORD_CLASS)};
#undef RECORD_CLASS
    return classes;
}

ComPtr<IDispatch> CreateRecord(const RecordClass& of) {
    ComPtr<IDispatch> record;
    REQUIRE_HR(CoCreateInstance(of.classId, nullptr, CLSCTX_INPROC_SERVER, of.interfaceId, record.PutVoid()),
               S_OK);
    return record;
}
