#include "RuntimeUnload.h"

void ReleaseRuntime() noexcept {}
