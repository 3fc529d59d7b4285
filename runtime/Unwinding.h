#pragma once

#include <cstddef> // defines __GLIBCXX__

// Which of GCC's runtimes is linked. Other runtimes, and setjmp unwinding, need none of the replacements.
#if defined(__MINGW32__) && defined(__GLIBCXX__) && !defined(__USING_SJLJ_EXCEPTIONS__)
// Defined where the state of exceptions has the layout of the C++ ABI.
#define RUNTIME_HAS_GCC_EXCEPTIONS
// Defined where the unwinder reads DWARF tables: 32-bit x86. 64-bit code uses the system's unwinder and
// tables.
#if !defined(__SEH__)
#define RUNTIME_UNWINDS_BY_DWARF
#endif
#endif
