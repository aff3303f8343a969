"""./dev bench: runs the benchmarks that bench/rows.tsv names and shows what each row came to.

bench.py [PROGRAM] [--json FILE] [--write]    PROGRAM: address, convert, csv, ...; all of them unless told otherwise
bench.py --page                               docs/speed.md from what was measured last, without measuring

Each program runs in several rounds, in each of which the repetitions of all its benchmarks take turns; of every
benchmark the least time counts, since other processes only ever add to it. All run on one core. --write keeps the times in
bench/measured.json and writes the table of docs/speed.md from them: a test compares the two. It also writes that page's table of
sizes."""
import argparse
import collections
import datetime
import json
import os
import pathlib
import re
import subprocess
import sys

import size_by_origin

ROOT = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[1]))
ROWS, MEASURED, PAGE = "bench/rows.tsv", "bench/measured.json", "docs/speed.md"
ROUNDS, REPETITIONS = 3, 3

Row = collections.namedtuple("Row", "work against ours peer kind aim")
AT_LEAST, AT_MOST = ("times", "percent", "GB/s"), ("long", "share", "ns", "us", "ms", "KB")
TIMES = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
ALONE = ("ns", "us", "ms", "GB/s", "KB")  # measured against nothing


class NotMeasured(Exception):
    """Why there is no table."""


def read_rows(text):
    rows, work = [], ""
    for line in text.splitlines():
        if not line or line.startswith("#"):
            continue
        row = Row(*line.split("\t"))
        if row.kind not in AT_LEAST + AT_MOST:
            raise NotMeasured(f"{ROWS}: there is no kind {row.kind}")
        work = row.work or work
        rows.append(row._replace(work=work))
    return rows


def all_rows():
    return read_rows((ROOT / ROWS).read_text(encoding="utf-8"))


def benchmarks(rows):
    """The names that the rows mention, by program."""
    named = collections.defaultdict(set)
    for row in rows:
        for name in (row.ours, row.peer):
            if name != "-":
                program, _, benchmark = name.partition(":")
                named[program].add(benchmark)
    return named


# --- Judging -----------------------------------------------------------------------------------------------

def figure(row, times):
    """What a row came to, or None when something was not measured."""
    ours, peer = times.get(row.ours), times.get(row.peer)
    if ours is None or (peer is None and row.kind not in ALONE):
        return None
    if row.kind in ("times", "percent"):
        return peer["ns"] / ours["ns"] * (100 if row.kind == "percent" else 1)
    if row.kind in ("long", "share"):
        return ours["ns"] / peer["ns"] * (100 if row.kind == "share" else 1)
    if row.kind == "GB/s":
        return ours["bytes_per_s"] / 1e9
    if row.kind == "KB":
        return ours["bytes"] / 1000
    return ours["ns"] / TIMES[row.kind]


def rounded(value):
    """Two digits, as they are shown and judged; all digits in front of the point."""
    return float(f"{value:.2g}") if value < 100 else float(round(value))


def number(value):
    return f"{value:g}" if value < 100_000 else f"{value:,.0f}"


UNITS = {"times": " times", "percent": " %", "share": " % of the time", "long": " times as long", "ns": " ns",
         "us": " \u00b5s", "ms": " ms", "GB/s": " GB/s", "KB": " KB"}


def verdict(row, value):
    if row.ours == "-":
        return "no benchmark yet"
    if value is None:
        return "not measured"
    if row.aim == "-":
        return ""
    good = rounded(value) >= float(row.aim) if row.kind in AT_LEAST else rounded(value) <= float(row.aim)
    return "reached" if good else "**missed**"


def shown_time(name, times):
    one = times.get(name)
    if one is None or "ns" not in one:
        return ""
    for unit, size in (("s", 1e9), ("ms", 1e6), ("\u00b5s", 1e3)):
        if one["ns"] >= size:
            return f"{one['ns'] / size:.3g} {unit}"
    return f"{one['ns']:.3g} ns"


def table(rows, times):
    lines = ["| Work | Against | Ours | Peer | Ratio | Aim | |", "|---|---|---|---|---|---|---|"]
    work = None
    for row in rows:
        value = figure(row, times)
        lines.append("| " + " | ".join([
            row.work if row.work != work else "", row.against, shown_time(row.ours, times), shown_time(row.peer, times),
            number(rounded(value)) + UNITS[row.kind] if value is not None else "",
            row.aim + UNITS[row.kind] if row.aim != "-" else "", verdict(row, value)]) + " |")
        work = row.work
    return re.sub(r" {2,}", " ", "\n".join(lines))


# --- The page ----------------------------------------------------------------------------------------------

FIRST, LAST = "<!-- speed: written by ./dev bench --write -->", "<!-- end of speed -->"


def documented(page, rows, measured):
    if page.count(FIRST) != 1 or page.count(LAST) != 1:
        raise NotMeasured(f"{PAGE} has no marks around its table")
    machine = measured["machine"]
    text = (f"Measured on {measured['date']} on {machine['processor']}, {machine['cores']} cores, load "
            f"{measured['load']}, in one run of `./dev bench`.\n\n{table(rows, measured['times'])}")
    before, rest = page.split(FIRST)
    return f"{before}{FIRST}\n\n{text}\n\n{LAST}{rest.split(LAST)[1]}"


def write_page(measured):
    page = ROOT / PAGE
    page.write_text(documented(page.read_text(encoding="utf-8"), all_rows(), measured), encoding="utf-8")


# --- Measuring ---------------------------------------------------------------------------------------------

def taken(report, times, program):
    """Adds what a program reported (JSON in the form of Google Benchmark) to the least times."""
    for one in report["benchmarks"]:
        if one.get("run_type") == "aggregate" or one.get("error_occurred"):
            continue
        name = f"{program}:{one.get('run_name', one['name'])}"
        kept = times.setdefault(name, {})
        if "bytes" in one:  # a size
            kept["bytes"] = one["bytes"]
            continue
        ns = one["cpu_time"] * TIMES[one["time_unit"]]
        if "items_per_second" in one:  # one run works on many
            ns = 1e9 / one["items_per_second"]
        kept["ns"] = min(ns, kept.get("ns", ns))
        if "bytes_per_second" in one:
            kept["bytes_per_s"] = max(one["bytes_per_second"], kept.get("bytes_per_s", 0))


def run(program, names):
    native, windows = ROOT / f"build/bench/bench_{program}", ROOT / f"build/windows/{program}.exe"
    if native.exists():
        only = "|".join(re.escape(name).replace("\\-", "-") for name in sorted(names))
        command = [str(native), f"--benchmark_filter=^({only})$", "--benchmark_format=json", "--benchmark_min_time=0.1",
                   f"--benchmark_repetitions={REPETITIONS}", "--benchmark_enable_random_interleaving=true"]
    elif windows.exists() and os.environ.get("WINEPREFIX"):
        command = ["wine", str(windows)]
    else:
        return None
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})  # of the children, which take it over
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          cwd=pathlib.Path(command[-1] if command[0] == "wine" else command[0]).parent)
    if done.returncode != 0:
        raise NotMeasured(f"{command[0]} failed: {done.stderr.strip()}")
    return json.loads(done.stdout)


def measure(rows):
    times = {}
    load = os.getloadavg()[0]
    for program, names in sorted(benchmarks(rows).items()):
        for turn in range(ROUNDS):
            print(f"{program}: round {turn + 1} of {ROUNDS}", file=sys.stderr)
            report = run(program, names)
            if report is None:
                print(f"{program}: cannot be run here", file=sys.stderr)
                break
            taken(report, times, program)
    missing = {row.ours for row in rows if row.ours != "-" and row.ours.split(":")[0] in
               {name.split(":")[0] for name in times}} - set(times)
    if missing:
        raise NotMeasured(f"{ROWS} names benchmarks that there are not: {', '.join(sorted(missing))}")
    return {"date": datetime.date.today().isoformat(), "load": f"{load:.1f}", "machine": machine(),
            "times": {name: {key: float(f"{value:.4g}") for key, value in sorted(one.items())}
                      for name, one in sorted(times.items())}}


def machine():
    names = re.findall(r"^model name\s*:\s*(.*?)\s*$", pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8"), re.M)
    return {"processor": names[0] if names else "an unnamed processor", "cores": os.cpu_count()}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program", nargs="?")
    parser.add_argument("--json")
    parser.add_argument("--write", action="store_true")
    parser.add_argument("--page", action="store_true")
    options = parser.parse_args()
    if options.page:
        write_page(json.loads((ROOT / MEASURED).read_text(encoding="utf-8")))
        return
    if options.write and options.program:
        raise NotMeasured("--write takes all rows: their numbers are to come from one run")
    rows = [row for row in all_rows() if options.program in (None, row.ours.split(":")[0])]
    if not rows:
        raise NotMeasured(f"no row names a benchmark of {options.program}")
    measured = measure(rows)
    if options.json:
        judged = [{**row._asdict(), "ratio": figure(row, measured["times"]),
                   "verdict": verdict(row, figure(row, measured["times"])).strip("*")} for row in rows]
        pathlib.Path(options.json).write_text(json.dumps({**measured, "rows": judged}, indent=1) + "\n", encoding="utf-8")
    if options.write:
        (ROOT / MEASURED).write_text(json.dumps(measured, indent=1) + "\n", encoding="utf-8")
        write_page(measured)
        size_by_origin.write_page()
    print(table(rows, measured["times"]))


if __name__ == "__main__":
    try:
        main()
    except (NotMeasured, size_by_origin.NotUnderstood) as reason:
        sys.exit(f"bench: {reason}")
