#pragma once

#include <windows.h>

/// Reference count of an object that deletes itself; starts at 1.
///
/// During destruction a child may still add and release references to its parent. The count is then high, so
/// that no such release deletes the object again.
template<class Number = ULONG>
class ReferenceCount {
public:
    ULONG Add() noexcept { return ++m_count; }
    /// Returns the new count; at 0 the caller deletes the object.
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
