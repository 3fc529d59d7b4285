#pragma once

#include <windows.h>
#include <unknwn.h>

#include <string>
#include <vector>

// The library's module and a list of its classes, for tests below the level of CoCreateInstance.

/// The path of the library that COM loads: the one beside the program, whose manifest then names it, or the
/// registered one.
std::wstring LibraryPath();

/// Keeps that library loaded.
class Library {
public:
    Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library();

    HMODULE Module() const { return m_module; }

    // The entry points. Without assertions, so any thread may call them.
    HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object) const {
        return m_getClassObject(classId, iid, object);
    }
    HRESULT CanUnloadNow() const { return m_canUnloadNow(); }
    HRESULT RegisterServer() const { return m_registerServer(); }
    HRESULT UnregisterServer() const { return m_unregisterServer(); }

private:
    template<class Function>
    void Find(const char* name, Function& function) const;

    HMODULE m_module;
    HRESULT(STDAPICALLTYPE* m_getClassObject)(REFCLSID, REFIID, void**) = nullptr;
    HRESULT(STDAPICALLTYPE* m_canUnloadNow)() = nullptr;
    HRESULT(STDAPICALLTYPE* m_registerServer)() = nullptr;
    HRESULT(STDAPICALLTYPE* m_unregisterServer)() = nullptr;
};

/// One of the classes, as published.
struct LibraryClass {
    std::string name;
    CLSID classId;
    IID interfaceId;
    bool aggregatable;
};

const std::vector<LibraryClass>& LibraryClasses();
const LibraryClass& LibraryClassNamed(const std::string& name);

/// A pointer that a failing call must replace.
inline void* GarbagePointer() {
    return reinterpret_cast<void*>(static_cast<ULONG_PTR>(0xCDCDCDCD));
}
