#pragma once

#include <windows.h>
#include <unknwn.h>

#include <utility>

/// Owns one counted reference to a COM object.
template<class Interface>
class ComPtr {
public:
    constexpr ComPtr() noexcept = default;
    /// Adds a reference of its own.
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

    /// For out-parameters: releases what is held and gives the place to write to.
    Interface** Put() noexcept {
        *this = ComPtr();
        return &m_object;
    }
    void** PutVoid() noexcept { return reinterpret_cast<void**>(Put()); }
    /// Hands the reference over to the caller.
    Interface* Detach() noexcept { return std::exchange(m_object, nullptr); }

private:
    Interface* m_object = nullptr;
};
