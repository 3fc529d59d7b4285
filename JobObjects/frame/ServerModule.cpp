#include "ServerModule.h"

#include <new>

HRESULT ServerModule::AddTerminationCallback(TerminationCallback callback, void* context) noexcept {
    auto* entry = new (std::nothrow) Termination{callback, context, m_terminations};
    if (!entry)
        return E_OUTOFMEMORY;
    while (!m_terminations.compare_exchange_weak(entry->next, entry)) {
    }
    return S_OK;
}

void ServerModule::RunTerminationCallbacks() noexcept {
    for (Termination* entry = m_terminations.exchange(nullptr); entry;) {
        entry->callback(entry->context);
        Termination* next = entry->next;
        delete entry;
        entry = next;
    }
}
