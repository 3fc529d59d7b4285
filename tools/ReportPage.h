#pragma once

#include "ReportNumbers.h"

#include <string>

/// A self-contained HTML page, in UTF-8.
std::string ReportPage(const ReportNumbers& numbers, bool hasCatalogue);
