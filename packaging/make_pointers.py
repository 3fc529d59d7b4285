#!/usr/bin/env python3
"""Writes the header of the smart pointers:

    make_pointers.py <JobObjects.idl> <JobObjectsPtr.h>
"""

import sys
from pathlib import Path

import interfaces

HEAD = """// Smart pointers of the interfaces. They hold a reference, and where they call for a check they throw _com_error:
//
//     IPrintJobPtr job(__uuidof(PrintJob));
//     job->put_JobName(_bstr_t(L"Report.docx"));
#pragma once

#include "JobObjects.h"

#include <comdef.h>

"""


if __name__ == "__main__":
    idl, output = (Path(each) for each in sys.argv[1:])
    lines = [f"_COM_SMARTPTR_TYPEDEF({each.name}, __uuidof({each.name}));\n"
             for each in interfaces.read(idl).interfaces]
    output.write_text(HEAD + "".join(lines), encoding="utf-8")
