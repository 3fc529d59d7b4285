#!/usr/bin/env python3
"""Validates all XML files of a folder against the schemas of their root elements and versions.

    validate.py FOLDER [--every-schema]

--every-schema  also fails if a schema for written XML has no file
"""
import sys
from pathlib import Path

import schemas

# Included by other schemas, or for input only.
NEVER_WRITTEN = {"types.xsd", "PrintJob-types.xsd", "CopyLine-older.xsd"}


def main(folder, *options):
    paths = sorted(Path(folder).glob("*.xml"))
    if not paths:
        return f"{folder} contains no XML file"
    groups = schemas.group_by_schema(paths)
    invalid = 0
    for schema, files in sorted(groups.items()):
        print(f"{schema.name}: {len(files)} files")
        for name, messages in schemas.failures(schema, files).items():
            invalid += 1
            print("\n".join(messages), schemas.read(name), sep="\n")
    if "--every-schema" in options:
        missing = {path.name for path in schemas.SCHEMAS.glob("*.xsd")} - NEVER_WRITTEN - {s.name for s in groups}
        if missing:
            return f"no file for {', '.join(sorted(missing))}"
    if invalid:
        return f"{invalid} of {len(paths)} files are invalid"
    print(f"{len(paths)} files are valid")
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main(*sys.argv[1:]))
    except schemas.NoSchema as error:
        sys.exit(str(error))
