#pragma once

#include "CheckReport.h"

/// Checks the log's configuration.
void CheckLog(CheckReport& report);
