"""The rows of the speed table: each names benchmarks that there are, and the page shows what was measured."""
import json
import os
import pathlib
import re
import sys
import unittest

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))
sys.path.insert(0, str(SOURCE / "tools"))
import bench  # noqa: E402


def named_in(source):
    """What a benchmark program defines: functions, and those that are given cases as "function/case"."""
    plain = set(re.findall(r"^\s*BENCHMARK\((\w+)\)", source, re.M))
    cases = {f"{function}/{case}" for function, case in re.findall(r"^\s*BENCHMARK_CAPTURE\((\w+), (\w+)", source, re.M)}
    printed = set(re.findall(r'report\.\w+\("([^"]+)"', source))
    return plain | cases | printed


def is_defined(name, defined):
    # Behind the function and its case stand the arguments.
    return any(name == one or name.startswith(one + "/") for one in defined)


class Rows(unittest.TestCase):
    rows = bench.all_rows()

    def test_every_row_names_benchmarks_that_there_are(self):
        self.assertGreater(len(self.rows), 50)
        unknown = []
        for program, names in bench.benchmarks(self.rows).items():
            paths = [SOURCE / f"bench/bench_{program}.cpp", SOURCE / f"bench/windows/{program}.cpp"]
            found = [path for path in paths if path.exists()]
            defined = named_in(found[0].read_text(encoding="utf-8")) if found else set()
            unknown += [f"{program}:{name}" for name in names if not is_defined(name, defined)]
        self.assertEqual(unknown, [])

    def test_every_row_says_what_it_is_against_and_stands_once(self):
        said = [(row.work, row.against) for row in self.rows]
        self.assertEqual([one for one in said if not all(one)], [])
        self.assertEqual(sorted(said), sorted(set(said)))

    def test_a_row_without_a_benchmark_says_so(self):
        for row in self.rows:
            if row.ours == "-":
                self.assertEqual(row.peer, "-")
                self.assertEqual(bench.verdict(row, None), "no benchmark yet")

    def test_each_program_is_one_that_the_command_runs(self):
        usage = (SOURCE / "tools/dev_help.txt").read_text(encoding="utf-8")
        for program in bench.benchmarks(self.rows):
            self.assertRegex(usage, rf"\b{program}\b")


class Page(unittest.TestCase):
    page = (SOURCE / bench.PAGE).read_text(encoding="utf-8")
    measured = json.loads((SOURCE / bench.MEASURED).read_text(encoding="utf-8"))

    def test_the_page_shows_all_rows_and_what_was_measured(self):
        self.assertTrue(bench.documented(self.page, bench.all_rows(), self.measured) == self.page, "run ./dev docs")
        shown = re.findall(r"^\|", self.page.split(bench.FIRST)[1].split(bench.LAST)[0], re.M)
        self.assertEqual(len(shown), 2 + len(bench.all_rows()))

    def test_no_other_page_keeps_figures_of_its_own(self):
        others = [path for path in (SOURCE / "docs").glob("*.md") if path.name != "speed.md"]
        figures = re.compile(r"\d (?:%|times|GB/s) .*\b(?:GMime|iconv|memchr|libcsv|simdjson|strftime)\b")
        self.assertEqual([path.name for path in others if figures.search(path.read_text(encoding="utf-8"))], [])


class Judging(unittest.TestCase):
    def test_a_figure_is_judged_as_it_is_shown(self):
        times = {"a:ours": {"ns": 20.0, "bytes_per_s": 2e9}, "a:peer": {"ns": 100.0}, "a:size": {"bytes": 400_896}}
        cases = [
            ("a:ours", "a:peer", "times", "5", 5.0, "reached"),
            ("a:ours", "a:peer", "times", "5.1", 5.0, "**missed**"),
            ("a:ours", "a:peer", "times", "-", 5.0, ""),
            ("a:ours", "a:peer", "percent", "600", 500.0, "**missed**"),
            ("a:peer", "a:ours", "long", "5", 5.0, "reached"),
            ("a:peer", "a:ours", "long", "4.9", 5.0, "**missed**"),
            ("a:ours", "a:peer", "share", "20", 20.0, "reached"),
            ("a:ours", "-", "ns", "19", 20.0, "**missed**"),
            ("a:ours", "-", "GB/s", "2", 2.0, "reached"),
            ("a:size", "-", "KB", "400", 400.896, "**missed**"),
            ("a:ours", "a:gone", "times", "1", None, "not measured"),
            ("a:ours", "-", "times", "1", None, "not measured"),
            ("-", "-", "times", "1", None, "no benchmark yet"),
        ]
        for ours, peer, kind, aim, value, said in cases:
            row = bench.Row("work", "against", ours, peer, kind, aim)
            got = bench.figure(row, times)
            self.assertEqual((got, bench.verdict(row, got)), (value, said), (ours, peer, kind, aim))

    def test_the_least_time_counts_and_means_of_many_runs_do_not(self):
        times = {}
        runs = [{"name": "f/1", "run_name": "f/1", "run_type": "iteration", "cpu_time": time, "time_unit": "us"} for time in (3, 2, 4)]
        mean = {"name": "f/1_mean", "run_name": "f/1", "run_type": "aggregate", "cpu_time": 1, "time_unit": "us"}
        items = {"name": "g", "cpu_time": 5, "time_unit": "ms", "items_per_second": 1e6}
        bench.taken({"benchmarks": runs + [mean, items]}, times, "p")
        self.assertEqual(times, {"p:f/1": {"ns": 2000.0}, "p:g": {"ns": 1000.0}})

    def test_a_row_without_its_work_goes_on_with_the_one_above(self):
        rows = bench.read_rows("# a comment\nwork\tone\tp:f\t-\tns\t1\n\ttwo\tp:f\tp:g\ttimes\t-\n")
        self.assertEqual([row.work for row in rows], ["work", "work"])
        self.assertIn("| | two |", bench.table(rows, {}))
        with self.assertRaises(bench.NotMeasured):
            bench.read_rows("work\tone\tp:f\t-\tmiles\t1\n")


if __name__ == "__main__":
    unittest.main()
