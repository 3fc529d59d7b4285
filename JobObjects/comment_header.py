#!/usr/bin/env python3
"""Adds the comments of the interface definition to the header that the interface definition compiler made from it:

    comment_header.py <JobObjects.idl> <compiler's header> <JobObjects.h>

Only the C++ declarations get comments: editors show those.
"""

import re
import sys
from pathlib import Path

import idl

INTERFACE = re.compile(r'MIDL_INTERFACE\("[^"]*"\)\n(\w+) : ')
METHOD = re.compile(r"    virtual HRESULT STDMETHODCALLTYPE (?:get_|put_)?(\w+)\(")
CLASS = re.compile(r'class DECLSPEC_UUID\("[^"]*"\) (\w+);')


def commented_interface(text, interface):
    docs = {member.name: member.doc for member in interface["members"]}
    found = set()

    def comment(match):
        found.add(match[1])
        return docs[match[1]].comment("    ") + match[0]

    text = METHOD.sub(comment, text)
    if found != docs.keys():
        sys.exit(f"comment_header: {interface['name']} has no {sorted(docs.keys() - found)}")
    return text


def commented(text, source):
    """The header with comments. Fails if the header lacks a class, an interface or a member."""
    head, *rest = INTERFACE.split(text)
    opening = [match[0] for match in INTERFACE.finditer(text)]
    parts = [source.library["doc"].comment() + head]
    names = rest[0::2]
    for start, name, body in zip(opening, names, rest[1::2]):
        declaration, end, other = body.partition("\n};\n")
        interface = source.interfaces[name]
        parts += [interface["doc"].comment(), start, commented_interface(declaration, interface), end, other]
    classes = {each["name"]: each["doc"] for each in source.classes}
    text = "".join(parts)
    if set(names) != source.interfaces.keys() or set(CLASS.findall(text)) != classes.keys():
        sys.exit("comment_header: the header has other interfaces or classes")
    return CLASS.sub(lambda match: classes[match[1]].comment() + match[0], text)


if __name__ == "__main__":
    definition, header, output = (Path(each) for each in sys.argv[1:])
    output.write_text(commented(header.read_text(encoding="utf-8"), idl.read(definition)), encoding="utf-8")
