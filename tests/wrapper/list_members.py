#!/usr/bin/env python3
"""Lists the members of all classes for the test of the C++ classes:

    list_members.py <WrappedMembers.h>

One macro for each kind of property, one for the methods and one for the classes. Xml has a test of its own.
"""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "JobObjects"))
import idl  # noqa: E402

KINDS = {"BSTR": "TEXTS", "LONG": "NUMBERS", "DATE": "DATES", "VARIANT_BOOL": "FLAGS"}


def rows_of(name, member):
    """The macro of a member, and its arguments."""
    if member.is_method():
        return "METHODS", (name, member.name)
    if member.access() == "read":
        return "READ_ONLY", (name, member.name)
    if member.is_object():
        return "CHILDREN", (name, member.name, member.type()[1:-1])
    return KINDS[member.type()], (name, member.name)


def main():
    source = idl.read()
    rows = {"CLASSES": [f"    each({item['name']})" for item in source.classes]}
    for item in source.classes:
        for member in source.interfaces[item["interface"]]["members"]:
            if member.name != "Xml":
                kind, arguments = rows_of(item["name"], member)
                rows.setdefault(kind, []).append(f"    each({', '.join(arguments)})")
    text = "#pragma once\n"
    for kind, lines in rows.items():
        text += f"\n#define {kind}(each) \\\n" + " \\\n".join(lines) + "\n"
    Path(sys.argv[1]).write_text(text, encoding="ascii")


if __name__ == "__main__":
    main()
