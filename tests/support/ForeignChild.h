#pragma once

#include "tests/support/ComClient.h"

#include <functional>

/// The common beginning of all record interfaces. Jobs need no more of a child.
struct RecordBeginning : IDispatch {
    virtual HRESULT STDMETHODCALLTYPE get_Xml(BSTR* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE put_Xml(BSTR value) = 0;
};

/// A client's implementation of any kind of child record. It is on the test's stack and counts the references
/// that others hold.
class ForeignChild : public RecordBeginning, public ISupportErrorInfo {
public:
    explicit ForeignChild(REFIID childInterface) : m_interface(childInterface) {}

    template<class Interface>
    Interface* As() {
        return reinterpret_cast<Interface*>(static_cast<RecordBeginning*>(this));
    }

    /// Sets this error information whenever Xml fails, and reports support for it.
    void ExplainFailures(const wchar_t* description) {
        ComPtr<ICreateErrorInfo> creator;
        REQUIRE_HR(CreateErrorInfo(creator.Put()), S_OK);
        REQUIRE_HR(creator->SetDescription(const_cast<wchar_t*>(description)), S_OK);
        REQUIRE_HR(creator->SetSource(const_cast<wchar_t*>(L"ForeignChild")), S_OK);
        REQUIRE_HR(creator->SetGUID(m_interface), S_OK);
        REQUIRE_HR(creator->QueryInterface(IID_IErrorInfo, explanation.PutVoid()), S_OK);
    }

    // Set by the test.

    HRESULT queryResult = S_OK; ///< of a query for the child's interface
    HRESULT getResult = S_OK;
    HRESULT putResult = S_OK;
    HRESULT vouches = S_OK; ///< result of InterfaceSupportsErrorInfo
    std::wstring xml;       ///< the value of Xml
    ComPtr<IErrorInfo> explanation;
    bool explainsEachFailure = true; ///< with the explanation
    std::function<void()> callBack;  ///< runs inside each access to Xml
    std::function<void()> released;  ///< runs inside the release of the last reference

    // Read by the test.

    int references = 0;
    int referencesAfterCallBack = 0;
    int puts = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid == m_interface) {
            if (FAILED(queryResult))
                return queryResult;
            *object = static_cast<RecordBeginning*>(this);
        } else if (iid == IID_IUnknown || iid == IID_IDispatch) {
            *object = static_cast<RecordBeginning*>(this);
        } else if (iid == IID_ISupportErrorInfo && explanation) {
            *object = static_cast<ISupportErrorInfo*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override {
        if (--references == 0 && released)
            released();
        return static_cast<ULONG>(references);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* value) override {
        CallBack();
        if (FAILED(getResult))
            return Fail(getResult);
        *value = SysAllocStringLen(xml.data(), static_cast<UINT>(xml.size()));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR value) override {
        CallBack();
        ++puts;
        xml = BstrView(value);
        return FAILED(putResult) ? Fail(putResult) : S_OK;
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return iid == m_interface ? vouches : S_FALSE;
    }

private:
    void CallBack() {
        if (callBack)
            callBack();
        referencesAfterCallBack = references;
    }
    HRESULT Fail(HRESULT result) const {
        if (explanation && explainsEachFailure)
            SetErrorInfo(0, explanation.Get());
        return result;
    }

    IID m_interface;
};
