#pragma once

#include "common/text/QxString.h"

#include <windows.h>
#include <oaidl.h>

#include <string_view>
#include <vector>

/// The member names of one interface with their dispatch identifiers, so that late binding need not search
/// the type information, which takes longer with each member.
///
/// Knows names in ASCII letters alone, in either case, and only what the type information itself says of
/// them. For any other name the type information has to be asked, which compares by the rules of its locale.
class MemberNames {
public:
    /// Throws when memory is short or the type information fails.
    explicit MemberNames(ITypeInfo& info);

    /// Null for a name that is not known here.
    const DISPID* Find(const wchar_t* name) const noexcept;

private:
    struct Slot {
        QxString name; ///< empty: a free slot
        DISPID id = DISPID_UNKNOWN;
    };

    void Add(std::wstring_view name, DISPID id);
    /// The slot that holds the name, or the free one where the search for it ends.
    std::size_t SlotOf(std::wstring_view name) const noexcept;

    std::vector<Slot> m_slots; ///< by hash of the name; a power of two, three quarters of them or more free
};
