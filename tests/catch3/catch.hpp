#pragma once
// Version 3 of Catch2 with the names of version 2.
#include <catch_amalgamated.hpp>

namespace Catch {
using Matchers::VectorContains;
using TestEventListenerBase = EventListenerBase;
} // namespace Catch

using Catch::Approx;
