#pragma once

#include <cstdint>
#include <string_view>

/// What a print job is logged against. Any other number can be stored but has no name.
enum LogTargetType : std::int32_t {
    LogTargetNone = 0,
    LogTargetLogicalPrinter = 1,
    LogTargetDevice = 2,
    LogTargetDeviceAddress = 3,
};

/// "None", "LogicalPrinter", "Device" or "DeviceAddress"; throws a QxException for any other number.
std::wstring_view LogTargetTypeName(std::int32_t type);
/// The type with this name, compared in exact case; throws a QxException for any other text.
LogTargetType LogTargetTypeFromName(std::wstring_view name);
