"""Texts of the library in Python and back, with wfinfo.py (docs/from-your-program.md): python convert.py"""
from wfinfo import from_host, to_host

host = to_host("café 漢字")  # bytes, without a zero behind them
text = from_host(host)
print(f"{len(host)} bytes of host text: {text}")
