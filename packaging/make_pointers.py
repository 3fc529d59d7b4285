#!/usr/bin/env python3
"""Writes the smart pointer header:

    make_pointers.py <JobObjects.idl> <JobObjectsPtr.h>
"""

import sys
from pathlib import Path

import interfaces

HEAD = """// Smart pointers of the interfaces. Each holds a reference. A failed construction or null access throws _com_error:
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
