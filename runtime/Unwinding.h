#pragma once

#include <cstddef> // defines __GLIBCXX__

// Defined where GCC's runtime unwinds exceptions with DWARF tables: 32-bit x86. The other ways, structured
// exception handling on 64 bits and setjmp, have other tables and other data, and get nothing of what depends
// on it.
#if defined(__MINGW32__) && defined(__GLIBCXX__) && defined(__i386__) && !defined(__SEH__) &&                \
    !defined(__USING_SJLJ_EXCEPTIONS__)
#define RUNTIME_UNWINDS_BY_TABLES
#endif
