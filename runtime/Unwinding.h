#pragma once

#include <cstddef> // defines __GLIBCXX__

// Defined where GCC's runtime unwinds with DWARF tables: 32-bit x86. Structured exception handling (64 bits)
// and setjmp unwinding use other tables and data.
#if defined(__MINGW32__) && defined(__GLIBCXX__) && defined(__i386__) && !defined(__SEH__) &&                \
    !defined(__USING_SJLJ_EXCEPTIONS__)
#define RUNTIME_UNWINDS_BY_TABLES
#endif
