#pragma once

#include <string_view>

/// Identifiers in the string table of JobObjects.rc.in.
enum ResourceString : unsigned {
    StringLogSourceName = 100,
    StringRegistryRoot = 101,
    StringLogTargetTypeNotSupported = 103,
    StringPropertyNotSupported = 104,
};

/// A view into the module's image, valid while the module is loaded. Empty if not found.
std::wstring_view LoadResourceString(ResourceString id) noexcept;
