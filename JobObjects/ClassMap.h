#pragma once

#include "JobObjects/frame/ClassMapEntry.h"

#include <array>
#include <cstddef>

/// The ten classes, in the order of registration and lookup.
inline constexpr std::size_t ClassCount = 10;
extern const std::array<ClassMapEntry, ClassCount> ClassMap;
