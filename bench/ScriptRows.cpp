// What a script pays: properties by late binding, and whole records filled by VBScript.

#include "Rows.h"

#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"

#include "JobObjects.h"

#include <objbase.h>

#include <filesystem>
#include <string>

namespace {

/// The least that a dual object can do: the type library dispatches, PaperSize is a BSTR.
class CopyLineStub final : public ICopyLine {
public:
    explicit CopyLineStub(ComPtr<ITypeInfo> type) : m_type(std::move(type)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return m_type->GetIDsOfNames(names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override {
        return m_type->Invoke(static_cast<ICopyLine*>(this), id, flags, parameters, result, exception,
                              badArgument);
    }

    HRESULT STDMETHODCALLTYPE get_PaperSize(BSTR* value) override {
        *value = NewBstr(m_paperSize.View());
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_PaperSize(BSTR value) override {
        m_paperSize = UniqueBstr(BstrView(value));
        return S_OK;
    }

#define UNUSED(method, Value)                                                                                \
    HRESULT STDMETHODCALLTYPE method(Value) override { return E_NOTIMPL; }
    UNUSED(get_Xml, BSTR*)
    UNUSED(put_Xml, BSTR)
    UNUSED(get_PaperDimensions, BSTR*)
    UNUSED(put_PaperDimensions, BSTR)
    UNUSED(get_Attributes, BSTR*)
    UNUSED(put_Attributes, BSTR)
    UNUSED(get_Sheets, LONG*)
    UNUSED(put_Sheets, LONG)
    UNUSED(get_PagesBW, LONG*)
    UNUSED(put_PagesBW, LONG)
    UNUSED(get_PagesColor, LONG*)
    UNUSED(put_PagesColor, LONG)
    UNUSED(get_PagesBlank, LONG*)
    UNUSED(put_PagesBlank, LONG)
    UNUSED(get_PagesTotal, LONG*)
    UNUSED(get_IsColor, VARIANT_BOOL*)
    UNUSED(get_IsDuplex, VARIANT_BOOL*)
    UNUSED(get_DBPaperSize, LONG*)
    UNUSED(get_DBAttributes, LONG*)
#undef UNUSED

private:
    ComPtr<ITypeInfo> m_type;
    UniqueBstr m_paperSize;
};

DISPID PaperSizeId(IDispatch* line) {
    wchar_t text[] = L"PaperSize";
    LPOLESTR name = text;
    DISPID id = DISPID_UNKNOWN;
    Require(line->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id) == S_OK, "a member's name");
    return id;
}

std::size_t Get(IDispatch* line, DISPID id) {
    DISPPARAMS none{};
    VARIANT value;
    VariantInit(&value);
    Require(line->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value, nullptr,
                         nullptr) == S_OK,
            "a property get");
    const std::size_t length = SysStringLen(V_BSTR(&value));
    VariantClear(&value);
    return length;
}

void Put(IDispatch* line, DISPID id, BSTR text) {
    DISPID put = DISPID_PROPERTYPUT;
    VARIANT value;
    V_VT(&value) = VT_BSTR;
    V_BSTR(&value) = text;
    DISPPARAMS parameters{&value, &put, 1, 1};
    Require(line->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters, nullptr,
                         nullptr, nullptr) == S_OK,
            "a property put");
}

template<class Work>
void AddPropertyRow(Table& table, const std::string& name, IDispatch* line, IDispatch* stub, double atMost,
                    Work work) {
    const auto contender = [&](const char* who, IDispatch* object) {
        return Contender{who,
                         [object, &work] {
                             for (int i = 0; i < 100; ++i)
                                 work(object);
                         },
                         100};
    };
    table.Time("a script's property " + name,
               {contender("CopyLine", line), contender("bare dual stub", stub)},
               {{"bare dual stub", atMost}});
}

void AddPropertyRows(Table& table) {
    ComPtr<ICopyLine> line;
    ComPtr<ITypeInfo> type;
    Require(CoCreateInstance(__uuidof(CopyLine), nullptr, CLSCTX_INPROC_SERVER, __uuidof(ICopyLine),
                             line.PutVoid()) == S_OK &&
                line->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.Put()) == S_OK,
            "a copy line");
    CopyLineStub stub(type);
    const UniqueBstr text(L"210 x 297 mm");
    const DISPID id = PaperSizeId(line.Get());
    for (IDispatch* const object : {static_cast<IDispatch*>(line.Get()), static_cast<IDispatch*>(&stub)}) {
        Require(PaperSizeId(object) == id, "the identifier of a property");
        Put(object, id, text.Get());
        Require(Get(object, id) == text.View().size(), "the value of a property");
    }
    const auto add = [&](const char* name, double atMost, auto work) {
        AddPropertyRow(table, name, line.Get(), &stub, atMost, work);
    };
    add("get by name", 0.5, [](IDispatch* object) { Use(Get(object, PaperSizeId(object))); });
    add("get by DISPID", 1.1, [id](IDispatch* object) { Use(Get(object, id)); });
    add("put by name", 0.5, [&text](IDispatch* object) { Put(object, PaperSizeId(object), text.Get()); });
    add("put by DISPID", 1.1, [id, &text](IDispatch* object) { Put(object, id, text.Get()); });
}

void RunScript(int records) {
    std::wstring command = L"cscript.exe //nologo \"" + std::filesystem::absolute(FILL_SCRIPT).wstring() +
                           L"\" " + std::to_wstring(records);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    Require(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                           &process) != 0,
            "a running script");
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    Require(code == 1, "a script's result");
}

void AddRecordRow(Table& table) {
    constexpr int records = 5000;
    constexpr int repetitions = 5; // half a second each
    const std::string work = "fill a print job by VBScript";
    table.Time(work, {{"many", [] { RunScript(records); }}, {"start", [] { RunScript(0); }}}, {},
               repetitions);
    const double seconds = table.Seconds(work, "many") - table.Seconds(work, "start");
    if (seconds > 0)
        table.Figure(work, "26 properties and its Xml", seconds / records * 1e6, 0, "µs");
}

} // namespace

void AddScriptRows(Table& table) {
    AddPropertyRows(table);
    AddRecordRow(table);
}
