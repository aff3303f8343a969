"""The house is as planned: floors, the form of includes, one export file a family, links, comments, format."""
import collections
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import house  # noqa: E402

NAMES = house.repository_files()
CODE = [name for name in NAMES if name.endswith((".cpp", ".h", ".c", ".rc", ".def", ".inc"))]


def hand_rows():
    """{family: names of its exports that are written by hand}"""
    rows = {}
    for name in NAMES:
        if re.fullmatch(r"catalogue/(?!all)\w+\.def", name):
            rows[pathlib.Path(name).stem] = re.findall(r"^HAND\w*\(\w+, (\w+),", house.read(name), re.M)
    return rows


class Floors(unittest.TestCase):
    def test_every_room_stands_on_a_floor(self):
        rooms = {house.room(name) for name in house.sources(NAMES, "src/", "host/")}
        self.assertEqual(rooms, set(house.FLOOR))

    def test_no_arrow_runs_up_or_along_a_floor(self):
        wrong = []
        for name in house.sources(NAMES, "src/", "host/"):
            own = house.room(name)
            for target in house.includes(name):
                other = house.room(target)
                if other == own or not target.startswith(("src/", "host/")):
                    continue
                if own.split("/")[0] != other.split("/")[0]:
                    if own.startswith("src/") or not house.HOST_MAY_TAKE.match(target):
                        wrong.append(f"{name} takes {target} of the other house")
                elif house.FLOOR[other] >= house.FLOOR[own]:
                    wrong.append(f"{name} (floor {house.FLOOR[own]}) takes {target} (floor {house.FLOOR[other]})")
        self.assertEqual(wrong, [])

    def test_library_and_host_take_nothing_of_tests_and_tools(self):
        wrong = [f"{name}: {target}" for name in house.sources(NAMES, "src/", "host/") for target in house.includes(name)
                 if not target.startswith(("src/", "host/", "resources/", "catalogue/"))]
        self.assertEqual(wrong, [])

    def test_only_the_catalogue_expands_the_rows(self):
        wrong = [name for name in house.sources(NAMES, "src/", "host/")
                 if not name.startswith(("src/catalogue/", "src/entry/")) and any(t.startswith("catalogue/") for t in house.includes(name))]
        self.assertEqual(wrong, [])


class Names(unittest.TestCase):
    def test_includes_are_written_from_the_root(self):
        wrong = []
        for name in CODE:
            for target in house.includes(name):
                if target in house.GENERATED:
                    continue
                if not target.startswith(house.INCLUDE_ROOTS) or not (house.SOURCE / target).is_file():
                    wrong.append(f"{name}: {target}")
        self.assertEqual(wrong, [])

    def test_no_source_is_longer_than_600_lines(self):
        for name in NAMES:
            if name.endswith((".cpp", ".h", ".c", ".py", ".def")):
                with self.subTest(name):
                    self.assertLessEqual(house.read(name).count("\n"), 600)

    def test_nothing_strays_in_the_root(self):
        self.assertEqual({name.split("/")[0] for name in NAMES} - house.IN_THE_ROOT, set())

    def test_each_family_has_one_export_file_of_its_name(self):
        files = collections.defaultdict(list)
        for name in NAMES:
            if name.startswith("src/") and name.endswith("_export.cpp"):
                files[pathlib.Path(name).name.removesuffix("_export.cpp")].append(name)
        families = {family for family, exports in hand_rows().items() if exports}
        self.assertEqual(set(files), families, "a file without a family, or a family without a file")
        self.assertEqual([paths for paths in files.values() if len(paths) > 1], [])

    def test_each_export_stands_in_the_file_of_its_family(self):
        rows = hand_rows()
        self.assertGreater(sum(map(len, rows.values())), 100)
        texts = {name: house.read(name) for name in NAMES if name.startswith("src/") and name.endswith("_export.cpp")}
        wrong = []
        for family, exports in rows.items():
            for export in exports:
                # A definition, or a row of a macro that makes one: the name at the head of a line that is not indented.
                defined = re.compile(rf"^\w[^\n;={{(]*\b{export}\(|^[A-Z_]+\((?:\w+, )?{export}\b", re.M)
                places = [name for name, text in texts.items() if defined.search(text)]
                if [pathlib.Path(place).name for place in places] != [f"{family}_export.cpp"]:
                    wrong.append(f"{export} of {family}.def: {places}")
        self.assertEqual(wrong, [])

    def test_tests_of_exports_have_the_name_of_their_family(self):
        families = hand_rows().keys()
        wrong = []
        for name in NAMES:
            match = re.fullmatch(r"tests/dll/(\w+)_test\.cpp", name)
            if match and not any(match[1] == family or match[1].startswith(family + "_") for family in families):
                wrong.append(name)
        self.assertEqual(wrong, [])

    def test_each_export_written_by_hand_is_named_in_a_test_of_its_family(self):
        wrong = []
        for family, exports in hand_rows().items():
            tests = [name for name in NAMES if re.fullmatch(rf"tests/dll/{family}(_\w+)?_test\.cpp", name)]
            words = set(re.findall(r"\w+", " ".join(house.read(name) for name in tests)))
            wrong += [f"{family}: {export}" for export in exports if export not in words]
        self.assertEqual(wrong, [])


class Documents(unittest.TestCase):
    PAGES = [name for name in NAMES if name.endswith(".md")]

    @staticmethod
    def anchors(name):
        found = set()
        for heading in re.findall(r"^#+ (.+)$", house.read(name), re.M):
            text = re.sub(r"[^\w\- ]", "", heading.strip().lower())
            found.add(text.replace(" ", "-"))
        return found

    def test_links_lead_somewhere(self):
        wrong = []
        for name in self.PAGES:
            for target in re.findall(r"\]\(([^)\s]+)\)", house.read(name)):
                if re.match(r"\w+:|(\.\./)?out/", target):  # elsewhere, or built
                    continue
                path, _, anchor = target.partition("#")
                page = (pathlib.Path(name).parent / path).as_posix() if path else name
                page = str(pathlib.PurePosixPath(re.sub(r"[^/.]+/\.\./", "", page)))
                if not (house.SOURCE / page).exists():
                    wrong.append(f"{name}: {target}")
                elif anchor and page.endswith(".md") and anchor not in self.anchors(page):
                    wrong.append(f"{name}: {target} (no such heading)")
        self.assertEqual(wrong, [])

    def test_files_that_are_named_exist(self):
        wrong = []
        for name in self.PAGES:
            if name == "CHANGELOG.md":
                continue  # tells of files as they were
            for path in re.findall(r"`((?:src|host|tests|tools|docs|catalogue|fuzz|bench|resources|samples|cmake)/[^`\s]*)`",
                                   house.read(name)):
                pattern = re.sub(r"<[^>]+>|(?<![A-Z])(?:NAME|FAMILY)(?![A-Z])", "*", path).rstrip("/")
                if not (house.SOURCE / pattern).exists() and not list(house.SOURCE.glob(pattern)):
                    wrong.append(f"{name}: {path}")
        self.assertEqual([line for line in wrong if "host/wrenfold.exe" not in line], [])


    def test_families_have_the_pages_that_the_architecture_says(self):
        table = house.read("docs/architecture.md").split("| families | page |\n|---|---|\n")[1].split("\n\n")[0]
        families = {pathlib.Path(name).stem for name in NAMES if name.startswith("catalogue/")}
        for line in table.splitlines():
            listed, pages = line.strip("| ").split(" | ")
            exports = {family: re.findall(r"^[A-Z_]+\((?:\w+, )?(\w+)", house.read(f"catalogue/{family}.def"), re.M)
                       for family in listed.split(", ") if family in families}
            self.assertEqual(set(listed.split(", ")) - families, set())
            text = " ".join(house.read(f"docs/{page}") for page in re.findall(r"\((\S+\.md)\)", pages))
            words = set(re.findall(r"\w+", text))
            for family, names in exports.items():
                with self.subTest(family):
                    self.assertTrue(words & set(names), "no export of it is named in its page")


class Picture(unittest.TestCase):
    def test_the_picture_of_the_house_is_drawn_from_the_includes(self):
        drawn = subprocess.run([sys.executable, str(house.SOURCE / "tools/draw_architecture.py")], capture_output=True,
                               text=True, check=True, env={**os.environ, "PYTHONDONTWRITEBYTECODE": "1"}).stdout
        self.assertTrue(drawn == house.read("docs/architecture.svg"),
                        "run ./dev docs")


class Comments(unittest.TestCase):
    def test_no_comment_ends_in_a_line_of_one_word(self):
        # What a formatter leaves that breaks lines: a full line, and behind it one of a single word.
        wrong = []
        for name in CODE:
            if not name.endswith((".cpp", ".h", ".c")):
                continue
            before = ""
            for number, line in enumerate(house.read(name).splitlines(), 1):
                if re.fullmatch(r"\s*// \S+", line) and re.match(r"\s*//", before) and len(before) > 85:
                    wrong.append(f"{name}:{number}: {line.strip()}")
                before = line
        self.assertEqual(wrong, [])


class Format(unittest.TestCase):
    @unittest.skipIf(shutil.which("clang-format-14") is None, "clang-format-14 is not installed")
    def test_every_source_has_the_house_format(self):
        names = [name for name in NAMES if name.endswith((".cpp", ".h", ".c"))]
        self.assertGreater(len(names), 300)
        result = subprocess.run(["clang-format-14", "--dry-run", "-Werror", *names], cwd=house.SOURCE, capture_output=True,
                                text=True)
        wrong = sorted(set(re.findall(r"^(\S+?):\d+:", result.stderr, re.M)))
        self.assertEqual(wrong, [], "run ./dev format")


if __name__ == "__main__":
    unittest.main()
