"""Reads out/wfinfo-VERSION.zip as the one who gets it does, and tells what is wrong with it.

    python3 tools/check_package.py ARCHIVE

Only what lies in the archive counts; binutils of mingw-w64 read the programs.
"""
import functools
import hashlib
import json
import os
import pathlib
import posixpath
import re
import subprocess
import sys
import tempfile
import zipfile

import check_site

SYSTEM = {"advapi32.dll", "comctl32.dll", "crypt32.dll", "gdi32.dll", "imm32.dll", "kernel32.dll", "mapi32.dll", "msvcrt.dll",
          "ole32.dll", "oleaut32.dll", "shell32.dll", "shlwapi.dll", "user32.dll", "version.dll", "winmm.dll", "ws2_32.dll"}
HARDENING = ("HIGH_ENTROPY_VA", "DYNAMIC_BASE", "NX_COMPAT")
PLAIN = {**os.environ, "LC_ALL": "C"}


def tool(name, *words):
    return subprocess.run([f"x86_64-w64-mingw32-{name}", *map(str, words)], capture_output=True, text=True, check=True, env=PLAIN,
                          errors="replace").stdout


def exported(library):
    return sorted(re.findall(r"^\s*\[\s*\d+\]\s+(\w+)\s*$", tool("objdump", "-p", library).split("[Ordinal/Name Pointer] Table")[1], re.M))


# Each of these yields a sentence for each fault of the unpacked folder.


def faults_of_sums(top):
    listed = dict(reversed(line.split("  ", 1)) for line in (top / "SHA256SUMS").read_text(encoding="utf-8").splitlines())
    there = {path.relative_to(top).as_posix() for path in top.rglob("*") if path.is_file()} - {"SHA256SUMS"}
    for name in sorted(there ^ set(listed)):
        yield f"{name}: only {'packed' if name in there else 'in SHA256SUMS'}"
    for name in sorted(there & set(listed)):
        if hashlib.sha256((top / name).read_bytes()).hexdigest() != listed[name]:
            yield f"{name}: not what SHA256SUMS says"


def faults_of_programs(top):
    for path in sorted(top.rglob("*")):
        if path.suffix not in (".exe", ".dll"):
            continue
        name = path.relative_to(top).as_posix()
        head, sections = tool("objdump", "-p", path), tool("objdump", "-h", path)
        for needed in sorted({found.lower() for found in re.findall(r"DLL Name: (\S+)", head)} - SYSTEM):
            yield f"{name}: needs {needed}, which is no part of Windows"
        for flag in HARDENING:
            if flag not in head:
                yield f"{name}: {flag} is missing"
        if ".reloc" not in sections:
            yield f"{name}: nothing tells the system how to move it"
        for section, flags in re.findall(r"^\s*\d+ (\S+).*\n\s+(.*)$", sections, re.M):
            if "CODE" in flags and "READONLY" not in flags:
                yield f"{name}: {section} is code that can be written"
            if section.startswith(".debug"):
                yield f"{name}: carries {section}"


def faults_of_exports(top):
    names = exported(top / "library/WFINFO.dll")
    rows = [row["name"] for row in json.loads((top / "development/reference.json").read_text(encoding="utf-8"))]
    definition = (top / "development/WFINFO.def").read_text(encoding="utf-8").partition("EXPORTS\n")[2].split()
    reference = re.findall(r"^### `(\w+)`$", (top / "reference.md").read_text(encoding="utf-8"), re.M)
    header = re.sub(r"/\*.*?\*/", "", (top / "development/wfinfo.h").read_text(encoding="utf-8"), flags=re.S)
    lists = {"reference.json": rows, "WFINFO.def": definition, "reference.md": reference,
             "wfinfo.h": re.findall(r"\b(\w+)\([^()]*\);", header)}
    for library in ("libWFINFO.dll.a", "WFINFO.lib"):
        symbols = tool("nm", top / "development" / library)
        lists[library] = sorted(set(re.findall(r"^[0-9a-f]+ T (\w+)$", symbols, re.M)))
    for where, found in lists.items():
        for name in sorted(set(found) ^ set(names)):
            yield f"{name}: {'not ' if name in names else 'only '}in {where}"


@functools.cache
def anchors(page):
    if page.suffix == ".html":
        return check_site.Page(page.read_text(encoding="utf-8")).places
    headings = re.findall(r"^#+ (.+)$", page.read_text(encoding="utf-8"), re.M)
    return {re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-") for heading in headings}


def faults_of_links(top):
    for page in sorted(top.rglob("*.md")):
        name = page.relative_to(top).as_posix()
        for target in re.findall(r"\]\(([^)\s]+)\)", page.read_text(encoding="utf-8")):
            if re.match(r"\w+:", target):
                continue
            path, _, anchor = target.partition("#")
            to = top / posixpath.normpath(posixpath.join(posixpath.dirname(name), path)) if path else page
            if not to.exists():
                yield f"{name}: {target} leads nowhere"
            elif anchor and to.suffix in (".md", ".html") and anchor not in anchors(to):
                yield f"{name}: {target} has no such heading"
    yield from check_site.faults(top)
    for path in sorted(path for folder in ("samples", "examples", "development") for path in (top / folder).rglob("*") if path.is_file()):
        for page in re.findall(rb"\bdocs/[\w.-]+\.(?:md|html)\b", path.read_bytes()):
            if not (top / page.decode()).exists():
                yield f"{path.relative_to(top).as_posix()}: names {page.decode()}, which is not packed"


def faults_of_folders(top):
    """Folders of the machine that packed it; it is the one that checks."""
    root = pathlib.Path(__file__).resolve().parents[1]
    folders = {str(root), os.path.realpath(root), str(pathlib.Path.home())} - {"/"}
    for path in sorted(path for path in top.rglob("*") if path.is_file()):
        content = path.read_bytes()
        for folder in sorted(folders):
            if f"{folder}/".encode() in content or f"{folder}/".encode("utf-16-le") in content:
                yield f"{path.relative_to(top).as_posix()}: holds the path {folder}"


def faults_of_version(top):
    number = top.name.partition("-")[2]
    resource = (top / "library/WFINFO.dll").read_bytes()
    if f"{number}.18".encode("utf-16-le") not in resource:
        yield f"library/WFINFO.dll: its resource has another version than {number}"
    for name, pattern in {"CHANGELOG.md": rf"^## {re.escape(number)}\b", "README.md": rf"\b{re.escape(number)}\b",
                          "development/wfinfo.h": rf'"{re.escape(number)}"'}.items():
        if not re.search(pattern, (top / name).read_text(encoding="utf-8"), re.M):
            yield f"{name}: does not speak of version {number}"


CHECKS = (faults_of_sums, faults_of_programs, faults_of_exports, faults_of_links, faults_of_folders, faults_of_version)


def faults_of_folder(top):
    """Of an archive that is unpacked already."""
    return [fault for check in CHECKS for fault in check(top)]


def faults(archive):
    with tempfile.TemporaryDirectory() as folder, zipfile.ZipFile(archive) as packed:
        tops = {name.split("/")[0] for name in packed.namelist()}
        if tops != {pathlib.Path(archive).stem}:
            return [f"{pathlib.Path(archive).name} unpacks to {', '.join(sorted(tops))}"]
        packed.extractall(folder)
        return faults_of_folder(pathlib.Path(folder, *tops))


if __name__ == "__main__":
    found = faults(sys.argv[1])
    print(*found, sep="\n", end="\n" if found else "")
    sys.exit(1 if found else 0)
