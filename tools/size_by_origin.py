"""Where the bytes of WFINFO.dll come from, by the linker's map: the table of docs/speed.md.

size_by_origin.py            shows it
size_by_origin.py --write    writes it into the page; ./dev bench --write does so too

Symbols do not count. A section that the linker writes on its own (imports, exports, relocations) is an origin of its own."""
import collections
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[1]))
BUILD = pathlib.Path(os.environ.get("WFINFO_BUILD", ROOT / "build/windows"))
OUT = pathlib.Path(os.environ.get("WFINFO_OUT", ROOT / "out"))
PAGE = "docs/speed.md"
FIRST, LAST = "<!-- size: written by ./dev bench --write -->", "<!-- end of size -->"

COLUMNS = {".text": "code", ".data": "data", ".rdata": "data", ".CRT": "data", ".tls": "data",
           ".pdata": "unwinding", ".xdata": "unwinding"}
ALONE = {".idata": "imports: names and addresses", ".edata": "exports: names and addresses",
         ".reloc": "relocations", ".rsrc": "version resource"}
LEFT = "headers, and what fills blocks of 512 bytes"


class NotUnderstood(Exception):
    """Why there is no table."""


def sections(dll):
    """Size in the file of each section that is loaded."""
    text = subprocess.run(["x86_64-w64-mingw32-objdump", "-h", str(dll)], check=True, capture_output=True, text=True,
                          env={**os.environ, "LC_ALL": "C"}).stdout
    found = re.findall(r"^ *\d+ (\S+) +([0-9a-f]+) .*\n +(.*)", text, re.M)
    return {name: int(size, 16) for name, size, flags in found if "CONTENTS" in flags and "DEBUGGING" not in flags}


def contributions(text):
    """(section, size, file) of each piece, from the text of a linker's map in any language: what was left out has no address."""
    for name, size, file in re.findall(r"^ (\.[\w$.]+)\s+0x(?!0{16})[0-9a-f]{16} +0x([0-9a-f]+) (\S.*)$", text, re.M):
        yield "." + name.split("$")[0].split(".")[1], int(size, 16), file


def families():
    """The folder of each source, by its name."""
    folders = {}
    for path in sorted(ROOT.glob("src/**/*.cpp")):
        if path.name in folders:
            raise NotUnderstood(f"{path.name} stands in two folders: the map of an archive tells them not apart")
        folders[path.name] = path.parent.relative_to(ROOT).as_posix() + "/"
    return folders


def origin(file, folders):
    archive = re.search(r"([^/\\]+\.a)\((.*)\)$", file)
    name = (archive[2] if archive else file.rsplit("/", 1)[-1]).removesuffix(".obj")
    if name in folders and (archive is None or archive[1] == "libwfinfo_pure.a"):
        return folders[name]
    if archive is None and "CMakeFiles/" in file:
        raise NotUnderstood(f"no source is called {name}")
    if (archive and archive[1].startswith(("libgcc", "libstdc++", "libsupc++"))) or name.startswith("crt"):
        return "the compiler's and the C++ library"
    return "the C run time's start and stubs"


def table():
    """Bytes by origin and column, and those of the whole file."""
    folders, rows = families(), collections.defaultdict(collections.Counter)
    path = BUILD / "WFINFO.map"
    if not path.exists():
        raise NotUnderstood(f"there is no {path.name}: build the library first")
    files = sections(OUT / "WFINFO.dll")
    for section, size, file in contributions(path.read_text(encoding="utf-8", errors="replace")):
        if section in COLUMNS and section in files:
            rows[origin(file, folders)][COLUMNS[section]] += size
    for section, name in ALONE.items():
        rows[name]["data"] += files.get(section, 0)
    stripped = stripped_size()
    rows[LEFT]["data"] = stripped - sum(sum(row.values()) for row in rows.values())
    if rows[LEFT]["data"] < 0:
        raise NotUnderstood("the map is of another build than the library: build it again")
    return rows, stripped


def stripped_size():
    with tempfile.TemporaryDirectory() as folder:
        stripped = pathlib.Path(folder) / "WFINFO.dll"
        subprocess.run(["x86_64-w64-mingw32-strip", "-o", str(stripped), str(OUT / "WFINFO.dll")], check=True)
        return stripped.stat().st_size


def kilobytes(size):
    return f"{size / 1000:.1f}" if size else ""


def shown():
    rows, whole = table()
    lines = ["| Origin | code, KB | data, KB | tables for unwinding, KB | in all, KB |", "|---|---|---|---|---|"]
    for name, row in sorted(rows.items(), key=lambda one: (one[0] == LEFT, -sum(one[1].values()), one[0])):
        name = f"`{name}`" if name.endswith("/") else name
        lines.append(f"| {name} | {kilobytes(row['code'])} | {kilobytes(row['data'])} | {kilobytes(row['unwinding'])} "
                     f"| {kilobytes(sum(row.values()))} |")
    totals = [sum(row[column] for row in rows.values()) for column in ("code", "data", "unwinding")]
    lines.append(f"| all of it | {' | '.join(map(kilobytes, totals))} | {kilobytes(whole)} |")
    return re.sub(r" {2,}", " ", "\n".join(lines))


def on_the_page(page):
    if page.count(FIRST) != 1 or page.count(LAST) != 1:
        raise NotUnderstood(f"{PAGE} has no marks around the table of sizes")
    return page.split(FIRST)[1].split(LAST)[0].strip()


def write_page():
    path = ROOT / PAGE
    page = path.read_text(encoding="utf-8")
    on_the_page(page)
    before, rest = page.split(FIRST)
    path.write_text(f"{before}{FIRST}\n\n{shown()}\n\n{LAST}{rest.split(LAST)[1]}", encoding="utf-8")


if __name__ == "__main__":
    try:
        if sys.argv[1:] == ["--write"]:
            write_page()
        else:
            print(shown())
    except NotUnderstood as reason:
        sys.exit(f"size_by_origin: {reason}")
