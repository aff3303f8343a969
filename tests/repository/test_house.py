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

sys.path.insert(0, str(house.SOURCE / "tools"))
import document_exports as exports  # noqa: E402
import document_functions as functions  # noqa: E402

NAMES = house.repository_files()
WIDTH = int(re.search(r"^ColumnLimit: (\d+)", house.read(".clang-format"), re.M)[1])
HELPER_LINES = 8
CODE = [name for name in NAMES if name.endswith((".cpp", ".h", ".c", ".rc", ".def", ".inc"))]


def rows_like(pattern):
    """{family: what the pattern finds in its file}"""
    return {pathlib.Path(name).stem: re.findall(pattern, house.read(name), re.M)
            for name in NAMES if re.fullmatch(r"catalogue/(?!all)\w+\.def", name)}


def all_rows():
    """{family: names of its exports}"""
    return rows_like(r"^(?!FAMILY)[A-Z_]+\((?:(?:Int|Int32|UInt32|Str|OptStr|Handle|Void), )?(\w+),")


def hand_rows():
    """{family: names of its exports that are written by hand}"""
    return rows_like(r"^HAND\w*\(\w+, (\w+),")


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

    def test_services_know_nothing_of_each_other(self):
        # What several of them do stands in host/shared/.
        wrong = []
        for name in house.sources(NAMES, "host/services/"):
            others = {"host/services/services_win.h", name.replace(".cpp", ".h")}
            wrong += [f"{name} takes {target}" for target in house.includes(name)
                      if target.startswith("host/services/") and target not in others]
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
                # A sample is copied with what stands beside it.
                beside = name.startswith("samples/") and (house.SOURCE / name).with_name(target).is_file()
                if beside or target in house.GENERATED:
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

    def test_export_files_hold_exports_and_little_else(self):
        # A helper that checks or asks is at most a few lines; a class or real work is in a file that says its subject.
        wrong = []
        for name in NAMES:
            if not name.endswith("_export.cpp"):
                continue
            anonymous = re.findall(r"^namespace \{$(.*?)^\}  // namespace$", house.read(name), re.M | re.S)
            text = "\n".join(anonymous)
            wrong += [f"{name}: {found}" for found in re.findall(r"^(?:class|struct|union) \w+", house.read(name), re.M)]
            for function in re.findall(r"^(?=[^\s/}#])(?!constexpr|constinit|enum|template|using)(.*?)^\}$", text, re.M | re.S):
                lines = function[function.index("{\n"):].count("\n") - 1 if "{\n" in function else 0
                if lines > HELPER_LINES:
                    wrong.append(f"{name}: {lines} lines in {function.strip().splitlines()[0]}")
        self.assertEqual(wrong, [])

    def test_export_files_say_first_what_they_hold(self):
        wrong = [name for name in NAMES if name.endswith("_export.cpp") and not house.read(name).startswith("// ")]
        self.assertEqual(wrong, [])

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
    FOLDERS = sorted({name.split("/")[0] for name in NAMES if "/" in name})

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
            for path in re.findall(rf"`((?:{'|'.join(map(re.escape, self.FOLDERS))})/[^`\s]*)`", house.read(name)):
                pattern = re.sub(r"<[^>]+>|(?<![A-Z])(?:NAME|FAMILY)(?![A-Z])", "*", path).rstrip("/")
                if not (house.SOURCE / pattern).exists() and not list(house.SOURCE.glob(pattern)):
                    wrong.append(f"{name}: {path}")
        self.assertEqual([line for line in wrong if "host/wrenfold.exe" not in line], [])

    def test_the_page_of_a_family_names_each_of_its_exports(self):
        pages = exports.pages()
        self.assertEqual(set(pages) - set(all_rows()), set())
        for family, page in pages.items():
            with self.subTest(family):
                self.assertEqual([name for name in all_rows()[family] if f"`{name}`" not in house.read(page)], [])

    def test_the_tables_of_exports_are_those_of_the_rows(self):
        for page in set(exports.pages().values()):
            with self.subTest(page):
                self.assertTrue(exports.documented(page) == house.read(page), "run ./dev docs")

    def test_the_table_of_the_hosts_functions_is_that_of_their_rows(self):
        self.assertTrue(functions.documented(house.read(functions.PAGE)) == house.read(functions.PAGE), "run ./dev docs")


class Picture(unittest.TestCase):
    def test_the_picture_of_the_house_is_drawn_from_the_includes(self):
        drawn = subprocess.run([sys.executable, str(house.SOURCE / "tools/draw_architecture.py")], capture_output=True,
                               text=True, check=True, env={**os.environ, "PYTHONDONTWRITEBYTECODE": "1"}).stdout
        self.assertTrue(drawn == house.read("docs/architecture.svg"),
                        "run ./dev docs")


class Comments(unittest.TestCase):
    def test_no_line_of_the_code_is_wider_than_the_format(self):
        # The formatter breaks code, and leaves comments as they are.
        wide = [f"{name}:{number}" for name in house.sources(NAMES, "src/", "host/", "bench/", "fuzz/")
                for number, line in enumerate(house.read(name).splitlines(), 1) if len(line) > WIDTH]
        self.assertEqual(wide, [])

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
    def test_no_text_is_torn(self):
        # What the formatter leaves that breaks a long text: a full line, a few words, and the rest, which it does not join.
        wrong = []
        for name in CODE:
            lines = house.read(name).splitlines()
            for number, (before, line, behind) in enumerate(zip(lines, lines[1:], lines[2:]), 2):
                piece, word = re.fullmatch(r'\s*(?:u8)?"[^"\\]*"', line), re.match(r'\s*(?:u8)?"([^" ]*)', behind)
                if piece and word and before.endswith('"') and len(before) > 80 and len(line) + len(word[1]) < WIDTH - 10:
                    wrong.append(f"{name}:{number}: {line.strip()}")
        self.assertEqual(wrong, [], "join the pieces, and run ./dev format")

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
