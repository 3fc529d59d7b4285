#include "ServerModule.h"

#include <cstdint>
#include <new>

bool ServerModule::Contains(const void* address) const noexcept {
    const auto* const image = reinterpret_cast<const unsigned char*>(m_instance);
    const auto* const dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* const header = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dosHeader->e_lfanew);
    const auto offset = reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(image);
    return offset < header->OptionalHeader.SizeOfImage;
}

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
