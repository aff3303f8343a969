"""Writes the definition file of the stand-in: its own functions, and forwarders for all that Wine's crypt32 exports.

make_definition.py OBJDUMP CRYPT32 OUTPUT
"""
import os
import re
import subprocess
import sys

OWN = ["CryptEncryptMessage", "CryptDecryptMessage", "CryptSignAndEncryptMessage",
       "CryptDecryptAndVerifyMessageSignature", "CryptVerifyMessageSignature", "CryptVerifyDetachedMessageSignature",
       "CertVerifyCRLRevocation", "CertFindCRLInStore"]

objdump, library, output = sys.argv[1:]
text = subprocess.run([objdump, "-p", library], capture_output=True, text=True, check=True,
                      env={**os.environ, "LC_ALL": "C"}).stdout
names = re.findall(r"^\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+[0-9a-f]+\s+)?([A-Za-z_]\w+)\s*$",
                   text.split("[Ordinal/Name Pointer] Table")[1], re.M)
assert len(names) > 200, "the export table could not be read"
assert set(OWN) <= set(names)
with open(output, "w") as file:
    file.write('LIBRARY "crypt32.dll"\nEXPORTS\n')
    for name in names:
        file.write(f"  {name}\n" if name in OWN else f"  {name} = wcrypt32.{name}\n")
