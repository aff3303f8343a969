"""Reads the pages of a site as a browser does: every link leads to a file, and to a place in it, that is there; nothing is fetched
from elsewhere.

    python3 tools/check_site.py FOLDER
"""
import html.parser
import pathlib
import posixpath
import re
import sys
import urllib.parse

FETCHED = {"script": "src", "img": "src", "link": "href", "iframe": "src", "source": "src"}


class Page(html.parser.HTMLParser):
    """What a page links, in order, and what can be linked in it. Each link is (target, whether it stands in the text of the page)."""

    def __init__(self, text):
        super().__init__()
        self.links, self.fetched, self.places = [], [], {""}
        self.inside = False
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        found = dict(attributes)
        self.inside |= tag == "article"
        if "id" in found:
            self.places.add(found["id"])
        if tag == "a" and "href" in found:
            self.links.append((found["href"], self.inside))
        if tag in FETCHED and found.get(FETCHED[tag]):
            self.fetched.append(found[FETCHED[tag]])

    def handle_endtag(self, tag):
        self.inside &= tag != "article"


def pages(top):
    """{name below the folder: page}"""
    return {path.relative_to(top).as_posix(): Page(path.read_text(encoding="utf-8")) for path in sorted(pathlib.Path(top).rglob("*.html"))}


def resolved(name, target):
    """Where a link of a page leads: (name, place); None for another site."""
    parts = urllib.parse.urlsplit(target)
    if parts.scheme or parts.netloc:
        return None
    path = posixpath.normpath(posixpath.join(posixpath.dirname(name), urllib.parse.unquote(parts.path))) if parts.path else name
    return path, urllib.parse.unquote(parts.fragment)


def faults(top):
    """A sentence for each fault of the pages below a folder."""
    found = pages(top)
    for name, page in found.items():
        for target in [target for target, _ in page.links] + page.fetched:
            to = resolved(name, target)
            if to is None:
                if target in page.fetched:
                    yield f"{name}: {target} is fetched from elsewhere"
                continue
            path, place = to
            there = pathlib.Path(top, path)
            if path.startswith("../") or not there.exists():
                yield f"{name}: {target} leads nowhere"
            elif place and path in found and place not in found[path].places:
                yield f"{name}: {target} has no such place"
    for path in sorted(pathlib.Path(top).rglob("*.css")):
        for target in re.findall(r"(?:url\(|@import)\s*[\"']?(\w+://[^\"')]+)", path.read_text(encoding="utf-8")):
            yield f"{path.relative_to(top).as_posix()}: {target} is fetched from elsewhere"


if __name__ == "__main__":
    wrong = list(faults(sys.argv[1]))
    print(*wrong, sep="\n", end="\n" if wrong else "")
    sys.exit(1 if wrong else 0)
