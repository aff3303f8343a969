"""The library in Python (docs/bindings.md): python first_steps.py C:\\path\\WFINFO.dll"""
import sys

from wfinfo import Wfinfo

library = Wfinfo(sys.argv[1] if len(sys.argv) > 1 else "WFINFO.dll")
# Errors to standard error: a box would wait for somebody to close it.
library.report_errors_to(lambda text: print(text, file=sys.stderr))
print("interface", library.GetWFInfoVersion(None))
print(library.ToUpper("café ☕ 漢字"))
print(library.FormatDate("Mon, 2 Jun 2025 09:00:00 +0900", "YYYY/MM/DD"))
# Two results in one line are no matter: each is copied.
addresses = 'Alice <alice@example.com>, "Bob, B." <bob@example.com>'
print(f"{library.GetEmailList(addresses, 0)}; {library.GetEmailList(addresses, 1)}")
library.ToUpper(None)
