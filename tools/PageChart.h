#pragma once

#include "ReportNumbers.h"

#include <string>

/// Pages over time as a bar chart: the bars are inline SVG that stretches with the page, the labels HTML, so
/// that their size does not depend on the width. One bar is a day, a week, a month or a year, by the length
/// of time.
std::string PageChart(const ReportNumbers::ByName& days);
