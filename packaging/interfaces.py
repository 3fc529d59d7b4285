"""What the interface definition says of the library, its classes and its interfaces.

The manifest, the installer's registry rows and the smart pointers are made from it, so that no identifier is
written down a second time.
"""

import re
from dataclasses import dataclass, field

PROGID_PREFIX = "Corvane."
PROGID_VERSION = ".1"
THREADING_MODEL = "Apartment"
# The system's own marshaller of interfaces that a type library describes.
TYPE_LIBRARY_MARSHALLER = "{00020424-0000-0000-C000-000000000046}"
IDISPATCH = "{00020400-0000-0000-C000-000000000046}"


@dataclass
class Item:
    """A class, an interface or the library: its name, identifier in braces and help string."""
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


def _attribute(attributes, name):
    match = re.search(r'\b%s\("?([^")]*)"?\)' % name, attributes)
    if not match:
        raise ValueError(f"no {name} in [{attributes}]")
    return match[1]


def _item(attributes, name):
    return Item(name, "{%s}" % _attribute(attributes, "uuid").upper(), _attribute(attributes, "helpstring"))


def read(idl):
    """Reads the interface definition at a path."""
    text = re.sub(r"//.*", "", idl.read_text(encoding="utf-8"))
    found = {"interface": [], "coclass": [], "library": []}
    for attributes, kind, name in re.findall(r"\[([^\]]*)\]\s*(interface|coclass|library)\s+(\w+)\s*[:{]", text):
        found[kind].append((attributes, name))
    ((attributes, name),) = found["library"]
    item = _item(attributes, name)
    return Library(item.name, item.id, item.help, _attribute(attributes, "version"),
                   "%x" % int(_attribute(attributes, "lcid"), 16),
                   [_item(*each) for each in found["coclass"]],
                   [_item(*each) for each in found["interface"]])
