#pragma once

#include <windows.h>
#include <unknwn.h>

#include <utility>

/// Owns one reference to a COM object.
template<class Interface>
class ComPtr {
public:
    constexpr ComPtr() noexcept = default;
    /// Adds a reference.
    explicit ComPtr(Interface* object) noexcept : m_object(object) {
        if (m_object)
            m_object->AddRef();
    }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.m_object) {}
    ComPtr(ComPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~ComPtr() {
        if (m_object)
            m_object->Release();
    }

    Interface* Get() const noexcept { return m_object; }
    Interface* operator->() const noexcept { return m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// For out-parameters; releases the current object.
    Interface** Put() noexcept {
        *this = ComPtr();
        return &m_object;
    }
    void** PutVoid() noexcept { return reinterpret_cast<void**>(Put()); }
    /// The caller takes over the reference.
    Interface* Detach() noexcept { return std::exchange(m_object, nullptr); }

private:
    Interface* m_object = nullptr;
};
