#!/usr/bin/python3
"""Changes the pure code in one place at a time, and tells which changes no native test notices.

    ./dev mutants [FILE...] [--sample N [--seed S]] [--jobs N] [--write] [--fresh]

FILE is a part of a path below src/; without one all pure files are taken. Changes (mutants): a comparison's border
(< and <=, == and !=), && and ||, a number (one more, 0), a character (the next one), true and false, a condition of if
and ?: (negated), a statement (left out). A mutant is killed when a test fails, crashes or runs far longer than before.

A file is compiled once with all its mutants, each behind a question for its number (mutants.h), at -O1 and without
sanitizers. A run without a living mutant tells which tests come upon which; then only those run for each, the quick ones
first. What cannot ask at run time (constants, case labels) is compiled on its own, and all tests run. What survives is
compiled on its own too: where the compiler makes the same code as of the original, there is no change; else the tests
run again with that file under ASan and UBSan, as they do in ./dev test.

Kept in build/mutants/results.json: a kill as long as the file and the text of the test are the same; a survivor as long
as all tests are. mutants_explained.tsv beside this tool tells of survivors that change nothing that can be seen.
"""
import argparse
import bisect
import collections
import concurrent.futures
import hashlib
import json
import os
import pathlib
import random
import re
import resource
import shlex
import signal
import subprocess
import sys

from clang import cindex

import mutants_page

ROOT = pathlib.Path(__file__).resolve().parents[1]
BUILD = ROOT / "build/mutants"
WORK = BUILD / "work"
EXPLAINED = ROOT / "tools/mutants_explained.tsv"
QUICK_MS = 400          # of tests that run first
LONGEST_TABLE = 30      # literals of one list that are changed; of a longer one as many, evenly spread
NUMBERS_PER_FILE = 2000
COMPARISONS = {"<": ("<=", "Less"), "<=": ("<", "LessOrEqual"), ">": (">=", "More"), ">=": (">", "MoreOrEqual"),
               "==": ("!=", "Equal"), "!=": ("==", "Unequal")}
KIND = cindex.CursorKind
FUNCTIONS = {KIND.FUNCTION_DECL, KIND.CXX_METHOD, KIND.CONSTRUCTOR, KIND.DESTRUCTOR, KIND.FUNCTION_TEMPLATE,
             KIND.CONVERSION_FUNCTION}
DECLARATIONS = {KIND.VAR_DECL, KIND.FIELD_DECL}
ACTIONS = {KIND.CALL_EXPR, KIND.BINARY_OPERATOR, KIND.COMPOUND_ASSIGNMENT_OPERATOR, KIND.UNARY_OPERATOR,
           KIND.UNEXPOSED_EXPR, KIND.BREAK_STMT, KIND.CONTINUE_STMT, KIND.RETURN_STMT}


class Mutant:
    """One change: `text[start:end]` becomes `after`; `opening`, `middle`, `closing` ask for its number instead."""

    def __init__(self, start, end, after, wraps=None):
        self.start, self.end, self.after, self.wraps = start, end, after, wraps
        self.number = None

    def key(self, text):
        return f"{self.start}-{self.end}:{text[self.start:self.end]}>{self.after}"

    def applied(self, text):
        return text[:self.start] + self.after + text[self.end:]

    def lines(self, text):
        """The line number, and the line before and after (of a longer change the first line)."""
        first, last = text.rfind("\n", 0, self.start) + 1, text.find("\n", self.start)
        new = self.applied(text)
        return (text.count("\n", 0, self.start) + 1, text[first:last].strip(),
                new[first:new.find("\n", first)].strip())

    def excuse(self, text):
        """What a line of mutants_explained.tsv names it by: the line before and after, and which of equal ones it is."""
        number, before, after = self.lines(text)
        return mutants_page.placed(text, number, before), after


class Finder:
    """All mutants of one file; `wraps` of each is (start, opening, operator's place, middle, end, closing)."""

    def __init__(self, path, unit):
        self.path, self.text = str(path), path.read_text()
        self.found = []
        self.bare = re.sub(r"//.*", lambda comment: " " * len(comment[0]), self.text)
        self.results = set()  # places of the returns at the end of functions
        data = self.text.encode()
        assert len(data) == len(self.text), f"{path} is not ASCII"
        for child in unit.cursor.get_children():
            self.walk(child, None, False)

    def place(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def add(self, start, end, after, fixed, wraps):
        if not any((m.start, m.end, m.after) == (start, end, after) for m in self.found):
            self.found.append(Mutant(start, end, after, None if fixed else wraps))

    def walk(self, cursor, function, fixed, parent=None):
        kind = cursor.kind
        here = cursor.location.file and cursor.location.file.name == self.path
        if not here and kind not in (KIND.NAMESPACE, KIND.UNEXPOSED_DECL, KIND.LINKAGE_SPEC):
            return
        if kind == KIND.STATIC_ASSERT:
            return
        if here:
            start, end = self.place(cursor)
            head = self.text[start:end].split("{")[0].split("=")[0]
            if kind in FUNCTIONS:
                function = cursor
            if kind in FUNCTIONS or kind == KIND.LAMBDA_EXPR:
                for body in (c for c in cursor.get_children() if c.kind == KIND.COMPOUND_STMT):
                    self.results.update(c.extent.start.offset for c in list(body.get_children())[-1:]
                                        if c.kind == KIND.RETURN_STMT)
            if kind in (KIND.ENUM_DECL, KIND.CASE_STMT) or re.search(r"\b(constexpr|consteval|constinit)\b", head):
                fixed = fixed or kind in FUNCTIONS or kind in (KIND.VAR_DECL, KIND.ENUM_DECL)
            self.expression(cursor, kind, parent, fixed or function is None)
        children = list(cursor.get_children())
        if kind == KIND.INIT_LIST_EXPR and function is None and len(children) > LONGEST_TABLE:
            children = children[::-(-len(children) // LONGEST_TABLE)]
        for i, child in enumerate(children):
            if here:
                self.statement(kind, child, fixed)
            self.walk(child, function, fixed or kind == KIND.CASE_STMT and i == 0, kind)

    def expression(self, cursor, kind, parent, fixed):
        start, end = self.place(cursor)
        text = self.text[start:end]
        if kind in (KIND.BINARY_OPERATOR, KIND.CALL_EXPR):
            sides = list(cursor.get_arguments() if kind == KIND.CALL_EXPR else cursor.get_children())
            if len(sides) == 2 and all(sides):
                self.operator(sides, fixed)
        elif kind == KIND.INTEGER_LITERAL and self.text[start - 1] + self.text[end] == "[]" and parent in DECLARATIONS:
            return  # the length of an array: one more is room that nothing uses
        elif kind == KIND.INTEGER_LITERAL and (number := re.fullmatch(r"(0x[0-9A-Fa-f']+|\d[\d']*)([uUlLzZ]*)", text)):
            value = int(number[1].replace("'", ""), 0) if number[1] != "0" else 0
            wraps = (start, "mutants::Constant({}, ", None, "", end, ")")
            self.add(start, end, f"{value + 1}{number[2]}", fixed, wraps)
            if value != 0:
                self.add(start, end, f"0{number[2]}", fixed, wraps)
        elif kind == KIND.CHARACTER_LITERAL and re.fullmatch(r"'[ -~]'", text) and text[1] not in "&[~":
            self.add(start, end, f"'{chr(ord(text[1]) + 1)}'", fixed, (start, "mutants::Constant({}, ", None, "", end, ")"))
        elif kind == KIND.CXX_BOOL_LITERAL_EXPR and text in ("true", "false"):
            self.add(start, end, "false" if text == "true" else "true", fixed,
                     (start, "mutants::Condition({}, ", None, "", end, ")"))
        elif kind in (KIND.IF_STMT, KIND.CONDITIONAL_OPERATOR) and not re.match(r"if (constexpr|consteval)", text):
            self.condition(cursor, kind, fixed)

    def operator(self, sides, fixed):
        (start, left_end), (right_start, end) = self.place(sides[0]), self.place(sides[1])
        between = re.fullmatch(r"\s*(<=|>=|==|!=|<|>|&&|\|\|)\s*", self.text[left_end:right_start])
        if not between:
            return
        at, sign = left_end + between.start(1), between[1]
        if sign in COMPARISONS:
            after, name = COMPARISONS[sign]
            wraps = (start, f"mutants::{name}({{}}, ", (at, at + len(sign)), ",", end, ")")
        else:
            after, name = ("||", "And") if sign == "&&" else ("&&", "Or")
            wraps = (start, f"mutants::{name}({{}}, bool(", (at, at + 2), "), [&]() -> bool { return bool(", end, "); })")
        self.add(at, at + len(sign), after, fixed, wraps)

    def condition(self, cursor, kind, fixed):
        for child in list(cursor.get_children())[:3 if kind == KIND.IF_STMT else 1]:
            start, end = self.place(child)
            text = self.text[start:end]
            if kind == KIND.IF_STMT and not (self.text[:start].rstrip()[-1] in "(;" and self.text[end:].lstrip()[0] == ")"):
                continue
            if child.kind == KIND.DECL_STMT or (re.search("[=!]=", text) and not re.search(r"&&|\|\|", text)):
                continue  # the negation of a lone == is != already
            self.add(start, end, f"!({text})", fixed, (start, "mutants::Condition({}, bool(", None, "", end, "))"))
            return

    def statement(self, parent, child, fixed):
        """Leaves `child` out where it is a statement: in a block, or under an if, a loop or a case."""
        if parent not in (KIND.COMPOUND_STMT, KIND.IF_STMT, KIND.FOR_STMT, KIND.WHILE_STMT, KIND.CXX_FOR_RANGE_STMT,
                          KIND.CASE_STMT, KIND.DEFAULT_STMT) or child.kind not in ACTIONS:
            return
        start, end = self.place(child)
        before, behind = self.bare[:start].rstrip(), self.bare[end:].lstrip()
        if not behind.startswith(";") or not before.endswith(("{", "}", ";", ")", ":", "else")) or start in self.results:
            return
        if parent == KIND.FOR_STMT and before.endswith(";"):
            return
        self.add(start, end, "", fixed, (start, "if (mutants::IsAlive({})) ; else ", None, "", end, ""))


def sha(*parts):
    return hashlib.sha1("\0".join(parts).encode()).hexdigest()


def commands():
    """{file: its compiler command without output, warnings and input}"""
    found = {}
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        cut = words.index("-o")
        found[entry["file"]] = [w for w in words[:cut] if not w.startswith("-W")] + ["-w"]
    return found


class File:
    """A file with its mutants, and the units that are compiled anew for it: itself, or those that include a kernel."""

    def __init__(self, name, number, all_commands):
        self.name, self.path = name, ROOT / name
        self.text = self.path.read_text()
        self.units = [self.path]
        if name.endswith(".h"):
            self.units = [pathlib.Path(c) for c in sorted(all_commands) if c.startswith(str(ROOT / "src"))
                          and self.included_by(pathlib.Path(c))]
        self.commands = [all_commands[str(unit)] for unit in self.units]
        self.base = number * NUMBERS_PER_FILE + 1
        self.folder = WORK / name.replace("/", "-")
        self.folder.mkdir(parents=True, exist_ok=True)
        unit = cindex.Index.create().parse(str(self.units[0]), args=["-std=c++20", f"-I{ROOT}"])
        problems = [d.spelling for d in unit.diagnostics if d.severity >= cindex.Diagnostic.Error]
        assert not problems, (name, problems)
        self.mutants = Finder(self.path, unit).found
        assert len(self.mutants) < NUMBERS_PER_FILE, name
        self.hash = sha(self.text, *(subprocess.run([*command, "-E", "-P", unit], capture_output=True, text=True,
                                                    check=True).stdout for unit, command in zip(self.units, self.commands)))

    def included_by(self, unit):
        """True when the unit takes this header, itself or by another kernel header."""
        texts, seen = [unit.read_text()], set()
        while texts:
            for target in re.findall(r'#include "(src/[^"]+_kernel\.h)"', texts.pop()):
                if target not in seen:
                    seen.add(target)
                    texts.append((ROOT / target).read_text())
        return self.name in seen

    def compile(self, text, folder, *flags):
        """Objects of all units with `text` in place of the file, or the compiler's errors."""
        overlay = folder / self.name
        overlay.parent.mkdir(parents=True, exist_ok=True)
        overlay.write_text(text)
        objects = []
        for unit, command in zip(self.units, self.commands):
            source = overlay if unit == self.path else unit
            objects.append(folder / (unit.name + ".o"))
            done = subprocess.run([command[0], f"-I{folder}", *command[1:], *flags, "-c", source, "-o", objects[-1]],
                                  capture_output=True, text=True)
            if done.returncode != 0:
                return None, done.stderr
        return objects, ""

    def schema(self):
        """The object file with all mutants that can ask for their number; the others get no number."""
        kept, objects = self.folder / "schema.json", [self.folder / (unit.name + ".o") for unit in self.units]
        known = json.loads(kept.read_text()) if kept.exists() else {}
        fits = known.get("hash") == self.hash and known.get("base") == self.base and all(o.exists() for o in objects)
        wrapped = [m for m in self.mutants if m.wraps and (not fits or m.key(self.text) in known["wrapped"])]
        while True:
            numbers = {}
            for mutant in self.mutants:
                mutant.number = None
            for mutant in wrapped:  # both mutants of a number share one question
                place = numbers.setdefault(mutant.wraps, [])
                place.append(mutant)
            for i, place in enumerate(numbers.values()):
                for j, mutant in enumerate(place):
                    mutant.number = self.base + 2 * i + (j if mutant.after[:1] != "0" or len(place) == 2 else 1)
            if fits:
                return objects
            made, errors = self.compile(self.rewritten(numbers), self.folder, "-include", str(ROOT / "tools/mutants.h"))
            if made:
                break
            wrong = {int(line) for line in re.findall(rf"{re.escape(self.name)}:(\d+):", errors)}
            left = [m for m in wrapped if m.lines(self.text)[0] not in wrong]
            if len(left) == len(wrapped):
                print(f"{self.name}: compiled one by one; {errors[:600]}", file=sys.stderr)
                left = []
            wrapped = left
        kept.write_text(json.dumps({"hash": self.hash, "base": self.base, "wrapped": [m.key(self.text) for m in wrapped]}))
        return made

    def rewritten(self, numbers):
        pieces = []  # (place, order at the place, text, end of what it replaces)
        for i, (wraps, place) in enumerate(numbers.items()):
            start, opening, sign, middle, end, closing = wraps
            # Of what begins together the longer opens first, of what ends together it closes last.
            pieces.append((start, (1, -end, i), opening.format(self.base + 2 * i), start))
            pieces.append((end, (0, -start, -i), closing, end))
            if sign:
                pieces.append((sign[0], (2,), middle, sign[1]))
        out, at = [], 0
        for place, _, text, end in sorted(pieces):
            out += [self.text[at:place], text]
            at = end
        return "".join(out) + self.text[at:]


class Tests:
    """The test program: its tests with the hash of each one's text, and runs of it."""

    def __init__(self):
        self.program = BUILD / "native_tests"
        listed = WORK / "tests.json"
        subprocess.run([self.program, "--gtest_list_tests", f"--gtest_output=json:{listed}"], check=True, cwd=BUILD,
                       stdout=subprocess.DEVNULL)
        rows = [(f"{suite['name']}.{test['name']}", test["file"], int(test["line"]))
                for suite in json.loads(listed.read_text())["testsuites"] for test in suite["testsuite"]]
        begins = collections.defaultdict(set)
        for _, file, line in rows:
            begins[file].add(line)
        texts = {file: pathlib.Path(BUILD, file).read_text().split("\n") for file in begins}
        self.hashes = {}
        for name, file, line in rows:
            order = sorted(begins[file])
            following = bisect.bisect_right(order, line)
            end = order[following] - 1 if following < len(order) else None
            self.hashes[name] = sha("\n".join(texts[file][line - 1:end]))
        self.hash = sha(*(path.read_text() for path in sorted((ROOT / "tests").rglob("*"))
                          if path.suffix in (".cpp", ".h", ".inc") and not path.name.endswith("_win.cpp")))

    def run(self, names, seconds, library, number=0, **environment):
        """'' when all pass, the first failing test, "crash" or "time"; `seconds` of the processor's time."""
        def limit():
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            resource.setrlimit(resource.RLIMIT_CPU, (int(seconds) + 1, int(seconds) + 3))
            if "ASAN_OPTIONS" not in environment:
                resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
        preload = f"{environment.pop('LD_PRELOAD', '')} {library}".strip()
        try:
            done = subprocess.run([self.program, "--gtest_fail_fast", "--gtest_brief=1", "--gtest_filter=" + ":".join(names)],
                                  cwd=BUILD, capture_output=True, timeout=60 + 50 * seconds, preexec_fn=limit, stdin=subprocess.DEVNULL,
                                  env={**os.environ, "LD_PRELOAD": preload, "WFINFO_MUTANT": str(number), **environment})
        except subprocess.TimeoutExpired:
            return "time"
        if done.returncode == 0:
            return ""
        if done.returncode == -signal.SIGXCPU:
            return "time"
        failed = re.search(rb"\[  FAILED  \] ([\w/.]+)", done.stdout)
        return failed[1].decode() if failed else "crash"


def link(objects, library, *flags):
    subprocess.run(["g++", "-shared", *flags, *objects, "-o", library], check=True)
    return library


def without_shared_units(files):
    """The files in sets of which no two compile the same unit, as a kernel and its source file do."""
    sets = []
    for file in files:
        fitting = next((s for s in sets if not any(set(file.units) & set(f.units) for f in s)), None)
        if fitting is None:
            sets.append(fitting := [])
        fitting.append(file)
    return sets


def meet(files, tests, kept, jobs):
    """{file: {test: (milliseconds, numbers of the mutants that it comes upon)}}"""
    met = {f.name: {t: v for t, v in kept.get(f.name, {}).get("tests", {}).items() if v[0] == tests.hashes.get(t)}
           if kept.get(f.name, {}).get("hash") == sha(f.hash, str(f.base)) else {} for f in files}
    unknown = sorted(t for t in tests.hashes if any(t not in met[f.name] for f in files))
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        objects = [o for made in pool.map(File.schema, files) for o in made]
    if unknown:
        print(f"{len(unknown)} tests run once to see what they come upon", file=sys.stderr)
        library = link(objects, WORK / "all.so")

        def alone(test):
            """Each in its own process: what is worked out once is otherwise met by the first test only."""
            out = WORK / f"met-{sha(test)[:12]}.tsv"
            wrong = tests.run([test], 3600, library, WFINFO_MUTANTS_MET=str(out))
            assert wrong == "", f"without a living mutant: {wrong}"
            line = out.read_text().strip("\n")
            out.unlink()
            return line
        with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
            for line in pool.map(alone, unknown):
                test, ms, *numbers = line.split("\t")
                for f in files:
                    own = [int(n) for n in numbers if f.base <= int(n) < f.base + NUMBERS_PER_FILE]
                    met[f.name][test] = [tests.hashes[test], int(ms), own]
    for f in files:
        kept[f.name] = {"hash": sha(f.hash, str(f.base)), "tests": met[f.name]}
    return met


class Judge:
    def __init__(self, file, tests, met):
        self.file, self.tests = file, tests
        self.times = {test: row[1] for test, row in met.items()}
        self.by_number = collections.defaultdict(list)
        self.touching = {test for test, row in met.items() if row[2]}
        for test in self.touching:
            for number in met[test][2]:
                self.by_number[number].append(test)
        self.library = link(file.schema(), file.folder / "schema.so")
        self.original = self.last = None

    def run(self, names, library, number=0, first=None, **environment):
        """`first`, then those that come upon the file, the quick ones first; what killed the mutant, or ''."""
        groups = [[name for name in names if name == first]]
        names = [name for name in names if name != first]
        for part in ([t for t in names if t in self.touching], [t for t in names if t not in self.touching]):
            quick, slow, spent = [], [], 0
            for name in sorted(part, key=self.times.get):
                spent += self.times[name]
                (quick if spent <= QUICK_MS or not quick else slow).append(name)
            groups += [quick, slow]
        for group in groups:
            if group:
                before = sum(self.times[n] for n in group) / 1000
                seconds = 15 + 12 * before if "LD_PRELOAD" in environment else 2 + 4 * before
                if killer := self.tests.run(group, seconds, library, number, **environment):
                    return killer
        return ""

    def judge(self, mutant, first=None):
        """(state, killer): killed, survived, same (code), refused (by the compiler)."""
        # What cannot ask does not tell who comes upon it either; a table is read by any function of any file.
        names = self.by_number.get(mutant.number, []) if mutant.number else list(self.times)
        if mutant.number and names and (killer := self.run(names, self.library, mutant.number, first)):
            return "killed", killer
        folder = self.file.folder / f"alone-{mutant.start}-{sha(mutant.after)[:6]}"
        objects, _ = self.file.compile(mutant.applied(self.file.text), folder)
        try:
            if not objects:
                return "refused", ""
            if [o.read_bytes() for o in objects] == self.original:
                return "same", ""
            if not names:
                return "survived", "no test comes here"
            if not mutant.number and (killer := self.run(names, link(objects, folder / "alone.so"), first=first)):
                return "killed", killer
            names = [name for name in names if name in self.touching]  # only this file's own code is watched
            objects, _ = self.file.compile(mutant.applied(self.file.text), folder, "-fsanitize=address,undefined",
                                           "-fno-sanitize-recover=all")
            library = link(objects, folder / "asan.so", "-fsanitize=address,undefined")
            asan = subprocess.run(["g++", "-print-file-name=libasan.so"], capture_output=True, text=True).stdout.strip()
            killer = self.run(names, library, first=first, LD_PRELOAD=os.path.realpath(asan),
                              ASAN_OPTIONS="detect_leaks=0:hard_rss_limit_mb=3000:detect_odr_violation=0")
            return ("killed", killer) if killer else ("survived", "")
        finally:
            subprocess.run(["rm", "-rf", folder])

    def prepare(self):
        folder = self.file.folder / "original"
        objects, errors = self.file.compile(self.file.text, folder)
        assert objects, errors
        self.original = [o.read_bytes() for o in objects]


def explained():
    rows = [line.split("\t") for line in EXPLAINED.read_text().splitlines() if line and not line.startswith("#")]
    return {tuple(row[:3]): row[3] for row in rows}


def valid(row, file, tests, is_explained):
    if not row or row["file"] != file.hash:
        return False
    if row["state"] == "survived" and is_explained:
        return True
    if row["state"] == "killed" and row["killer"] in tests.hashes:
        return row["text"] == tests.hashes[row["killer"]]
    return row["state"] in ("same", "refused") or row["tests"] == tests.hash


def examine(file, tests, met, results, options):
    judge = Judge(file, tests, met)
    mutants = file.mutants
    if options.sample and options.sample < len(mutants):
        mutants = random.Random(f"{options.seed} {file.name}").sample(mutants, options.sample)
    rows = results.setdefault(file.name, {})
    known = explained()
    waiting = [m for m in mutants if not valid(rows.get(m.key(file.text)), file, tests,
                                               (file.name, *m.excuse(file.text)) in known)]
    if waiting:
        judge.prepare()

    def one(mutant):
        before = rows.get(mutant.key(file.text), {})
        # Where no test is known to come, what killed the last one may kill this one too.
        state, killer = judge.judge(mutant, before.get("killer") or (None if mutant.number else judge.last))
        if killer in tests.hashes:
            judge.last = killer
        return mutant, {"file": file.hash, "state": state, "killer": killer, "text": tests.hashes.get(killer, ""),
                        "tests": tests.hash}
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for mutant, row in pool.map(one, waiting):
            rows[mutant.key(file.text)] = row
    keys = {m.key(file.text) for m in file.mutants}
    results[file.name] = {k: v for k, v in rows.items() if k in keys}
    count, survivors = collections.Counter(), []
    for mutant in sorted(mutants, key=lambda m: m.start):
        row = rows[mutant.key(file.text)]
        number, before, after = mutant.lines(file.text)
        state = row["state"]
        if state == "survived" and (file.name, *mutant.excuse(file.text)) in known:
            state = "explained"
        count[state] += 1
        if state == "survived":
            survivors.append((number, before, after, row["killer"]))
    return count, survivors


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="*")
    parser.add_argument("--sample", type=int, help="at most so many mutants of each file")
    parser.add_argument("--seed", default="1")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 2, help="test programs at a time")
    parser.add_argument("--write", action="store_true", help="the table of docs/reliability.md")
    parser.add_argument("--fresh", action="store_true", help="forget earlier results of these files")
    options = parser.parse_args()
    WORK.mkdir(parents=True, exist_ok=True)
    everything = list(mutants_page.texts())
    chosen = [n for n in everything if not options.files or any(f in n for f in options.files)]
    if not chosen:
        sys.exit(f"no pure file has {' or '.join(options.files)} in its path")
    store = BUILD / "results.json"
    kept = json.loads(store.read_text()) if store.exists() else {"met": {}, "results": {}}
    for name in chosen if options.fresh else []:
        for part in ("met", "results"):
            kept[part].pop(name, None)
    all_commands, tests = commands(), Tests()
    files = [File(name, everything.index(name), all_commands) for name in chosen]
    met = {}
    for some in without_shared_units(files):
        met |= meet(some, tests, kept["met"], options.jobs)
    for file in files:
        count, survivors = examine(file, tests, met[file.name], kept["results"], options)
        kept.setdefault("summary", {})[file.name] = {"text": sha(file.text), "count": count, "of": len(file.mutants)}
        print(f"{file.name}: {sum(count.values())} mutants, {count['killed']} killed, {count['survived']} survived, "
              f"{count['explained']} explained, {count['same']} of the same code, {count['refused']} not compiled: "
              f"{mutants_page.score(count):.1f} %")
        for number, before, after, why in survivors:
            print(f"  {file.name}:{number}:{' (' + why + ')' if why else ''}\n    - {before}\n    + {after}", flush=True)
        store.with_suffix(".new").write_text(json.dumps(kept))
        store.with_suffix(".new").replace(store)
    if options.write:
        page = mutants_page.PAGE
        page.write_text(mutants_page.written(page.read_text(), kept["summary"], mutants_page.texts()))


if __name__ == "__main__":
    main()
