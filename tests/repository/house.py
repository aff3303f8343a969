"""The plan of the house: which rooms there are, which floor each stands on, and what the files say about it."""
import os
import pathlib
import re
import subprocess

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))

# Bottom up. A file includes only what stands in its own room or on a lower floor.
LIBRARY = [
    ["base"],
    ["text"],
    ["bridge"],
    ["catalogue"],
    ["message", "addresses", "dates", "csv", "strings", "commands", "desktop", "net"],
    ["entry"],
    ["timers", "smime"],
    ["openpgp", "libraries", "mapi"],
    ["library_export.cpp", "library_entry_win.cpp"],
]
HOST = [
    ["base"],
    ["files"],
    ["charset", "macro"],
    ["terminal", "mime"],
    ["mail"],
    ["facts", "folders", "list", "writing"],
    ["post"],
    ["library", "user", "mapi"],
    ["requests"],
    ["windows"],
    ["shared"],
    ["services"],
    ["session"],
    ["main_win.cpp"],
]
# What the small host takes of the library's sources: the protocol, and ground that knows no Windows.
HOST_MAY_TAKE = re.compile(r"src/(bridge/host_protocol\.h|(base|text|dates|addresses|catalogue)/|commands/account_fields\.h|"
                           r"mapi/(host_blocks|mapi_records)\.h)")
INCLUDE_ROOTS = ("src/", "host/", "tests/", "catalogue/", "resources/", "bench/", "fuzz/", "tools/")
GENERATED = ("wfinfo.h", "wfinfo.hpp")  # stand in out/
IN_THE_ROOT = {".ci", ".clang-format", ".gitattributes", ".github", ".gitignore", "CHANGELOG.md", "CMakeLists.txt",
               "CMakePresets.json", "CONTRIBUTING.md", "LICENSE", "README.md", "SECURITY.md", "bench", "catalogue", "cmake",
               "dev", "docs", "examples", "fuzz", "host", "resources", "samples", "src", "tests", "tools"}

FLOOR = {f"{house}/{room}": floor for house, floors in (("src", LIBRARY), ("host", HOST))
         for floor, rooms in enumerate(floors) for room in rooms}


def repository_files():
    """Paths of what is, or may come to be, committed."""
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=SOURCE,
                            capture_output=True, text=True)
    if listed.returncode == 0:
        return sorted(name for name in set(listed.stdout.split("\0")) if name and (SOURCE / name).is_file())
    # A source archive: everything but what is built.
    found = (path.relative_to(SOURCE) for path in SOURCE.rglob("*") if path.is_file())
    return sorted(path.as_posix() for path in found if path.parts[0] not in ("build", "out"))


def read(name):
    return (SOURCE / name).read_text(encoding="utf-8", errors="replace")


def room(name):
    """src/text for src/text/x.h, and a file of the roof itself."""
    return "/".join(name.split("/")[:2])


def includes(name):
    return re.findall(r'^\s*#\s*include "([^"]+)"', read(name), re.M)


def sources(names, *folders):
    return [name for name in names if name.endswith((".cpp", ".h")) and name.startswith(folders)]


def arrows(names):
    """{(room, room): number of includes}, of the library and of the small host."""
    found = {}
    for name in sources(names, "src/", "host/"):
        for target in includes(name):
            pair = room(name), room(target)
            if pair[0] != pair[1]:
                found[pair] = found.get(pair, 0) + 1
    return found
