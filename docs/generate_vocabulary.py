#!/usr/bin/env python3
"""Writes the tables of docs/reference/vocabulary.md: the catalogue's words beside those of Windows, PWG 5101.1 and IPP.

Words and codes come from JobObjects/JobAttributes.xml, their counterparts from this file. Checks that every word has a
counterpart and every counterpart a word, that sizes match their standard names, and Windows codes the system header.

    generate_vocabulary.py WINGDI.H           write the tables
    generate_vocabulary.py --check WINGDI.H   write nothing; fail if a check fails or the page is out of date
"""

import re
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
CATALOGUE = ROOT / "JobObjects" / "JobAttributes.xml"
PAGE = ROOT / "docs" / "reference" / "vocabulary.md"

# PWG 5101.1 name of a size to its Windows paper codes (dmPaperSize). The code of a rotated or transverse form belongs
# to the size of its sheet.
DMPAPER = {
    "iso_a4_210x297mm": (9, 10, 55, 77),
    "na_letter_8.5x11in": (1, 2, 18, 54, 75),
    "na_legal_8.5x14in": (5,),
    "iso_a3_297x420mm": (8, 67, 76),
    "na_ledger_11x17in": (3, 4, 17),
    "iso_a5_148x210mm": (11, 61, 78),
    "iso_a6_105x148mm": (70, 83),
    "iso_a2_420x594mm": (66,),
    "jis_b4_257x364mm": (12, 79),
    "jis_b5_182x257mm": (13, 62, 80),
    "jis_b6_128x182mm": (88, 89),
    "iso_b4_250x353mm": (33, 42),
    "iso_b5_176x250mm": (34,),
    "iso_b6_125x176mm": (35, 98, 111),
    "na_invoice_5.5x8.5in": (6,),
    "na_executive_7.25x10.5in": (7,),
    "na_foolscap_8.5x13in": (14, 41),
    "om_folio_210x330mm": (60,),
    "na_quarto_8.5x10.83in": (15,),
    "na_10x14_10x14in": (16,),
    "na_9x11_9x11in": (44,),
    "na_10x11_10x11in": (45,),
    "na_11x15_11x15in": (46,),
    "prc_16k_146x215mm": (93, 106),
    "prc_32k_97x151mm": (94, 107),
    "na_super-a_8.94x14in": (57,),
    "na_b-plus_12x19.17in": (58,),
    "na_c_17x22in": (24,),
    "na_d_22x34in": (25,),
    "na_e_34x44in": (26,),
    "na_letter-extra_9.5x12in": (50, 56),
    "na_legal-extra_9.5x15in": (51,),
    "na_letter-plus_8.5x12.69in": (59,),
    "iso_a3-extra_322x445mm": (63, 68),
    "iso_a4-extra_235.5x322.3mm": (53,),
    "iso_a5-extra_174x235mm": (64,),
    "iso_b5-extra_201x276mm": (65,),
    "na_fanfold-us_11x14.875in": (39,),
    "na_fanfold-eur_8.5x12in": (40,),
    "jpn_hagaki_100x148mm": (43, 81),
    "jpn_oufuku_148x200mm": (69, 82),
    "na_number-9_3.875x8.875in": (19,),
    "na_number-10_4.125x9.5in": (20,),
    "na_number-11_4.5x10.375in": (21,),
    "na_number-12_4.75x11in": (22,),
    "na_number-14_5x11.5in": (23,),
    "iso_dl_110x220mm": (27, 100, 113),
    "iso_c3_324x458mm": (29, 105, 118),
    "iso_c4_229x324mm": (30, 104, 117),
    "iso_c5_162x229mm": (28,),
    "iso_c6_114x162mm": (31,),
    "iso_c6c5_114x229mm": (32,),
    "om_italian_110x230mm": (36,),
    "na_monarch_3.875x7.5in": (37,),
    "na_personal_3.625x6.5in": (38,),
    "om_invite_220x220mm": (47,),
    "jpn_kaku2_240x332mm": (71, 84),
    "jpn_kaku3_216x277mm": (72, 85),
    "jpn_chou3_120x235mm": (73, 86),
    "jpn_chou4_90x205mm": (74, 87),
    "jpn_you4_105x235mm": (91, 92),
}

# Windows codes of sizes that the catalogue does not have: PWG 5101.1 name to codes.
NOT_IN_CATALOGUE = {
    "na_11x12_11x12in": (90,),
    "prc_1_102x165mm": (96, 109),
    "prc_2_102x176mm": (97, 110),
    "prc_4_110x208mm": (99, 112),
    "prc_7_160x230mm": (102, 115),
    "prc_8_120x309mm": (103, 116),
}

# Windows codes without a PWG 5101.1 name: the reason, the codes, and the size's common name in the catalogue.
WITHOUT_NAME = (
    ("reserved by Windows", (48, 49), ""),
    ("no name for 11.69 x 18 inches", (52,), "Tabloid Extra"),
    ("no name for a second 32K: `prc_32k_97x151mm` is 94", (95, 108), ""),
    ("no name for 120 x 230 mm: `prc_6_120x320mm` is longer", (101, 114), ""),
)

# The first code of a driver's own forms, which has no size.
DRIVER_DEFINED = 256

# Page attribute: DEVMODE, IPP attribute and value.
PAGE_ATTRIBUTES = {
    "Simplex": ("dmDuplex 1", "`sides` one-sided"),
    "Duplex": ("dmDuplex 2; 3 with `ShortEdge`", "`sides` two-sided-long-edge"),
    "B&W": ("dmColor 1", "`print-color-mode` monochrome"),
    "Color": ("dmColor 2", "`print-color-mode` color"),
    "TonerSave": ("", ""),
    "Draft": ("dmPrintQuality -1", "`print-quality` 3 (draft)"),
    "HighQuality": ("dmPrintQuality -4", "`print-quality` 5 (high)"),
    "ShortEdge": ("with `Duplex`: dmDuplex 3", "with `Duplex`: `sides` two-sided-short-edge"),
    "NUp2": ("", "`number-up` 2"),
    "NUp4": ("", "`number-up` 4"),
    "NUp6": ("", "`number-up` 6"),
    "NUp8": ("", "`number-up` 8"),
    "NUp9": ("", "`number-up` 9"),
    "NUp16": ("", "`number-up` 16"),
    "Letterhead": ("", "`media-type` stationery-letterhead"),
    "Preprinted": ("", "`media-type` stationery-preprinted"),
    "Recycled": ("", "`media-type` stationery-recycled"),
    "Heavyweight": ("", "`media-type` stationery-heavyweight"),
    "Lightweight": ("", "`media-type` stationery-lightweight"),
    "Coated": ("", "`media-type` stationery-coated"),
    "Cardstock": ("", "`media-type` cardstock"),
    "Labels": ("", "`media-type` labels"),
    "Transparency": ("dmMediaType 2", "`media-type` transparency"),
    "Glossy": ("dmMediaType 3", "`media-type` photographic-glossy"),
    "TabStock": ("", "`media-type` tab-stock"),
    "Cover": ("", "`cover-front`, `cover-back`"),
    "Insert": ("", "`insert-sheet`"),
    "Separator": ("", "`separator-sheets`"),
    "Poster": ("", ""),
    "Highlight": ("", "`print-color-mode` highlight"),
}

# Finishing option: IPP finishings, as enum values and keywords.
FINISHINGS = {
    "Staple": "4 staple",
    "StapleTopLeft": "20 staple-top-left",
    "StapleTopRight": "22 staple-top-right",
    "StapleBottomLeft": "21 staple-bottom-left",
    "StapleBottomRight": "23 staple-bottom-right",
    "StapleDualLeft": "28 staple-dual-left",
    "StapleDualTop": "29 staple-dual-top",
    "StapleDualRight": "30 staple-dual-right",
    "StapleDualBottom": "31 staple-dual-bottom",
    "SaddleStitch": "8 saddle-stitch",
    "EdgeStitch": "9 edge-stitch; 24 to 27 with the edge",
    "Punch": "5 punch; 70 to 73 with the corner",
    "Punch2": "74 to 77 punch-dual, with the edge",
    "Punch3": "78 to 81 punch-triple, with the edge",
    "Punch4": "82 to 85 punch-quad, with the edge",
    "PunchMultiple": "86 to 89 punch-multiple, with the edge",
    "Fold": "10 fold",
    "FoldHalf": "93 fold-half",
    "FoldLetter": "96 fold-letter",
    "FoldZ": "100 fold-z",
    "FoldGate": "92 fold-gate",
    "Booklet": "13 booklet-maker",
    "Bind": "7 bind; 50 to 53 with the edge",
    "Trim": "11 trim; 60 to 63 with the moment",
    "JogOffset": "14 jog-offset",
    "Laminate": "16 laminate",
    "Coat": "15 coat",
    "Bale": "12 bale",
}

# IPP finishings of the range that RFC 8011 and PWG 5100.1 define, for values without a word: enum values and keywords.
OTHER_FINISHINGS = {
    (3,): ("none", "the empty text"),
    (6,): ("cover", "the page attribute `Cover` of a copy line"),
    (32, 33, 34, 35): ("staple-triple, with the edge", ""),
    (90,): ("fold-accordion", ""),
    (91,): ("fold-double-gate", ""),
    (94,): ("fold-half-z", ""),
    (95,): ("fold-left-gate", ""),
    (97,): ("fold-parallel", ""),
    (98,): ("fold-poster", ""),
    (99,): ("fold-right-gate", ""),
    (101,): ("fold-engineering-z", ""),
}

# All IPP finishings up to 101; the gaps are not assigned.
FINISHING_VALUES = {*range(3, 17), *range(20, 36), *range(50, 54), *range(60, 64), *range(70, 102)}

# Page description language: IPP document-format. Empty if no registered media type is known.
DOCUMENT_FORMATS = {
    "RAW": "application/octet-stream",
    "TEXT": "text/plain",
    "PCL": "application/vnd.hp-PCL",
    "PCL5": "application/vnd.hp-PCL",
    "PCL6": "application/vnd.hp-PCLXL",
    "PCLXL": "application/vnd.hp-PCLXL",
    "PostScript": "application/postscript",
    "PS": "application/postscript",
    "PDF": "application/pdf",
    "XPS": "application/vnd.ms-xpsdocument",
    "OpenXPS": "application/oxps",
    "EMF": "",
    "NT EMF 1.003": "",
    "NT EMF 1.006": "",
    "NT EMF 1.007": "",
    "NT EMF 1.008": "",
    "TIFF": "image/tiff",
    "JPEG": "image/jpeg",
    "PWGRaster": "image/pwg-raster",
    "URF": "image/urf",
    "PCLm": "application/PCLm",
    "HPGL": "application/vnd.hp-HPGL",
    "IPDS": "",
    "EscapeP": "",
    "LIPS": "",
    "NPDL": "",
    "RPDL": "",
    "Prescribe": "",
}

STANDARD_NAME = re.compile(r"[a-z]+_[a-z0-9-]+_([0-9.]+)x([0-9.]+)(mm|in)")


class Size:
    def __init__(self, element):
        dimensions = element.find("PaperDimensions")
        self.code = int(element.get("DbId"))
        self.x, self.y = (int(dimensions.find(axis).text) for axis in "XY")
        names = element.find("PaperNames")
        self.name = next(n.text for n in names if n.get("Default") == "true")
        self.standard = [n.text for n in names if STANDARD_NAME.fullmatch(n.text)]

    def problems(self):
        if len(self.standard) != (self.name not in [name for _, _, name in WITHOUT_NAME]):
            yield f"{self.name}: standard names {self.standard}"
        for name in self.standard:
            width, height, unit = STANDARD_NAME.fullmatch(name).groups()
            tenths = [float(v) * (10 if unit == "mm" else 254) for v in (width, height)]
            if max(abs(tenths[0] - self.x), abs(tenths[1] - self.y)) > 0.5 + 1e-6:
                yield f"{self.name}: {self.x} x {self.y} is not {name}"


def header_codes(path):
    """Paper codes of the Windows header: number to name without DMPAPER_."""
    found = re.findall(r"#define DMPAPER_(\w+) (\d+)", Path(path).read_text(encoding="latin-1"))
    codes = {}
    for name, number in found:
        if name not in ("FIRST", "LAST"):
            codes.setdefault(int(number), name)
    if len(codes) < 100:
        sys.exit(f"{path} is not the header with the paper codes")
    return codes


def words(root, section):
    if section == "PageAttributes":
        pairs = [side for pair in root.find("PageAttributePairs") for side in pair]
        return [(e.text, int(e.get("DbId"))) for e in pairs + list(root.find(section))]
    return [(e.text, int(e.get("DbId"))) for e in root.find(section)]


def paper_rows(sizes, codes):
    """Windows code, its name in the header, the catalogue's name, and the PWG 5101.1 name or why there is none."""
    named = {name: size.name for size in sizes for name in size.standard}
    for name, numbers in (DMPAPER | NOT_IN_CATALOGUE).items():
        yield from ((n, codes.get(n), named.get(name, ""), f"`{name}`") for n in numbers)
    for reason, numbers, name in WITHOUT_NAME:
        yield from ((n, codes.get(n), name, reason) for n in numbers)


def finishing_values(text):
    """The enum values of a row: "9 edge-stitch; 24 to 27 with the edge" has 9 and 24 to 27."""
    for first, _, last in re.findall(r"(\d+)( to (\d+))?", text):
        yield from range(int(first), int(last or first) + 1)


def problems(root, sizes, codes):
    for size in sizes:
        yield from size.problems()
    known = {name for size in sizes for name in size.standard}
    yield from (f"{name} is not in the catalogue" for name in DMPAPER.keys() - known)
    yield from (f"{name} is in the catalogue" for name in NOT_IN_CATALOGUE.keys() & known)
    used = [row[0] for row in paper_rows(sizes, codes)] + [DRIVER_DEFINED]
    yield from (f"the Windows code {code} is listed twice" for code in sorted({c for c in used if used.count(c) > 1}))
    yield from (f"the Windows code {code} is not listed" for code in sorted(codes.keys() - set(used)))
    yield from (f"the header has no code {code}" for code in sorted(set(used) - codes.keys()))
    finishings = [n for text in FINISHINGS.values() for n in finishing_values(text)]
    finishings += [n for numbers in OTHER_FINISHINGS for n in numbers]
    yield from (f"the finishing {n} is listed {finishings.count(n)} times"
                for n in sorted(FINISHING_VALUES | set(finishings)) if finishings.count(n) != 1 or n not in FINISHING_VALUES)
    for section, table in (("PageAttributes", PAGE_ATTRIBUTES), ("FinishingAttributes", FINISHINGS),
                           ("Pdls", DOCUMENT_FORMATS)):
        there = {word for word, _ in words(root, section)}
        yield from (f"{section}: '{word}' has no counterpart" for word in sorted(there - table.keys()))
        yield from (f"{section}: '{word}' is not in the catalogue" for word in sorted(table.keys() - there))


def millimetres(tenths):
    return f"{tenths / 10:g}"


def size_table(sizes):
    yield "| Code | Name | PWG 5101.1 name; millimetres of other sizes |"
    yield "|---|---|---|"
    for size in sizes:
        names = [f"`{name}`" for name in size.standard]
        if not any(name.endswith("mm") for name in size.standard):
            names.append(f"{millimetres(size.x)}×{millimetres(size.y)}")
        yield f"| {size.code} | {size.name} | {'; '.join(names)} |"


def code_table(sizes, codes):
    yield "| Code | `DMPAPER_` | Catalogue | PWG 5101.1 name, or why there is none |"
    yield "|---|---|---|---|"
    for number, header, name, standard in sorted(paper_rows(sizes, codes)):
        yield f"| {number} | `{header}` | {name} | {standard} |"


def other_finishing_table():
    yield "| IPP `finishings` | In a record |"
    yield "|---|---|"
    for numbers, (keyword, place) in OTHER_FINISHINGS.items():
        span = f"{numbers[0]} to {numbers[-1]}" if len(numbers) > 1 else numbers[0]
        yield f"| {span} {keyword} | {place or 'no word'} |"


def word_table(pairs, head, table):
    yield head
    yield "|" + "---|" * (head.count("|") - 1)
    for word, code in pairs:
        counterpart = table[word]
        text = counterpart if isinstance(counterpart, str) else "; ".join(c for c in counterpart if c)
        yield f"| `{word}` | {code} | {text} |"


def tables(root, sizes, codes):
    return {
        "sizes": size_table(sizes),
        "paper codes": code_table(sizes, codes),
        "page attributes": word_table(words(root, "PageAttributes"), "| Word | Bit | DEVMODE; IPP |", PAGE_ATTRIBUTES),
        "finishing": word_table(words(root, "FinishingAttributes"), "| Word | Bit | IPP `finishings` |", FINISHINGS),
        "other finishing": other_finishing_table(),
        "languages": word_table(words(root, "Pdls"), "| Word | Code | IPP `document-format` |", DOCUMENT_FORMATS),
    }


def filled(page, made):
    for name, lines in made.items():
        begin, end = f"<!-- table: {name} -->\n", "<!-- end of table -->"
        before, _, rest = page.partition(begin)
        _, found, after = rest.partition(end)
        if not found:
            sys.exit(f"{PAGE.name} has no markers for the table '{name}'")
        page = before + begin + "\n" + "\n".join(lines) + "\n\n" + end + after
    return page


def main():
    arguments = sys.argv[1:]
    check = arguments[:1] == ["--check"]
    if len(arguments) != 1 + check:
        sys.exit(__doc__)
    codes = header_codes(arguments[-1])
    root = ElementTree.parse(CATALOGUE).getroot()
    sizes = [Size(e) for e in root.find("PaperSizes")]
    found = list(problems(root, sizes, codes))
    if found:
        sys.exit("\n".join(f"{CATALOGUE.name}: {p}" for p in found))
    page = PAGE.read_text(encoding="utf-8")
    new = filled(page, tables(root, sizes, codes))
    if not check:
        PAGE.write_text(new, encoding="utf-8")
    elif new != page:
        sys.exit(f"{PAGE.name} is out of date: run docs/generate_vocabulary.py")


if __name__ == "__main__":
    main()
