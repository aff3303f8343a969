"""Packs what people install: out/wfinfo-VERSION.zip. `./dev package` builds what goes in and calls this.

    python3 tools/make_package.py           packs
    python3 tools/make_package.py --check   and reads the archive as the one who gets it does (tools/check_package.py)

The archive is the same, byte for byte, for the same sources and tools. docs/install.md, its first page, tells what is in it.
"""
import hashlib
import json
import pathlib
import posixpath
import re
import subprocess
import sys
import tempfile

import check_package
import make_kit
import make_site
from make_kit import OUT, ROOT, pack, samples, version

TOP = f"wfinfo-{version()}"
ZIP = OUT / f"{TOP}.zip"
DEBIAN_DOCS = pathlib.Path("/usr/share/doc")

# In the package: in the repository. Documents keep their links to what else is packed.
DOCUMENTS = {"README.md": "docs/install.md", "CHANGELOG.md": "CHANGELOG.md", "SECURITY.md": "SECURITY.md",
             "reference.md": "out/reference.md"}
FILES = {"LICENSE.txt": "LICENSE", "library/WFINFO.dll": "out/WFINFO.dll",
         "development/wfinfo.h": "out/wfinfo.h", "development/libWFINFO.dll.a": "out/libWFINFO.dll.a",
         "development/reference.json": "out/reference.json",
         "small-host/wrenfold.exe": "out/host/wrenfold.exe", "small-host/WFINFO.dll": "out/WFINFO.dll",
         "small-host/LICENSE-gumbo.txt": "out/host/LICENSE-gumbo.txt",
         "symbols/WFINFO.dll.debug": "out/symbols/WFINFO.dll.debug",
         "symbols/wrenfold.exe.debug": "out/symbols/wrenfold.exe.debug", "test-kit/kit.zip": "out/kit.zip"}
FOLDERS = ("samples/", "examples/")
SITE = "docs/"
# Sources and settings whose comments name pages. Not the sample mails: they are data.
WITH_COMMENTS = {".ahk", ".c", ".cpp", ".cs", ".csv", ".js", ".macro", ".ps1", ".py", ".txt"}
BINDINGS = "out/bindings/"


def listed(folder):
    """Names of the repository's files below a folder, whether or not it has a git."""
    if folder == "samples/":
        return samples()
    found = subprocess.run(["git", "ls-files", "-z", folder], cwd=ROOT, capture_output=True, text=True)
    if found.returncode == 0:
        return sorted(name for name in found.stdout.split("\0") if name)
    return sorted(path.relative_to(ROOT).as_posix() for path in (ROOT / folder).rglob("*") if path.is_file())


def taken():
    """{name in the package: name in the repository}, of each file that is packed as it stands or with other links."""
    found = {path.relative_to(OUT).as_posix(): path.relative_to(ROOT).as_posix() for path in sorted((ROOT / BINDINGS).rglob("*.*"))}
    return {**FILES, **DOCUMENTS} | found | {name: name for folder in FOLDERS for name in listed(folder)}


def site():
    """{name in the package: bytes} of the pages in docs/, as a site."""
    with tempfile.TemporaryDirectory() as folder:
        make_site.build(folder)
        found = sorted(path for path in pathlib.Path(folder).rglob("*") if path.is_file())
        return {SITE + path.relative_to(folder).as_posix(): path.read_bytes() for path in found}


def places():
    """{name in the repository: name in the package} of all that pages may link."""
    pages = {source: SITE + name.replace(".md", ".html") for source, name in make_site.places().items() if source.startswith("docs/")}
    return pages | {source: name for name, source in taken().items()}


def relinked(text, source, where):
    """A page whose links lead to where the pages stand in the package; what is not packed keeps its words alone."""
    def link(match):
        words, target = match[1], match[2]
        if re.match(r"\w+:|#", target):
            return match[0]
        path, mark, anchor = target.partition("#")
        path = posixpath.normpath(posixpath.join(posixpath.dirname(source), path))
        if path not in where and not any(name.startswith(path + "/") for name in where):
            return words
        here = posixpath.dirname(where[source]) or "."
        return f"[{words}]({posixpath.relpath(where.get(path, path), here)}{mark}{anchor})"

    # Pictures that are not packed would leave a "!".
    return re.sub(r"!?\[([^\]\[]*(?:\[[^\]]*\][^\]\[]*)?)\]\(([^)\s]+)\)",
                  lambda match: "!" * match[0].startswith("!") + link(match) if link(match) != match[1] else match[1], text)


def with_pages_here(text, where):
    """A source whose comments name the pages as they are called in the package."""
    return re.sub(r"\bdocs/[\w.-]+\.md\b", lambda match: where.get(match[0], match[0]), text)


# --- What is made for the package ---


def definition_file():
    """The exports by name, for linkers; how an export is entered is the library's own matter."""
    text = (OUT / "WFINFO.def").read_text(encoding="utf-8")
    return re.sub(r"^(\s+\w+) = \w+", r"\1", text, flags=re.M).encode()


def microsoft_import_library(definition):
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder, "WFINFO.def")
        path.write_bytes(definition)
        library = pathlib.Path(folder, "WFINFO.lib")
        subprocess.run(["llvm-dlltool-14", "-m", "i386:x86-64", "-d", str(path), "-D", "WFINFO.dll", "-l", str(library)], check=True)
        return library.read_bytes()


def debian_version(package):
    return subprocess.run(["dpkg-query", "-W", "-f=${Version}", package], capture_output=True, text=True, check=True).stdout


def html_parser_version():
    text = next((ROOT / "build/libraries/ruby-nokogiri").glob("lib/nokogiri/version/constant.rb")).read_text()
    return re.search(r'VERSION = "([^"]+)"', text)[1]


def linked():
    """What of others goes along in the programs and pages, for people and for tools: (name, version, licence, where, address)."""
    gcc, crt = debian_version("g++-mingw-w64-x86-64-posix"), debian_version("mingw-w64-x86-64-dev")
    both = ("WFINFO.dll", "wrenfold.exe")
    exception = "GPL-3.0-or-later WITH GCC-exception-3.1"
    return [("libstdc++", gcc, exception, both, "https://gcc.gnu.org/"), ("libgcc", gcc, exception, both, "https://gcc.gnu.org/"),
            ("mingw-w64 run time", crt, "ZPL-2.1", both, "https://www.mingw-w64.org/"),
            ("winpthreads", crt, "MIT", both[1:], "https://www.mingw-w64.org/"),
            # Not linked: it goes along with the pages.
            ("Material for MkDocs", debian_version("mkdocs-material"), "MIT AND Apache-2.0 AND MPL-1.1", (SITE,),
             "https://squidfunk.github.io/mkdocs-material/"),
            ("gumbo (of nokogiri)", html_parser_version(), "Apache-2.0", both[1:], "https://nokogiri.org/")]


def notices():
    """The terms of what is linked, as Debian keeps them."""
    head = (ROOT / "tools/package/notices.txt").read_text(encoding="utf-8")
    table = "".join(f"- {name} {number}: {licence}; in {' and '.join(where)}\n" for name, number, licence, where, _ in linked())
    terms = (DEBIAN_DOCS / "mingw-w64-x86-64-dev/copyright").read_text(encoding="utf-8")
    gumbo = (OUT / "host/LICENSE-gumbo.txt").read_text(encoding="utf-8")
    theme = (DEBIAN_DOCS / "mkdocs-material/copyright").read_text(encoding="utf-8")
    line = "=" * 78
    parts = {"mingw-w64": terms, "gumbo": gumbo, "Material for MkDocs": theme}
    return (f"{head}\n{table}" + "".join(f"\n{line}\n{name}\n{line}\n{text}" for name, text in parts.items())).encode()


def bill_of_materials():
    """CycloneDX 1.5, without time and serial number: the same sources give the same file."""
    def component(kind, name, number, licence, address=None):
        made = {"type": kind, "bom-ref": f"{name}@{number}", "name": name, "version": number,
                "licenses": [{"expression": licence}]}
        return made | ({"externalReferences": [{"type": "website", "url": address}]} if address else {})

    products = {"WFINFO.dll": component("library", "WFINFO.dll", version(), "MIT"),
                "wrenfold.exe": component("application", "wrenfold.exe", version(), "MIT")}
    parts = [component("library", name, number, licence, address) for name, number, licence, _, address in linked()]
    package = component("application", TOP, version(), "MIT")
    of_pages = [f"{name}@{number}" for name, number, _, where, _ in linked() if SITE in where]
    needs = [{"ref": package["bom-ref"], "dependsOn": [made["bom-ref"] for made in products.values()] + of_pages}]
    needs += [{"ref": made["bom-ref"], "dependsOn": [f"{name}@{number}" for name, number, _, where, _ in linked() if product in where]}
              for product, made in products.items()]
    bill = {"bomFormat": "CycloneDX", "specVersion": "1.5", "version": 1, "metadata": {"component": package},
            "components": [*products.values(), *parts], "dependencies": needs}
    return (json.dumps(bill, indent=1) + "\n").encode()


def start_page():
    """What a double click opens, where no program is there for README.md: the same page in the site."""
    to = SITE + make_site.places()[DOCUMENTS["README.md"]].replace(".md", ".html")
    return (f'<!DOCTYPE html>\n<html lang="en">\n<meta charset="utf-8">\n<title>WFINFO {version()}</title>\n'
            f'<meta http-equiv="refresh" content="0; url={to}">\n<a href="{to}">What to do first</a>\n'
            f'<a href="{to.replace(".html", ".ja.html")}" lang="ja">日本語</a>\n</html>\n').encode()


# --- The archive ---


def contents():
    """{name below the top folder: bytes}"""
    where = places()
    packed = site()
    for name, source in taken().items():
        path = ROOT / source
        if path.suffix in (".exe", ".dll"):
            packed[name] = make_kit.stripped(path)
        elif path.suffix == ".md":
            packed[name] = relinked(path.read_text(encoding="utf-8"), source, where).encode()
        elif path.suffix in WITH_COMMENTS and name.startswith(FOLDERS):
            packed[name] = with_pages_here(path.read_bytes().decode("latin-1"), where).encode("latin-1")
        else:
            packed[name] = path.read_bytes()
    packed["development/WFINFO.def"] = definition_file()
    packed["development/WFINFO.lib"] = microsoft_import_library(definition_file())
    packed["START-HERE.html"] = start_page()
    packed["THIRD-PARTY-NOTICES.txt"] = notices()
    packed["sbom.cdx.json"] = bill_of_materials()
    sums = "".join(f"{hashlib.sha256(content).hexdigest()}  {name}\n" for name, content in sorted(packed.items()))
    return packed | {"SHA256SUMS": sums.encode()}


def main(arguments):
    pack(ZIP, {f"{TOP}/{name}": content for name, content in contents().items()})
    if "--check" in arguments:
        wrong = check_package.faults(ZIP)
        print(*wrong, sep="\n", end="\n" if wrong else "")
        return 1 if wrong else 0
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
