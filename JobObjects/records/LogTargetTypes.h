#pragma once

#include <cstdint>
#include <string_view>

/// The target that a print job is logged against. Other numbers can be stored, but have no name.
enum LogTargetType : std::int32_t {
    LogTargetNone = 0,
    LogTargetLogicalPrinter = 1,
    LogTargetDevice = 2,
    LogTargetDeviceAddress = 3,
};

/// "None", "LogicalPrinter", "Device" or "DeviceAddress". Throws a QxException for any other number.
std::wstring_view LogTargetTypeName(std::int32_t type);
/// The type with this name, in exact case. Throws a QxException for any other text.
LogTargetType LogTargetTypeFromName(std::wstring_view name);
