"""What is tested in one locale, since the other has nothing to add, takes turns: the commit says in which.

    turns.py [--parts N] COMMAND...     runs a command; ends with 77 and without running it when it is another locale's turn

Of a command that takes a part of its work by WFINFO_PART ("2/6"), the commit also says which one.
The locale is `LC_ALL`; `WFINFO_LOCALES` names those that take turns, when they are not both. The monkey plays in the
one, the commands of turns.py run in the other, so that both have about as much to do.
"""
import os
import pathlib
import subprocess
import sys

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).parents[2]))
LOCALES = ("ja_JP.UTF-8", "C")
SEED_WITHOUT_COMMIT = 1
NOT_IN_TURN = 77


def commit_at_hand():
    """The commit that stands here, or "" where there is no git or no repository."""
    try:
        git = subprocess.run(["git", "rev-parse", "HEAD"], cwd=SOURCE, capture_output=True, text=True)
    except OSError:
        return ""
    return git.stdout.strip() if git.returncode == 0 else ""


def seed_of(commit):
    """(seed, where it comes from)."""
    if commit:
        return int(commit[:12], 16), f"of commit {commit[:12]}"
    return SEED_WITHOUT_COMMIT, "fixed, there being no commit to take it from"


def locale_of(seed, locales=LOCALES):
    return locales[seed % len(locales)]


def locales_here():
    return os.environ.get("WFINFO_LOCALES", " ".join(LOCALES)).split()


def part_of(seed, parts):
    """Of the commits that give a locale its turn, one in so many takes a part."""
    return f"{seed // len(LOCALES) % parts}/{parts}"


def main(command):
    parts = 1
    if command[:1] == ["--parts"]:
        parts, command = int(command[1]), command[2:]
    if not command:
        sys.exit(__doc__)
    seed = seed_of(commit_at_hand())[0]
    turn = locale_of(seed + 1, locales_here())
    if turn != os.environ.get("LC_ALL", turn):
        print(f"it is the turn of locale {turn}")
        return NOT_IN_TURN
    environment = {**os.environ, "WFINFO_PART": part_of(seed, parts)} if parts > 1 else None
    return subprocess.run(command, env=environment).returncode


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
