#pragma once

#include "common/text/QxString.h"

#include <windows.h>
#include <oaidl.h>

#include <string_view>
#include <vector>

/// Hash table from the member names of one interface to DISPIDs. The type information's own search is linear
/// in the number of members.
///
/// Holds names made of ASCII letters only and ignores case. For any other name ask the type information,
/// which compares by its locale's rules.
class MemberNames {
public:
    /// Throws std::bad_alloc, or a ComError if the type information fails.
    explicit MemberNames(ITypeInfo& info);

    /// Null if the table does not have the name.
    const DISPID* Find(const wchar_t* name) const noexcept;

private:
    struct Slot {
        QxString name; ///< empty: free slot
        DISPID id = DISPID_UNKNOWN;
    };

    void Add(std::wstring_view name, DISPID id);
    /// The name's slot, or the free slot that ends the search.
    std::size_t SlotOf(std::wstring_view name) const noexcept;

    std::vector<Slot> m_slots; ///< open addressing; a power of two, at least three quarters free
};
