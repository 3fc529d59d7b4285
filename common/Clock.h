#pragma once

#include "QxDateTime.h"

/// The system clock in whole seconds. The status is invalid if the time is outside the calendar.
namespace Clock {

QxDateTime LocalNow() noexcept;
QxDateTime UtcNow() noexcept;

} // namespace Clock
