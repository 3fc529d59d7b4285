#pragma once

#include "QxDateTime.h"

/// The system's clock as date-times of whole seconds. The status is invalid should the system's time lie
/// outside the calendar.
namespace Clock {

QxDateTime LocalNow() noexcept;
QxDateTime UtcNow() noexcept;

} // namespace Clock
