#include "CJobObjectsModule.h"

#include "JobObjects/frame/ClassFactory.h"

#include <mutex>

namespace {
constinit CJobObjectsModule module;
}

CJobObjectsModule& TheModule() noexcept {
    return module;
}

ServerModule& OwnModule() noexcept {
    return module;
}

void CJobObjectsModule::Terminate() noexcept {
    RunTerminationCallbacks();
    if (IGlobalInterfaceTable* table = m_globalInterfaceTable.exchange(nullptr))
        table->Release();
    for (auto& slot : m_classObjects) {
        if (void* encoded = slot.exchange(nullptr))
            static_cast<IUnknown*>(DecodePointer(encoded))->Release();
    }
}

HRESULT CJobObjectsModule::GetClassObject(REFCLSID classId, REFIID iid, void** object) noexcept {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (!Instance())
        return E_UNEXPECTED;
    for (std::size_t i = 0; i < ClassMap.size(); ++i) {
        if (!InlineIsEqualGUID(*ClassMap[i].classId, classId))
            continue;
        if (!m_classObjects[i]) {
            const HRESULT result = MakeClassObject(i);
            if (FAILED(result))
                return result;
        }
        return static_cast<IUnknown*>(DecodePointer(m_classObjects[i]))->QueryInterface(iid, object);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT CJobObjectsModule::MakeClassObject(std::size_t index) noexcept {
    const std::lock_guard guard(m_classObjectLock);
    if (m_classObjects[index])
        return S_OK;
    IUnknown* classObject = ClassFactory::Create(ClassMap[index]);
    if (!classObject)
        return E_OUTOFMEMORY;
    m_classObjects[index] = EncodePointer(classObject);
    return S_OK;
}

HRESULT CJobObjectsModule::GetGlobalInterfaceTable(IGlobalInterfaceTable** table) noexcept {
    if (!table)
        return E_POINTER;
    *table = nullptr;
    if (!m_globalInterfaceTable) {
        ComPtr<IGlobalInterfaceTable> created;
        const HRESULT result = CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                                                IID_IGlobalInterfaceTable, created.PutVoid());
        if (FAILED(result))
            return result;
        IGlobalInterfaceTable* none = nullptr;
        if (m_globalInterfaceTable.compare_exchange_strong(none, created.Get()))
            created.Detach();
    }
    *table = m_globalInterfaceTable;
    (*table)->AddRef();
    return S_OK;
}
