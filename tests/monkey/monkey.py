"""Lets the monkey play, and finds the shortest sequence of calls that does what it found.

    monkey.py [CALLS] [SEED]        50,000 calls with a seed of this commit, when nothing else is said
    monkey.py --locale [SEED]       the locale of a seed: every second one has the other
    monkey.py --again               how the usual run of this commit is made again

Runs build/windows/monkey.exe (`WFINFO_BUILD` names the folder) in a folder of its own, in the locale of `LC_ALL`.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))
from turns import SOURCE, commit_at_hand, locale_of, locales_here, seed_of

PROGRAM = pathlib.Path(os.environ.get("WFINFO_BUILD", SOURCE / "build/windows")) / "monkey.exe"
USUAL_CALLS = 50_000
TIMEOUT_SECONDS = 4 * 3600
GROWTH = 2  # exit code of monkey.exe
CALLS_TO_SEE_GROWTH = 20_000


def run(*words):
    """(exit code, what it printed) of the monkey, in a folder of its own."""
    starter = [] if os.name == "nt" else ["wine"]
    with tempfile.TemporaryDirectory(prefix="monkey-") as folder:
        shutil.copy(PROGRAM, folder)
        shutil.copy(PROGRAM.parent / "WFINFO.dll", folder)
        printed = pathlib.Path(folder, "printed.txt")  # a file: what Wine leaves behind may keep a pipe open
        with open(printed, "wb") as output:
            code = subprocess.run([*starter, "monkey.exe", *map(str, words)], cwd=folder, stdin=subprocess.DEVNULL,
                                  stdout=output, timeout=TIMEOUT_SECONDS).returncode
        return code, printed.read_text(encoding="ascii", errors="replace")


def came_to_its_end(printed):
    """Whether the last line of a run is there: a program whose Wine is ended under it gives 0, too."""
    return re.search(r"^\d+ exports; of the calls \d+ in rows$", printed, re.M) is not None


def only(sequence):
    return "--only", ",".join(map(str, sequence))


def finding(printed):
    """What a run found in which call, or None."""
    found = re.search(r"^(exception \w+|no end) in call (\d+): (.*)$", printed, re.M)
    return found and (found[1], int(found[2]), found[3])


def shortened(number, happens):
    """The fewest calls, `number` the last of them, after which it happens: first a tail, then each left out.

    `happens` takes ranges and numbers of calls, as --only does."""
    tail = 0
    while tail < number and not happens([f"{number - tail}-{number}"]):
        tail = 2 * tail + 1
    sequence = list(range(max(0, number - tail), number + 1))
    step = max(1, len(sequence) // 2)
    while step:
        start = 0
        while start < len(sequence) - 1:
            without = sequence[:start] + sequence[min(start + step, len(sequence) - 1):]
            if happens(without):
                sequence = without
            else:
                start += step
        step //= 2
    return sequence


def tell_shortest(calls, seed, what, number):
    def happens(sequence):
        found = finding(run(calls, seed, *only(sequence))[1])
        return found is not None and found[0] == what

    print("looking for the shortest sequence ...", flush=True)
    sequence = shortened(number, happens)
    print(run(calls, seed, *only(sequence), "--show")[1], end="")
    print(f"again with: monkey.exe {calls} {seed} {' '.join(only(sequence))}")


def not_documented(printed):
    """Rows of the lists that docs/reliability.md does not show."""
    page = (SOURCE / "docs/reliability.md").read_text(encoding="utf-8")
    rows = [f"| {name} | {why} |" for name, why in re.findall(r"^([^\[:]+): (.*?)\r?$", printed, re.M)]
    return [row for row in rows if row not in page]


def tell_rows(calls, seed, printed):
    for name in re.findall(r"^growth: (\w+) keeps", printed, re.M):
        print(f"again with: monkey.exe {calls} {seed} --row {name}")


def main(arguments):
    seed, source = seed_of(commit_at_hand())
    if "--locale" in arguments:
        print(locale_of(int(arguments[1]) if len(arguments) > 1 else seed))
        return 0
    if "--again" in arguments:
        print(f"./dev monkey {USUAL_CALLS} {seed} {locale_of(seed, locales_here())} (the seed is {source})")
        return 0
    calls = int(arguments[0]) if arguments else USUAL_CALLS
    if len(arguments) > 1:
        seed, source = int(arguments[1]), "as told"
    return play(calls, seed, source, os.environ.get("LC_ALL", ""))


def play(calls, seed, source, locale):
    code, printed = run("--left-out")
    missing = not_documented(printed)
    if code or missing:
        print(printed, end="")
        print("docs/reliability.md lacks:", *missing, sep="\n")
        return 1
    print(f"{calls} calls, seed {seed} ({source}); again with: ./dev monkey {calls} {seed} {locale}", flush=True)
    code, printed = run(calls, seed)
    print(printed, end="")
    found = finding(printed)
    if found:
        tell_shortest(calls, seed, found[0], found[1])
    elif code == GROWTH and "keeps" in printed:
        tell_rows(calls, seed, printed)
    elif code == GROWTH:
        print("looking for what grows ...", flush=True)
        print(run(min(calls, CALLS_TO_SEE_GROWTH), seed, "--growth")[1], end="")
    elif not code and not came_to_its_end(printed):
        print("the monkey was ended before its last call: was Wine's server stopped?")
        return 1
    return 1 if code else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
