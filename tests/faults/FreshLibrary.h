#pragma once

#include "FaultLoop.h"

#include "tests/support/Library.h"

#include <optional>

/// The library, reloaded for each run.
class FreshLibrary {
public:
    FreshLibrary();
    ~FreshLibrary() { Unload(); }
    FreshLibrary(const FreshLibrary&) = delete;
    FreshLibrary& operator=(const FreshLibrary&) = delete;

    /// Loads the library and returns the result.
    HRESULT Load();
    /// Unloads it and makes COM release it.
    void Unload();
    const Library* operator->() const { return &*m_library; }

private:
    std::optional<Library> m_library;
};

/// Uses what the library creates on first use: late binding, children, a failing call, the catalogue.
void UseAndFail(const LibraryClass& of);

/// Runs the work in both fault modes. When all faults run, runs it twice and checks that the second time
/// leaks nothing. Returns the number of faults of one pass.
std::size_t RunWithoutGrowth(const std::function<std::size_t(FaultMode)>& work);
