#pragma once

#include "JobObjects.h"

/// ProgID and interface of a class that records hold as a child.
template<class Interface>
struct ChildClass;

#define CHILD_CLASS(Name)                                                                                    \
    template<>                                                                                               \
    struct ChildClass<I##Name> {                                                                             \
        static constexpr const wchar_t* ProgId = L"Corvane." #Name;                                          \
        static constexpr const IID& Iid = IID_I##Name;                                                       \
    };
CHILD_CLASS(CopyLine)
CHILD_CLASS(CopyLines)
CHILD_CLASS(JobContents)
CHILD_CLASS(PolicyResults)
CHILD_CLASS(WindowsPrintInfo)
#undef CHILD_CLASS
