"""Lets the monkey play, and finds the shortest sequence of calls that does what it found.

    monkey.py [CALLS] [SEED]        50,000 calls with a seed of this commit, when nothing else is said

Runs build/windows/monkey.exe (`WFINFO_BUILD` names the folder) in a folder of its own.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).parents[2]))
PROGRAM = pathlib.Path(os.environ.get("WFINFO_BUILD", SOURCE / "build/windows")) / "monkey.exe"
USUAL_CALLS = 50_000
TIMEOUT_SECONDS = 4 * 3600


def seed_of_commit():
    commit = subprocess.run(["git", "rev-parse", "HEAD"], cwd=SOURCE, capture_output=True, text=True).stdout.strip()
    return int(commit[:12] or "1", 16)


def play(calls, seed, only=None):
    """(exit code, what it printed) of one run."""
    options = ["--only", ",".join(map(str, only))] if only else []
    starter = [] if os.name == "nt" else ["wine"]
    with tempfile.TemporaryDirectory(prefix="monkey-") as folder:
        shutil.copy(PROGRAM, folder)
        shutil.copy(PROGRAM.parent / "WFINFO.dll", folder)
        done = subprocess.run([*starter, "monkey.exe", str(calls), str(seed), *options], cwd=folder, text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, timeout=TIMEOUT_SECONDS, errors="replace")
    return done.returncode, done.stdout


def finding(printed):
    """What a run found in which call, or None."""
    found = re.search(r"^(exception \w+|no end) in call (\d+): (.*)$", printed, re.M)
    return found and (found[1], int(found[2]), found[3])


def shortened(calls, seed, what, number):
    """The fewest calls, `number` the last of them, after which `what` happens: first a tail, then each left out."""
    def happens(only):
        found = finding(play(calls, seed, only)[1])
        return found is not None and found[0] == what

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


def main(arguments):
    calls = int(arguments[0]) if arguments else USUAL_CALLS
    seed = int(arguments[1]) if len(arguments) > 1 else seed_of_commit()
    print(f"{calls} calls, seed {seed}", flush=True)
    code, printed = play(calls, seed)
    print(printed, end="")
    found = finding(printed)
    if found:
        print("looking for the shortest sequence ...", flush=True)
        sequence = ",".join(map(str, shortened(calls, seed, found[0], found[1])))
        print(f"again with: monkey.exe {calls} {seed} --only {sequence}")
    return 1 if code else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
