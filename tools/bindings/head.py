"""WFINFO.dll in Python: every export as a method, with texts as str.

    from wfinfo import Wfinfo
    library = Wfinfo("WFINFO.dll")
    print(library.RootHeader("Subject"))

Texts are copied as soon as a call returns. What code page 932 cannot hold travels as the library's escape and comes back
as it was. None is a null text, where an export takes one; bytes are passed as they are. A number-or-text parameter takes int
or str; handles and records are addresses (int). A lock lets one thread call at a time. Errors of the library are modal
boxes, in any program: call report_errors_to first.

Made by tools/make_bindings.py; needs 64-bit Python on Windows.
"""
import ctypes
import threading
from ctypes import c_int, c_longlong, c_uint, c_void_p

# Two numbers a range, the first and the last full-width character.
FULL_WIDTH = (@WIDE@)


def is_full_width(unit):
    return any(first <= unit <= last for first, last in zip(FULL_WIDTH[::2], FULL_WIDTH[1::2]))


def to_host(text):
    """The library's text of a str: code page 932, with an escape of four bytes for what it cannot hold."""
    host = bytearray()
    units = memoryview(text.encode("utf-16-le", "surrogatepass")).cast("H")
    for unit in units:
        character = chr(unit)
        try:
            one = character.encode("cp932")
            if unit != 0x1A and one.decode("cp932") == character:  # some are encoded as what merely looks alike
                host += one
                continue
        except UnicodeError:
            pass
        host += bytes((0x1A, 0x80 | unit & 0x7F, 0x80 | unit >> 8 & 0x7F,
                       0x84 | unit >> 7 & 1 | (unit >> 15 & 1) << 1 | (8 if is_full_width(unit) else 0)))
    return bytes(host)


def from_host(host):
    """And back; bytes that are no text of the library's become U+FFFD."""
    units, at = bytearray(), 0
    while at < len(host):
        four = host[at:at + 4]
        if len(four) == 4 and four[0] == 0x1A and four[1] & 0x80 and four[2] & 0x80 and four[3] & 0x74 == 0x04:
            unit = four[1] & 0x7F | (four[3] & 1) << 7 | (four[2] & 0x7F) << 8 | (four[3] >> 1 & 1) << 15
            units += unit.to_bytes(2, "little")
            at += 4
            continue
        size = 2 if 0x81 <= host[at] <= 0x9F or 0xE0 <= host[at] <= 0xFC else 1
        units += host[at:at + size].decode("cp932", "replace").encode("utf-16-le")
        at += size
    return units.decode("utf-16-le", "replace")


# Kinds of parameters and results beside those of ctypes.
_text, _wide, _value, _result = "text", "wide", "value", "result"


class Wfinfo:
    def __init__(self, path="WFINFO.dll"):
        if not hasattr(ctypes, "WinDLL"):
            raise OSError("WFINFO.dll is a library of Windows: it needs Python for Windows, under Linux in Wine")
        self._library = ctypes.WinDLL(path)
        self._lock = threading.RLock()

    def report_errors_to(self, function, english=True):
        """What the library tells goes to function(str), in the place of a box."""
        class Info(ctypes.Structure):
            _fields_ = [("size", c_uint), ("english", c_int), ("callback", c_void_p)]

        self._callback = ctypes.CFUNCTYPE(None, c_void_p)(lambda text: function(from_host(ctypes.string_at(text))))
        info = Info(ctypes.sizeof(Info), int(english), ctypes.cast(self._callback, c_void_p))
        self.NotifyWrenfoldInfo(ctypes.addressof(info))

    def _call(self, name, result, kinds, given):
        function = getattr(self._library, name)
        slots, kept = [], []  # what is kept lives until the call has returned
        for number, value in enumerate(given):
            kind = kinds[number] if number < len(kinds) else _value
            if kind == _wide:
                slots.append(ctypes.c_wchar_p(value))
            elif kind == _text or (kind == _value and isinstance(value, (str, bytes))):
                if value is not None:
                    buffer = ctypes.create_string_buffer(value if isinstance(value, bytes) else to_host(value))
                    kept.append(buffer)
                    value = ctypes.addressof(buffer)
                slots.append(c_void_p(value))
            else:
                slots.append((c_longlong if kind == _value else kind)(value))
        function.restype = c_void_p if result == _result else result
        with self._lock:
            answer = function(*slots)
            if result != _result:
                return answer
            return None if answer is None else from_host(ctypes.string_at(answer))
