#!/usr/bin/env python3
"""Writes the interfaces and classes for .NET clients:

    make_interop.py <JobObjects.idl> <Interop.cs>
"""

import sys
from pathlib import Path
from xml.sax.saxutils import escape

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "JobObjects"))
import idl  # noqa: E402

HEAD = """// The interfaces and classes of the library for .NET on Windows, in the order of the interface definition: slots and
// DISPIDs are those of the type library. Compile this file into your program:
//
//     JobObjects.PrintJob job = new JobObjects.PrintJob();
//     job.UserName = "a.berg";
//
// Release objects early, if necessary, with Marshal.ReleaseComObject. A failed call throws COMException.
using System;
using System.Runtime.InteropServices;

namespace JobObjects
{
"""
# The .NET type and how it is marshalled. DateTime and int need no attribute.
VALUES = {"BSTR": ("string", "BStr"), "VARIANT_BOOL": ("bool", "VariantBool"), "LONG": ("int", ""),
          "DATE": ("DateTime", "")}
INTERFACE = """    [ComImport, Guid("{uuid}"), InterfaceType(ComInterfaceType.InterfaceIsDual)]
    public interface {name}
    {{
{text}    }}
"""
CLASS = """    [ComImport, Guid("{iid}"), CoClass(typeof({name}Class))]
    public interface {name} : {interface}
    {{
    }}

    /// <summary>The class behind <see cref="{name}"/>; use <c>new {name}()</c>.</summary>
    [ComImport, Guid("{clsid}"), ClassInterface(ClassInterfaceType.None)]
    public class {name}Class
    {{
    }}
"""


def value(kind):
    """The .NET type of a value, and its MarshalAs attribute without the target."""
    name, unmanaged = VALUES.get(kind) or (kind.rstrip("*"), "Interface")
    return name, unmanaged and f"MarshalAs(UnmanagedType.{unmanaged})"


def attribute(target, marshalling):
    return f"[{target}{marshalling}] " if marshalling else ""


def summary(doc, indent):
    text = "\n".join(escape(each) for each in doc.lines)
    text = "\n".join(f"{indent}/// {line}".rstrip() for line in f"<summary>\n{text}\n</summary>".splitlines())
    return text + "\n"


def property_text(member):
    kind, marshalling = value(member.type())
    dispid = f"[DispId({member.dispid})]"
    accessors = [attribute("return: ", marshalling) + dispid + " get;"]
    if "propput" in member.kinds:
        accessors.append(attribute("param: ", marshalling) + dispid + " set;")
    lines = [dispid, f"{kind} {member.name}", "{", *("    " + each for each in accessors), "}"]
    return "".join(f"        {each}\n" for each in lines)


def parameter(attributes, kind, name):
    is_out = "out" in attributes
    kind, marshalling = value(kind[:-1] if is_out else kind)
    return attribute("", marshalling) + f"{'out ' if is_out else ''}{kind} {name}"


def method_text(member):
    kind, marshalling = value(member.type()) if member.type() else ("void", "")
    given = [parameter(*each) for each in member.params if "retval" not in each[0]]
    returned = f"        {attribute('return: ', marshalling).rstrip()}\n" if marshalling else ""
    return f"        [DispId({member.dispid})]\n{returned}        {kind} {member.name}({', '.join(given)});\n"


def member_text(member):
    return summary(member.doc, " " * 8) + (method_text if member.is_method() else property_text)(member)


def interface_text(interface):
    members = "\n".join(member_text(each) for each in interface["members"])
    return summary(interface["doc"], " " * 4) + INTERFACE.format(uuid=interface["uuid"], name=interface["name"],
                                                                 text=members)


def class_text(item, interface):
    return summary(item["doc"], " " * 4) + CLASS.format(iid=interface["uuid"], clsid=item["uuid"], **item)


def interop(source):
    parts = [interface_text(each) for each in source.interfaces.values()]
    parts += [class_text(each, source.interfaces[each["interface"]]) for each in source.classes]
    return HEAD + "\n".join(parts) + "}\n"


if __name__ == "__main__":
    definition, output = (Path(each) for each in sys.argv[1:])
    output.write_text(interop(idl.read(definition)), encoding="utf-8")
