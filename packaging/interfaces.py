"""The library, its classes and its interfaces in registry terms.

Manifest and registry rows of the installer are made from it, so no identifier is repeated.
"""

import sys
from dataclasses import dataclass, field
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "JobObjects"))
import idl  # noqa: E402

PROGID_PREFIX = "Corvane."
PROGID_VERSION = ".1"
THREADING_MODEL = "Apartment"
# The system's type library marshaller.
TYPE_LIBRARY_MARSHALLER = "{00020424-0000-0000-C000-000000000046}"
IDISPATCH = "{00020400-0000-0000-C000-000000000046}"


@dataclass
class Item:
    """A class, an interface or the library: name, identifier in braces, help string."""
    name: str
    id: str
    help: str

    @property
    def progid(self):
        return PROGID_PREFIX + self.name

    @property
    def versioned_progid(self):
        return self.progid + PROGID_VERSION


@dataclass
class Library(Item):
    version: str
    locale: str
    classes: list = field(default_factory=list)
    interfaces: list = field(default_factory=list)


def _item(found):
    return Item(found["name"], "{%s}" % found["uuid"].upper(), found["help"])


def read(path):
    """Reads an interface definition."""
    source = idl.read(path)
    item = _item(source.library)
    return Library(item.name, item.id, item.help, source.library["version"], "%x" % source.library["locale"],
                   [_item(each) for each in source.classes], [_item(each) for each in source.interfaces.values()])
