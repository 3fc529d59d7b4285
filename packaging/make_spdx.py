#!/usr/bin/env python3
"""Writes the library's software bill of materials, an SPDX 2.3 document in JSON:

    make_spdx.py <version> <platform> <Tarnwick.dll> <linker map> <output>

It lists the library and the parts of the compiler's runtime that are linked into it, with versions and licences from
the installed Debian packages.
"""

import hashlib
import json
import sys
import uuid
from pathlib import Path

import runtime
import source_date
from platforms import PLATFORMS

NAMESPACE = "documentNamespace"
PRODUCT = "SPDXRef-JobObjects"
LIBRARY = "SPDXRef-Tarnwick.dll"


def checksums(path):
    data = path.read_bytes()
    return [{"algorithm": name.upper(), "checksumValue": hashlib.new(name, data).hexdigest()}
            for name in ("sha1", "sha256")]


def product(version):
    return {
        "SPDXID": PRODUCT,
        "name": "JobObjects",
        "versionInfo": version,
        "supplier": "Organization: Corvane",
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": "MIT",
        "licenseDeclared": "MIT",
        "copyrightText": "Copyright the JobObjects authors",
        "primaryPackagePurpose": "LIBRARY",
    }


def library(path):
    return {
        "SPDXID": LIBRARY,
        "fileName": "./" + path.name,
        "fileTypes": ["BINARY"],
        "checksums": checksums(path),
        "licenseConcluded": "NOASSERTION",
        "copyrightText": "NOASSERTION",
    }


def linked_package(each):
    return {
        "SPDXID": "SPDXRef-" + each.package.replace("+", "p"),
        "name": each.package,
        "versionInfo": each.version,
        "supplier": "Organization: Debian",
        "downloadLocation": "NOASSERTION",
        "homepage": each.origin.homepage,
        "filesAnalyzed": False,
        "licenseConcluded": "NOASSERTION",
        "licenseDeclared": each.origin.license,
        "copyrightText": "NOASSERTION",
        "summary": each.origin.name,
        "sourceInfo": f"Debian source package {each.source} {each.source_version}",
        "comment": "Linked statically: parts of " + ", ".join(each.files),
        "primaryPackagePurpose": "LIBRARY",
        "externalRefs": [{
            "referenceCategory": "PACKAGE-MANAGER",
            "referenceType": "purl",
            "referenceLocator": f"pkg:deb/debian/{each.package.replace('+', '%2B')}"
                                f"@{each.version.replace('+', '%2B')}?distro=debian-12",
        }],
    }


def relationship(source, kind, target):
    return {"spdxElementId": source, "relationshipType": kind, "relatedSpdxElement": target}


def document(version, platform, dll, linked):
    packages = [linked_package(each) for each in linked]
    content = {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"JobObjects-{version}{platform.file_suffix}",
        "creationInfo": {
            "created": source_date.utc().strftime("%Y-%m-%dT%H:%M:%SZ"),
            "creators": ["Organization: Corvane", "Tool: make_spdx.py"],
        },
        "packages": [product(version)] + packages,
        "files": [library(dll)],
        "relationships": [
            relationship("SPDXRef-DOCUMENT", "DESCRIBES", PRODUCT),
            relationship(PRODUCT, "CONTAINS", LIBRARY),
        ] + [relationship(LIBRARY, "STATIC_LINK", each["SPDXID"]) for each in packages],
    }
    return content


def text_of(content):
    # The namespace must be unique to this document, so it is derived from the whole content.
    content = {name: each for name, each in content.items() if name != NAMESPACE}
    content[NAMESPACE] = "urn:uuid:" + str(uuid.uuid5(uuid.NAMESPACE_URL, json.dumps(content)))
    return json.dumps(content, indent=2) + "\n"


def with_library(text, dll):
    """The document for another file of the same library, such as the signed one."""
    content = json.loads(text)
    content["files"] = [library(dll)]
    return text_of(content)


if __name__ == "__main__":
    version, platform, dll, map_path, output = sys.argv[1:]
    content = document(version, PLATFORMS[platform], Path(dll), runtime.read(Path(map_path)))
    Path(output).write_text(text_of(content), encoding="utf-8")
