#!/usr/bin/env python3
"""Writes the list of the creatable classes for the tool and the tests:

    make_class_list.py <JobObjects.idl> <JobObjectClasses.h>
"""

import sys
from pathlib import Path

import idl

HEAD = """// Each creatable class with its default interface, in the order of the interface definition.
#pragma once

"""


if __name__ == "__main__":
    source, output = (Path(each) for each in sys.argv[1:])
    rows = [f"    each({item['name']}, {item['interface']})" for item in idl.read(source).classes]
    output.write_text(HEAD + " \\\n".join(["#define JOBOBJECTS_CLASSES(each)", *rows]) + "\n", encoding="utf-8")
