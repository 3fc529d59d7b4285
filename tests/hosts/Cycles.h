#pragma once

#include "Check.h"

#include "tests/support/ProcessCounters.h"

/// Runs the work many times. After a warm-up for allocations on first use, heap, handles and thread-local
/// slots must not grow.
template<class Work>
void CheckCycles(Work work) {
    for (int i = 0; i < 5; ++i)
        work();
    const ProcessCounters before = ProcessCounters::Now();
    constexpr int times = 80;
    for (int i = 0; i < times; ++i)
        work();
    const ProcessCounters after = ProcessCounters::Now();
    std::printf("%s\n", Growth(before, after).c_str());
    CHECK_THAT(after.library.blocks <= before.library.blocks);
    CHECK_THAT(after.library.bytes <= before.library.bytes);
    CHECK_THAT(!HeapGrewEachTime(before, after, times));
    CHECK_THAT(after.handles <= before.handles);
    CHECK_THAT(after.tlsSlots <= before.tlsSlots);
}
