#include "JobObjects/CJobObjectsModule.h"
#include "JobObjects/records/LogTargetTypes.h"

#include "common/QxException.h"

#include <catch2/catch.hpp>

// Clients cannot store a log target type without a name, so the tests call the conversion directly.

namespace {

template<class Call>
std::wstring MessageOf(Call call) {
    TheModule().Initialize(GetModuleHandleW(nullptr)); // the test program has the string table
    try {
        call();
    } catch (const QxException& error) {
        return std::wstring(error.Message().view());
    }
    return L"nothing thrown";
}

} // namespace

TEST_CASE("LogTargetTypeName_of_each_type_is_its_name") {
    CHECK((LogTargetTypeName(0) == L"None"));
    CHECK((LogTargetTypeName(1) == L"LogicalPrinter"));
    CHECK((LogTargetTypeName(2) == L"Device"));
    CHECK((LogTargetTypeName(3) == L"DeviceAddress"));
}

TEST_CASE("LogTargetTypeName_of_an_unknown_number_is_refused") {
    CHECK((MessageOf([] { LogTargetTypeName(4); }) == L"The PrintJob LogTargetType '4' is not supported."));
    CHECK((MessageOf([] { LogTargetTypeName(-1); }) == L"The PrintJob LogTargetType '-1' is not supported."));
}

TEST_CASE("LogTargetTypeFromName_accepts_the_four_names_in_exact_case") {
    CHECK(LogTargetTypeFromName(L"None") == LogTargetNone);
    CHECK(LogTargetTypeFromName(L"LogicalPrinter") == LogTargetLogicalPrinter);
    CHECK(LogTargetTypeFromName(L"Device") == LogTargetDevice);
    CHECK(LogTargetTypeFromName(L"DeviceAddress") == LogTargetDeviceAddress);
    CHECK((MessageOf([] { LogTargetTypeFromName(L"device"); }) ==
           L"The PrintJob LogTargetType 'device' is not supported."));
    CHECK((MessageOf([] { LogTargetTypeFromName(L""); }) ==
           L"The PrintJob LogTargetType '' is not supported."));
}
