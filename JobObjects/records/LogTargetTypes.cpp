#include "LogTargetTypes.h"

#include "JobObjects/frame/ResourceStrings.h"
#include "common/QxException.h"
#include "common/text/Numbers.h"
#include "common/text/Text.h"

#include <array>

namespace {

constexpr std::array<std::wstring_view, 4> Names{L"None", L"LogicalPrinter", L"Device", L"DeviceAddress"};

[[noreturn]] void ThrowNotSupported(std::wstring_view type) {
    throw QxException(QxString(QxMisc::FillIn(LoadResourceString(StringLogTargetTypeNotSupported), {type})));
}

} // namespace

std::wstring_view LogTargetTypeName(std::int32_t type) {
    if (type < 0 || static_cast<std::size_t>(type) >= Names.size())
        ThrowNotSupported(QxMisc::FormatInt32(type));
    return Names[static_cast<std::size_t>(type)];
}

LogTargetType LogTargetTypeFromName(std::wstring_view name) {
    for (std::size_t i = 0; i < Names.size(); ++i)
        if (Names[i] == name)
            return static_cast<LogTargetType>(i);
    ThrowNotSupported(name);
}
