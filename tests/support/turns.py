"""What is tested in one locale, since the other has nothing to add, takes turns: the commit says in which.

    turns.py                         the locale whose turn it is, of those that WFINFO_LOCALES names
    turns.py --parts N COMMAND...    runs a command of so many parts, of which WFINFO_PART ("2/6") is to be done
"""
import os
import pathlib
import subprocess
import sys

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).parents[2]))
LOCALES = ("ja_JP.UTF-8", "C")
SEED_WITHOUT_COMMIT = 1


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


def main(words):
    seed = seed_of(commit_at_hand())[0]
    if not words:
        print(locale_of(seed, locales_here()))
        return 0
    if words[0] != "--parts" or len(words) < 3:
        sys.exit(__doc__)
    return subprocess.run(words[2:], env={**os.environ, "WFINFO_PART": part_of(seed, int(words[1]))}).returncode


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
