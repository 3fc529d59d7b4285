#pragma once

#include <string_view>

/// Identifiers of the string table.
enum ResourceString : unsigned {
    StringLogSourceName = 100,
    StringRegistryRoot = 101,
    StringLogTargetTypeNotSupported = 103,
    StringPropertyNotSupported = 104,
};

/// A text of the string table; a view into the module's own image, valid as long as it is loaded.
std::wstring_view LoadResourceString(ResourceString id) noexcept;
