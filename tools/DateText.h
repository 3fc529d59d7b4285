#pragma once

#include <string>

#include <windows.h>
#include <oleauto.h>

/// "2010-03-04T05:06:07"; a text in brackets for an invalid date.
std::string DateText(DATE date);
/// ".089"; empty for 0.
std::string MillisecondsText(long milliseconds);
