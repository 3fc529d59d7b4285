#!/usr/bin/env python3
"""Writes the manifest of the library's side-by-side assembly:

    make_manifest.py <JobObjects.idl> <version> <platform> <JobObjects.manifest>

The assembly's version is the product's major version. A program requests an exact version, so this one must stay the
same as long as classes and interfaces are only added to.
"""

import sys
from pathlib import Path

import interfaces
from platforms import PLATFORMS

HEAD = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<!-- Side-by-side assembly of the library, for programs that use it without registration. Put it into the program's
     folder with Tarnwick.dll and JobAttributes.xml. -->
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
    <assemblyIdentity type="win32" name="JobObjects" version="{version}" processorArchitecture="{architecture}"/>
    <file name="Tarnwick.dll">
        <typelib tlbid="{library.id}" version="{library.version}" helpdir="" flags="HASDISKIMAGE"/>
"""
CLASS = """        <comClass clsid="{item.id}" description="{item.help}"
            threadingModel="{model}" tlbid="{library.id}" progid="{item.versioned_progid}">
            <progid>{item.progid}</progid>
        </comClass>
"""
MIDDLE = """    </file>
    <!-- The type library marshals all interfaces. -->
"""
INTERFACE = """    <comInterfaceExternalProxyStub name="{item.name}" iid="{item.id}"
        tlbid="{library.id}"
        baseInterface="{base}"
        proxyStubClsid32="{stub}"/>
"""


def assembly_version(version):
    return version.split(".")[0] + ".0.0.0"


def manifest(library, version, platform):
    parts = [HEAD.format(library=library, version=assembly_version(version), architecture=platform.architecture)]
    parts += [CLASS.format(library=library, item=each, model=interfaces.THREADING_MODEL)
              for each in library.classes]
    parts.append(MIDDLE)
    parts += [INTERFACE.format(library=library, item=each, base=interfaces.IDISPATCH,
                               stub=interfaces.TYPE_LIBRARY_MARSHALLER) for each in library.interfaces]
    return "".join(parts) + "</assembly>\n"


if __name__ == "__main__":
    idl, version, platform, output = sys.argv[1:]
    Path(output).write_text(manifest(interfaces.read(Path(idl)), version, PLATFORMS[platform]), encoding="utf-8")
