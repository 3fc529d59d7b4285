#!/usr/bin/env python3
"""Writes the C++ classes for clients:

    make_wrapper.py <JobObjects.idl> <JobObjects.hpp>

JobObjects.hpp.in holds what does not depend on the interface definition.
"""

import sys
from pathlib import Path

import idl

TEMPLATE = Path(__file__).with_name("JobObjects.hpp.in")
VALUES = {"BSTR": "std::wstring", "VARIANT_BOOL": "bool", "LONG": "LONG", "DATE": "DATE"}


def guid(text):
    first, second, third, *rest = text.split("-")
    data = "".join(rest)
    data = ", ".join(f"0x{data[i:i + 2]}" for i in range(0, len(data), 2))
    return f"{{0x{first}, 0x{second}, 0x{third}, {{{data}}}}}"


class Writer:
    def __init__(self, source):
        self.source = source
        self.classes = {each["interface"]: each["name"] for each in source.classes}

    def value(self, kind):
        """The C++ type of a value. A class is qualified, because properties have the names of classes."""
        return VALUES.get(kind) or "JobObjects::" + self.classes[kind.rstrip("*")]

    def parameter(self, attributes, kind, name):
        if "out" in attributes:
            return f"{self.value(kind[:-1])}& {name}"
        if kind == "BSTR":
            return f"std::wstring_view {name}"
        return f"{self.value(kind)} {name}" if kind in VALUES else f"const {self.value(kind)}& {name}"

    @staticmethod
    def argument(attributes, kind, name):
        if "out" in attributes:
            return f"{name}Result.Out()"
        if kind == "BSTR":
            return f"Details::Text({name}).In()"
        if kind == "VARIANT_BOOL":
            return f"Details::Flag({name})"
        return name if kind in VALUES else f"{name}.Get()"

    def function(self, interface, name, slot, params, result):
        """A function that calls a slot of the interface; result is the type of its last parameter, or None."""
        given = [each for each in params if "retval" not in each[0]]
        outs = [each for each in given if "out" in each[0]]
        value = self.value(result) if result else "void"
        arguments = [f"&{interface}::{slot}"] + [self.argument(*each) for each in given]
        call = (f"Read<{value}>" if result else "Call") + f"({', '.join(arguments)})"
        lines = [f"{value} {name}({', '.join(self.parameter(*each) for each in given)}) const {{"]
        lines += [f"    Details::Result<{self.value(kind[:-1])}> {out}Result;" for _, kind, out in outs]
        if outs:
            assignments = [f"    {out} = {out}Result.Value();" for _, _, out in outs]
            lines += [f"    auto result = {call};", *assignments, "    return result;"]
        else:
            lines.append(f"    {'return ' if result else ''}{call};")
        return "".join(f"    {each}\n" for each in [*lines, "}"])

    def member(self, interface, member):
        if member.is_method():
            functions = [self.function(interface, member.name, member.name, member.params, member.type())]
        else:
            kind = member.type()
            functions = [self.function(interface, member.name, "get_" + member.name, [], kind)]
            if "propput" in member.kinds:
                functions.append(self.function(interface, member.name, "put_" + member.name, [("in", kind, "value")],
                                               None))
        return "\n".join(member.doc.comment("    ") + each for each in functions)

    def wrapper(self, interface):
        (item,) = [each for each in self.source.classes if each["interface"] == interface["name"]]
        members = "\n".join(self.member(interface["name"], each) for each in interface["members"])
        return (f"{item['doc'].comment()}class {item['name']} : public Details::Object<{item['name']}, "
                f"{interface['name']}> {{\npublic:\n"
                f"    static constexpr CLSID ClassId{guid(item['uuid'])};\n"
                f"    static constexpr IID InterfaceId{guid(interface['uuid'])};\n\n"
                f"    using Object::Object;\n\n{members}}};\n")


if __name__ == "__main__":
    definition, output = (Path(each) for each in sys.argv[1:])
    source = idl.read(definition)
    # Children come first in the interface definition.
    classes = "\n".join(Writer(source).wrapper(each) for each in source.interfaces.values())
    output.write_text(TEMPLATE.read_text(encoding="utf-8").replace("@CLASSES@", classes), encoding="utf-8")
