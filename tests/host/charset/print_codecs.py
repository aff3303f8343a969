"""Prints each alias of Python's text codecs: its name, its codec, and the letters that the bytes 0x80 to 0xFF alone
are in it, as hexadecimal numbers (0: no letter)."""

import codecs
from encodings.aliases import aliases


def letters(codec):
    units = [bytes([byte]).decode(codec, "replace") for byte in range(0x80, 0x100)]
    return ",".join(format(ord(unit), "x") if len(unit) == 1 and unit.isalpha() else "0" for unit in units)


for alias in sorted(aliases):
    try:
        info = codecs.lookup(aliases[alias])
    except LookupError:
        continue  # of another system
    if info._is_text_encoding:
        print(alias, aliases[alias], letters(aliases[alias]))
