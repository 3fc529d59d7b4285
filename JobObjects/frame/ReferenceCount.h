#pragma once

#include <windows.h>

/// The references to an object that deletes itself with the last one. Starts with its creator's.
///
/// During the destruction others may still add and release references, such as a child that looks back at its
/// parent. The count is high then, so that none of these releases is a last one.
template<class Number = ULONG>
class ReferenceCount {
public:
    ULONG Add() noexcept { return ++m_count; }
    /// Returns the references that are left; at 0 the caller destroys the object.
    ULONG Release() noexcept {
        const ULONG left = --m_count;
        if (left == 0)
            m_count = Destroying;
        return left;
    }

private:
    static constexpr ULONG Destroying = 0x40000000;

    Number m_count{1};
};
