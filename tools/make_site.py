"""Builds the documentation site out/site from the repository's Markdown, with MkDocs and its Material theme.

    python3 tools/make_site.py           builds, and reads every page that was built (tools/check_site.py)

The pages are those of docs/ and a few more (MORE_PAGES); the pages of the exports, one a family, are taken from out/reference.md and
out/reference.json, which a build prints from the catalogue. NAVIGATION holds every page. The site needs no server and no network, and
is the same, byte for byte, for the same sources and tools.
"""
import json
import os
import pathlib
import posixpath
import re
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import check_site  # noqa: E402
from document_exports import first_sentence  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[1]
OUT = pathlib.Path(os.environ.get("WFINFO_OUT", ROOT / "out"))
SITE = OUT / "site"
PARTS = ROOT / "tools/site"

# In the site: in the repository.
MORE_PAGES = {"contributing.md": "CONTRIBUTING.md", "changelog.md": "CHANGELOG.md", "security.md": "SECURITY.md",
              "examples.md": "examples/README.md", "catalogue.md": "catalogue/README.md"}
HOME = "index.md"
REFERENCE = "reference/index.md"
FAMILIES = "families.md"
# Pages that may not be there.
OPTIONAL = ("from-your-program.md", "write-a-host.md", "prompt.md", "windows.md")
BY_FAMILY = "the pages of the families"

GUIDES = ["answer-a-mail.md", "sort-a-mailbox.md", "read-a-csv.md", "sign-and-verify.md", "fetch-a-page.md", "be-the-mail-client.md"]
CONCEPTS = ["host-text.md", "text-results.md", "threads.md", "dialogs.md", "odd-behaviour.md"]
SUBJECTS = ["mails-and-folders.md", "headers-and-bodies.md", "writing-mails.md", "searching.md", "import-and-export.md", "transmission.md",
            "mail-files.md", "account-record.md", "addresses.md", "dates.md", "files-and-csv.md", "keywords.md", "windows-and-timers.md",
            "libraries.md", "network.md", "smime.md", "openpgp.md"]


def japanese(pages):
    return [page.replace(".md", ".ja.md") for page in pages]


# Titles and what stands below them; a page without a title has that of its heading.
NAVIGATION = [
    {"Home": HOME},
    {"Start": ["first-macro.md", {"Twelve macros": "learn.md"}, "windows.md", "prompt.md", {"The macro language": "macros.md"},
               {"The small host": "small-host.md"}, {"From the archive": "install.md"}]},
    {"Guides": [*GUIDES, "from-your-program.md", {"Other languages": "bindings.md"}]},
    {"Concepts": CONCEPTS},
    {"Reference": [{"By subject": FAMILIES}, {"A to Z": REFERENCE}, {"Families": [BY_FAMILY]}, {"More on subjects": SUBJECTS}]},
    {"For hosts": ["write-a-host.md", {"The protocol by code": "host-protocol-by-code.md"}]},
    {"Simple MAPI": ["simple-mapi.md"]},
    {"Threats": [{"What PGP and GnuPG protect": "threats-pgp.md"}, {"Reporting a fault": "security.md"}]},
    {"Proved": ["testing.md", "reliability.md", "reliability-calls.md", "speed.md", "test-kit.md"]},
    {"The house": [{"How it is built": "architecture.md"}, {"Working on it": "contributing.md"}, {"The catalogue": "catalogue.md"},
                   {"Examples": "examples.md"}, {"Dependencies": "dependencies.md"}, {"What changed": "changelog.md"}]},
    {"日本語": [{"はじめに": "index.ja.md"}, "first-macro.ja.md", {"配布ファイルから": "install.ja.md"}, {"十二のマクロ": "learn.ja.md"}, {"マクロの言語": "macros.ja.md"}, {"手引き": japanese(GUIDES)},
             {"基礎知識": japanese(CONCEPTS)}, {"関数の一覧": "families.ja.md"}]},
]


def places():
    """{page in the repository: page in the site}"""
    found = {f"docs/{path.name}": path.name for path in sorted((ROOT / "docs").glob("*.md"))}
    return found | {source: name for name, source in MORE_PAGES.items()}


# --- Markdown as MkDocs reads it ---


def outside_code(text, change):
    """The text with its lines changed in pieces, but for those in fences."""
    pieces = re.split(r"(^```.*?^```$\n?)", text, flags=re.M | re.S)
    return "".join(piece if number % 2 else change(piece) for number, piece in enumerate(pieces))


def with_room_for_lists(text):
    """A list may follow a line of text at once where the repository is read, but not here."""
    return re.sub(r"^(?!(?:[-*]|\d+\.) |[ |#<]|$)(.+)\n(?=(?:[-*]|1\.) )", r"\1\n\n", text, flags=re.M)


def with_joined_lines(text):
    """A line end inside a Japanese sentence is not a blank."""
    return re.sub(r"(?<=[ぁ-んァ-ヶー一-龠、。」）])\n *(?=[ぁ-んァ-ヶ一-龠「（])", "", text)


def with_whole_pictures(text):
    """A picture shows as wide as the text, and whole when it is clicked."""
    return re.sub(r"^!\[([^\]]*)\]\((\S+)\)$", r"[![\1](\2)](\2)", text, flags=re.M)


def with_marked_macros(text):
    """Macros have no mark of their own where the repository is read; here they have colours."""
    def mark(match):
        plain = not match[1] and re.search(r"^(?:print|while|if|for) ", match[2], re.M)
        return f"```{'macro' if plain or match[1] == 'wrenfold' else match[1]}\n{match[2]}```"

    return re.sub(r"^```(\w*)\n(.*?)^```$", mark, text, flags=re.M | re.S)


def title_of(source):
    """The heading of a page of the repository."""
    return re.search(r"^# (.+)$", (ROOT / source).read_text(encoding="utf-8"), re.M)[1]


def as_read_here(text):
    return outside_code(with_marked_macros(text), lambda piece: with_whole_pictures(with_joined_lines(with_room_for_lists(piece))))


class Links:
    """Where what the pages name stands in the site."""

    def __init__(self):
        self.places = places()
        rows = json.loads((OUT / "reference.json").read_text(encoding="utf-8"))
        stems = families()
        self.exports = {row["name"]: f"reference/{stems[row['family']]}.md#{row['name'].lower()}" for row in rows}
        self.anchors = {place.partition("#")[2]: place for place in self.exports.values()}
        self.files = set()  # of the repository, which pages link

    def place_of(self, path, anchor):
        """Of what a link names; None for what is not in the site."""
        if path == "out/reference.md":
            return self.anchors.get(anchor, REFERENCE)
        for name in (path, f"{path}/README.md"):
            if name in self.places:
                return self.places[name] + (f"#{anchor}" if anchor else "")
        if path == "README.md":
            return HOME
        if (ROOT / path).is_file():
            if path.startswith("docs/"):
                return path.removeprefix("docs/")
            self.files.add(path)
            return f"files/{path}"
        if (ROOT / path).is_dir():
            return None
        raise SystemExit(f"make_site: nobody knows where {path} is")

    def relinked(self, text, source, name):
        """A page `source` of the repository whose links lead to where things stand beside the page `name` of the site."""
        here = posixpath.dirname(name) or "."

        def to(place):
            path, mark, anchor = place.partition("#")
            return posixpath.relpath(path, here) + mark + anchor

        def link(match):
            words, target = match[1], match[2]
            path, _, anchor = target.partition("#")
            if re.match(r"\w+:", target) or not path:
                return match[0]
            path = posixpath.normpath(posixpath.join(posixpath.dirname(source), path))
            place = self.place_of(path, anchor)
            if re.fullmatch(r"[\w.-]+\.md", words) and path in self.places:
                words = title_of(path)
            return f"[{words}]({to(place)})" if place else words

        def name_of_export(match):
            place = REFERENCE if match[1] == "out/reference.md" else self.exports.get(match[1])
            return f"[{match[0]}]({to(place)})" if place else match[0]

        def change(piece):
            piece = re.sub(r"\[([^\]\[]*(?:\[[^\]]*\][^\]\[]*)?)\]\(([^)\s]+)\)", link, piece)
            # Each export that a line names is a link, but in headings and where it is one already.
            return re.sub(r"^(?!#).*$", lambda line: re.sub(r"(?<!\[)`(\w+|out/reference\.md)`(?!\])", name_of_export, line[0]), piece, flags=re.M)

        return outside_code(text, change)


# --- The pages of the exports ---


def families():
    """{title: file of the catalogue, without its ending}, in order."""
    text = (ROOT / "catalogue/all.def").read_text(encoding="utf-8")
    return dict(re.findall(r'^FAMILY\("([^"]+)"\)\n#include "catalogue/(\w+)\.def"', text, re.M))


def sections(text, mark):
    """What stands before the first heading of a level, and {heading: its text}; lines of code are no headings."""
    parts, fenced = [["", []]], False
    for line in text.splitlines():
        fenced ^= line.startswith("```")
        if not fenced and line.startswith(mark + " "):
            parts.append([line[len(mark) + 1:], []])
        else:
            parts[-1][1].append(line)
    joined = {heading: "\n".join(lines).strip("\n") for heading, lines in parts}
    return joined.pop(""), joined


def summaries():
    """{title of a family: what docs/families.md says of it}"""
    text = (ROOT / "docs" / FAMILIES).read_text(encoding="utf-8")
    found = {heading: body.split("\n## ")[0].strip() for heading, body in sections(text, "###")[1].items()}
    return {heading: re.sub(r"\]\((?=[\w-]+\.md)", "](../docs/", body) for heading, body in found.items()}


def family_page(title, body, rows):
    """Heading, what the family is for, its exports in short, and each with all there is to say."""
    table = "\n".join(f"| [`{row['name']}`](#{row['name'].lower()}) | {first_sentence(row['doc']).replace('|', chr(92) + '|')} |" for row in rows)
    body = re.sub(r"^### ", "## ", body, flags=re.M)
    return f"# {title}\n\n{summaries()[title]}\n\n| {len(rows)} exports | what it does |\n|---|---|\n{table}\n\n{body}\n"


def index_page(head, rows):
    """How the entries are to be read, and all exports by their letters."""
    letters = {}
    for row in sorted(rows, key=lambda row: row["name"].lower()):
        letters.setdefault(row["name"][0].upper(), []).append(row)
    jump = " · ".join(f"[{letter}](#{letter.lower()})" for letter in letters)
    lists = "\n".join(f"\n## {letter}\n\n| export | what it does |\n|---|---|\n" + "\n".join(
        f"| `{row['name']}` | {first_sentence(row['doc']).replace('|', chr(92) + '|')} |" for row in found) for letter, found in letters.items())
    head = head.replace("# Reference of all exports", "").strip()
    return (f"# All exports, from A to Z\n\n[By subject](../docs/families.md) they stand on a page a family.\n\n{jump}\n{lists}\n\n"
            f"## How an entry is to be read\n\n{head}\n")


def reference_pages(links):
    """{page in the site: text}"""
    head, parts = sections((OUT / "reference.md").read_text(encoding="utf-8"), "##")
    rows = json.loads((OUT / "reference.json").read_text(encoding="utf-8"))
    pages = {REFERENCE: index_page(head, rows)}
    for title, stem in families().items():
        own = [row for row in rows if row["family"] == title]
        page = family_page(title, parts[title], own)
        inside = {row["name"].lower() for row in own}
        pages[f"reference/{stem}.md"] = re.sub(
            r"\]\(#(\w+)\)", lambda match: match[0] if match[1] in inside else f"](../out/reference.md#{match[1]})", page)
    return {name: links.relinked(text, "out/reference.md", name) for name, text in pages.items()}


# --- The site ---


def sources():
    """{file in the site: bytes} of what MkDocs reads."""
    links = Links()
    texts = {}
    for source, name in links.places.items():
        texts[name] = links.relinked((ROOT / source).read_text(encoding="utf-8"), source, name)
    texts[FAMILIES] = with_family_links(texts[FAMILIES], "All {}, with parameters, result and an example")
    texts["families.ja.md"] = with_family_links(texts["families.ja.md"], "{} 個すべて（英語）")
    texts |= reference_pages(links)
    made = {name: as_read_here(text).encode() for name, text in texts.items()}
    made |= {path.name: path.read_bytes() for path in (ROOT / "docs").glob("*.svg")}
    made |= {f"files/{name}": (ROOT / name).read_bytes() for name in links.files}
    return made | {"site.css": (PARTS / "site.css").read_bytes(), "search/search.js": (PARTS / "search.js").read_bytes()}


def with_family_links(text, words):
    """The summaries of the families, each with a link to the family's page behind it; the n-th heading is that of the n-th family."""
    counts = {}
    for row in json.loads((OUT / "reference.json").read_text(encoding="utf-8")):
        counts[row["family"]] = counts.get(row["family"], 0) + 1
    titles = dict(zip(re.findall(r"^### (.+)$", text, re.M), titles_in_order()))
    return re.sub(r"^### (.+)\n\n(.+(?:\n.+)*)", lambda match: f"### {match[1]}\n\n{match[2]}\n\n"
                  f"[{words.format(counts[titles[match[1]]])}](reference/{families()[titles[match[1]]]}.md)", text, flags=re.M)


def titles_in_order():
    return re.findall(r"^### (.+)$", (ROOT / "docs" / FAMILIES).read_text(encoding="utf-8"), re.M)


def navigation(made, entries=None):
    """NAVIGATION as MkDocs takes it, without optional pages that are not there."""
    found = []
    for entry in NAVIGATION if entries is None else entries:
        if entry == BY_FAMILY:
            found += [{title: f"reference/{stem}.md"} for title, stem in families().items()]
        elif isinstance(entry, dict):
            (title, below), = entry.items()
            found.append({title: navigation(made, below) if isinstance(below, list) else below})
        elif entry in made or entry not in OPTIONAL:
            found.append(entry)
    return found


def pages_of(entries):
    for entry in entries:
        below = next(iter(entry.values())) if isinstance(entry, dict) else entry
        yield from pages_of(below) if isinstance(below, list) else [below]


def configuration(folder, target, entries):
    fixed = (PARTS / "mkdocs.yml").read_text(encoding="utf-8")
    added = {"docs_dir": f"{folder}/src", "site_dir": str(target), "nav": entries, "hooks": [str(PARTS / "macro_colours.py")]}
    theme = fixed.replace("theme:\n", f"theme:\n  custom_dir: {json.dumps(str(PARTS / 'theme'))}\n")
    return theme + "".join(f"{name}: {json.dumps(value, ensure_ascii=False)}\n" for name, value in added.items())


# Of the theme: what a browser asks for without developer tools, in the languages of the pages.
NOT_WANTED = re.compile(r"\.map$|^sitemap\.xml|^404\.html$|/lunr/min/lunr\.(?!ja|multi|stemmer)|/lunr/wordcut\.js$")

# What the theme says on every page.
IN_JAPANESE = {'<html lang="en"': '<html lang="ja"', "Table of contents": "目次", 'placeholder="Search"': 'placeholder="検索"',
               "Back to top": "ページの先頭へ", '"search.placeholder": "Search"': '"search.placeholder": "検索"',
               '"Type to start searching"': '"検索する語を入力してください"', '"No matching documents"': '"見つかりませんでした"',
               '"1 matching document"': '"1 件見つかりました"', '"# matching documents"': '"# 件見つかりました"'}
INDEX = "window.wfinfoSearchIndex = "


def with_breakable_names(page):
    """A page whose long names in tables may be broken before a word of theirs, where a narrow screen has to."""
    def name(match):
        return "<code>" + re.sub(r"(?<=[a-z0-9])(?=[A-Z])|(?<=_)(?=\w)", "<wbr>", match[1]) + "</code>"

    return re.sub(r"<td.*?</td>", lambda cell: re.sub(r"<code>(\w{13,})</code>", name, cell[0]), page, flags=re.S)


def finish(target):
    """Takes out what is not wanted or tells the day; tells browsers which pages are Japanese and where names may be broken; the index
    as a script."""
    for path in sorted(target.rglob("*")):
        if path.is_file() and NOT_WANTED.search(path.relative_to(target).as_posix()):
            path.unlink()
    for path in target.rglob("*.ja.html"):
        text = path.read_text(encoding="utf-8")
        for word, japanese_word in IN_JAPANESE.items():
            text = text.replace(word, japanese_word)
        path.write_text(text, encoding="utf-8")
    for path in target.rglob("*.html"):
        path.write_text(with_breakable_names(path.read_text(encoding="utf-8")), encoding="utf-8")
    found = target / "search/search_index.json"
    index = json.loads(found.read_text(encoding="utf-8"))
    index["config"]["lang"] = ["en", "ja"]  # Debian's MkDocs knows no Japanese, but the theme's search does
    (target / "search/index.js").write_text(f"{INDEX}{json.dumps(index, ensure_ascii=False, separators=(',', ':'))};\n", encoding="utf-8")
    found.unlink()


def can_build():
    return shutil.which("mkdocs") is not None and pathlib.Path("/usr/share/mkdocs/themes/material").exists()


def build(target):
    """Builds the site into a folder, which is replaced; what is wrong with it ends the program."""
    made = sources()
    entries = navigation(made)
    listed, there = list(pages_of(entries)), {name for name in made if name.endswith(".md")}
    if sorted(listed) != sorted(there):
        raise SystemExit(f"make_site: in NAVIGATION alone, or left out there: {', '.join(sorted(set(listed) ^ there))}")
    with tempfile.TemporaryDirectory() as folder:
        for name, content in made.items():
            path = pathlib.Path(folder, "src", name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)
        settings = pathlib.Path(folder, "mkdocs.yml")
        settings.write_text(configuration(folder, pathlib.Path(target).resolve(), entries), encoding="utf-8")
        built = subprocess.run(["mkdocs", "build", "--quiet", "--strict", "--clean", "-f", str(settings)], capture_output=True, text=True,
                               env={**os.environ, "SOURCE_DATE_EPOCH": "315532800", "PYTHONDONTWRITEBYTECODE": "1"})
        if built.returncode != 0:
            raise SystemExit(f"make_site: {built.stdout}{built.stderr}")
    finish(pathlib.Path(target))


def main():
    build(SITE)
    wrong = list(check_site.faults(SITE))
    print(*wrong, sep="\n", end="\n" if wrong else "")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
