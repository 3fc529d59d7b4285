#pragma once

#include "FaultLoop.h"

#include "tests/support/Library.h"

#include <optional>

/// The library, loaded anew for each run.
class FreshLibrary {
public:
    FreshLibrary();
    ~FreshLibrary() { Unload(); }
    FreshLibrary(const FreshLibrary&) = delete;
    FreshLibrary& operator=(const FreshLibrary&) = delete;

    /// The result of loading.
    HRESULT Load();
    /// Unloads it, with what COM holds of it.
    void Unload();
    const Library* operator->() const { return &*m_library; }

private:
    std::optional<Library> m_library;
};

/// Uses most of what the library makes on first use: late binding, children, a failing call, the catalogue.
void UseAndFail(const LibraryClass& of);

/// Does the work with the faults in each of the two modes; when everything is run, twice, and the second time
/// has to leave nothing behind in the process. Returns the number of faults of one time.
std::size_t RunWithoutGrowth(const std::function<std::size_t(FaultMode)>& work);
