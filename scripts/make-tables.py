#!/usr/bin/env python3
"""Writes the tables of src/foundation/strings/ from the Unicode data and codecs of Python.
Their contents are the same on every run and for every version of Python 3.
"""

import pathlib
import unicodedata

HEADER = "// Written by scripts/make-tables.py; do not edit.\n"

# Each encoding's names, the first of which it calls itself, and Python's name for it.
ENCODINGS = [
    ("koi8-r", "KOI8-R"),
    ("koi8-u", "KOI8-U", "KOI8-RU"),
    ("iso8859-2", "ISO-8859-2", "latin2", "iso-ir-101"),
    ("iso8859-3", "ISO-8859-3", "latin3", "iso-ir-109"),
    ("iso8859-4", "ISO-8859-4", "latin4", "iso-ir-110"),
    ("iso8859-5", "ISO-8859-5", "cyrillic", "iso-ir-144"),
    ("iso8859-6", "ISO-8859-6", "ISO-8859-6-I", "ECMA-114", "ASMO-708", "arabic", "iso-ir-127"),
    ("iso8859-7", "ISO-8859-7", "ECMA-118", "greek", "iso-ir-126"),
    ("iso8859-8", "ISO-8859-8", "ISO 8859-8-I", "iso-ir-138", "hebrew"),
    ("iso8859-9", "ISO-8859-9", "iso-ir-148", "latin5"),
    ("iso8859-10", "ISO-8859-10", "iso-ir-157", "latin6", "ISO-8859-10:1992"),
    ("iso8859-13", "ISO-8859-13"),
    ("iso8859-14", "ISO-8859-14", "iso-ir-199", "latin8", "iso-celtic"),
    ("iso8859-16", "ISO-8859-16", "iso-ir-226", "latin10"),
    ("cp850", "IBM850", "CP850"),
    ("cp874", "IBM874", "CP874"),
    ("cp866", "IBM866", "CP866"),
    ("cp1250", "windows-1250", "CP1250"),
    ("cp1251", "windows-1251", "CP1251"),
    # What calls itself Latin 1 is in truth its superset, as a rule.
    ("cp1252", "windows-1252", "CP1252", "ISO-8859-1"),
    ("cp1253", "windows-1253", "CP1253"),
    ("cp1254", "windows-1254", "CP1254"),
    ("cp1255", "windows-1255", "CP1255"),
    ("cp1256", "windows-1256", "CP1256"),
    ("cp1257", "windows-1257", "CP1257"),
    ("cp1258", "windows-1258", "CP1258"),
    ("mac-roman", "Apple Roman"),
    ("hp-roman8", "roman8", "hp-roman8"),
]


def folding_pairs():
    """Each character of two or more parts and the letter that it begins with, as of Unicode 3.1:
    988 pairs. Later versions only add signs (U+2ADC in 3.2) and letters without case."""
    data = unicodedata.ucd_3_2_0
    for code in range(0xC0, 0x10000):
        parts = data.decomposition(chr(code)).split()
        if len(parts) >= 2 and not parts[0].startswith("<") and code != 0x2ADC:
            yield code, ord(data.normalize("NFD", chr(code))[0])


def upper_half(encoding):
    """The characters of the bytes from 128 on. A byte that the encoding leaves open is the control
    character of its number below 160, else U+FFFD."""
    for byte in range(0x80, 0x100):
        try:
            yield ord(bytes([byte]).decode(encoding))
        except UnicodeDecodeError:
            yield byte if byte < 0xA0 else 0xFFFD


def lines(cells, columns, indent=""):
    cells = list(cells)
    for i in range(0, len(cells), columns):
        yield indent + " ".join(cells[i:i + columns]) + "\n"


def main():
    folder = pathlib.Path(__file__).resolve().parent.parent / "src" / "foundation" / "strings"

    pairs = list(folding_pairs())
    assert len(pairs) == 988 and pairs[0][0] == 0xC0 and pairs[-1][0] == 0xFB4E
    cells = (f"{{0x{code:04X}, 0x{base:04X}}}," for code, base in pairs)
    (folder / "FoldingTable.inc").write_text(HEADER + "".join(lines(cells, 5)))

    with open(folder / "EncodingTables.inc", "w") as file:
        file.write(HEADER)
        for encoding, *names in ENCODINGS:
            file.write("{{" + ", ".join(f'"{name}"' for name in names) + "},\n {\n")
            file.writelines(lines((f"0x{c:04X}," for c in upper_half(encoding)), 8, "     "))
            file.write(" }},\n")


if __name__ == "__main__":
    main()
