"""Prints names and what RFC 3501, 5.1.3 makes of them, written from the text of the RFC alone.

Each line: the UTF-16 units of a name as hexadecimal numbers joined by commas ("-" for none), a blank, the encoded name
between bars.
"""
import base64
import random


def encoded(name):
    result, run = "", ""

    def flush():
        nonlocal result, run
        if run:
            # "modified BASE64 ... with a further modification ... that "," is used instead of "/""; no padding.
            digits = base64.b64encode(run.encode("utf-16-be")).decode("ascii").rstrip("=").replace("/", ",")
            result += "&" + digits + "-"
            run = ""

    for character in name:
        if " " <= character <= "~":
            flush()
            result += "&-" if character == "&" else character
        else:
            run += character
    flush()
    return result


def units(name):
    wide = name.encode("utf-16-be")
    return ",".join(f"{wide[i] << 8 | wide[i + 1]:x}" for i in range(0, len(wide), 2)) or "-"


CHARACTERS = "aZ09 &-,+/~\\\"\x7f\x01éüßΩЖ日本語台北\u20ac\uffff\ufeff😀𠮟"
# The RFC's own examples come first.
names = ["~peter/mail/台北/日本語", "&", "台北日本語"]
generator = random.Random(3501)
for _ in range(3000):
    names.append("".join(generator.choice(CHARACTERS) for _ in range(generator.randrange(12))))
for name in names:
    print(units(name), f"|{encoded(name)}|")
