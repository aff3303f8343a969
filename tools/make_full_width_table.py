#!/usr/bin/env python3
"""Prints src/text/full_width_table.cpp: the wide characters of three ranges, one bit each, lowest bit first.

Wide is what the Unicode property East_Asian_Width calls W or F. Run it from the top folder:
    python3 tools/make_full_width_table.py > src/text/full_width_table.cpp
"""
import unicodedata

RANGES = [("kFullWidth0100", 0x0100, 0x2FFF), ("kFullWidthA000", 0xA000, 0xABFF), ("kFullWidthFB00", 0xFB00, 0xFEFF)]


def is_wide(code):
    # Characters without an assignment are narrow in these ranges; the module does not say so for all of them.
    if unicodedata.category(chr(code)) == "Cn":
        return False
    return unicodedata.east_asian_width(chr(code)) in ("W", "F")


def words(first, last):
    return [sum(is_wide(start + bit) << bit for bit in range(32)) for start in range(first, last + 1, 32)]


def table(name, first, last):
    values = ["0x%08X" % word for word in words(first, last)]
    rows = ["    " + ", ".join(values[at:at + 8]) + "," for at in range(0, len(values), 8)]
    return "// U+%04X to U+%04X\nconst std::uint32_t %s[%d] = {\n%s\n};\n" % (
        first, last, name, len(values), "\n".join(rows))


print("// Printed by tools/make_full_width_table.py from East_Asian_Width of Unicode %s. Do not edit."
      % unicodedata.unidata_version)
print('#include "text/full_width_table.h"\n\nnamespace wfinfo {\n')
print("\n".join(table(*entry) for entry in RANGES))
print("}  // namespace wfinfo")
