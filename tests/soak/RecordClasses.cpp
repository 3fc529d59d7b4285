#include "RecordClasses.h"

namespace {

template<class Interface>
RecordClass ClassOf(const wchar_t* name, REFCLSID classId) {
    return {name, classId, __uuidof(Interface),
            [](IUnknown* record, BSTR text) { return static_cast<Interface*>(record)->put_Xml(text); },
            [](IUnknown* record, BSTR* text) { return static_cast<Interface*>(record)->get_Xml(text); }};
}

} // namespace

const std::array<RecordClass, 10>& RecordClasses() {
    static const std::array<RecordClass, 10> classes{
        ClassOf<IPrintJob>(L"PrintJob", __uuidof(PrintJob)),
        ClassOf<ICopyJob>(L"CopyJob", __uuidof(CopyJob)),
        ClassOf<IScanJob>(L"ScanJob", __uuidof(ScanJob)),
        ClassOf<IFaxJob>(L"FaxJob", __uuidof(FaxJob)),
        ClassOf<IJobContents>(L"JobContents", __uuidof(JobContents)),
        ClassOf<ICopyLines>(L"CopyLines", __uuidof(CopyLines)),
        ClassOf<ICopyLine>(L"CopyLine", __uuidof(CopyLine)),
        ClassOf<ILogicalPrinter>(L"LogicalPrinter", __uuidof(LogicalPrinter)),
        ClassOf<IWindowsPrintInfo>(L"WindowsPrintInfo", __uuidof(WindowsPrintInfo)),
        ClassOf<IPolicyResults>(L"PolicyResults", __uuidof(PolicyResults))};
    return classes;
}

ComPtr<IDispatch> CreateRecord(const RecordClass& of) {
    ComPtr<IDispatch> record;
    REQUIRE_HR(CoCreateInstance(of.classId, nullptr, CLSCTX_INPROC_SERVER, of.interfaceId, record.PutVoid()),
               S_OK);
    return record;
}
