"""The twelve steps of docs/learn.md and docs/learn.ja.md: which macro, how it is run, and what it prints.

    python3 tools/learning_path.py             rewrites the pages

What a step prints stands in tests/e2e/expected/, where tests/e2e/test_learning.py holds it against a run.
"""
import pathlib
import shlex
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from page_marks import between_marks  # noqa: E402
from service_rows import NotUnderstood  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[1]
# {page: what leads to the command for the archive}
PAGES = {"docs/learn.md": "On Windows, in the folder of the archive:",
         "docs/learn.ja.md": "Windows では、配布ファイルのフォルダーで："}
MACROS = "samples/macros/"
# Between what a macro prints and what comes on standard error, as tests/e2e/test_commands.py reads it.
ERROR_MARK = "--- standard error ---\n"

ALICE = "--mail samples/mails/plain-ascii.eml"
ACCOUNTS = "--accounts samples/accounts.txt"
# (macro, options before it)
STEPS = [
    ("tour/1_first_steps", ""),
    ("tour/2_list_headers", ""),
    ("tour/3_count_lines", ""),
    ("tour/4_japanese", ""),
    # What it keeps is not to be among the mails that other steps count; so of 10 and 12.
    ("tour/5_reply", f"--drafts out/learn/5/drafts {ACCOUNTS}"),
    ("who_wrote", ""),
    ("learn/07_mark_what_asks", ""),
    ("file_newsletters", ""),
    # This one opens the folder by its last name.
    ("answer_as_draft", f"{ALICE} --drafts out/learn/Drafts {ACCOUNTS} --templates samples/templates"),
    ("mails_from_csv", f"{ALICE} --drafts out/learn/10/drafts {ACCOUNTS}"),
    ("export_sender", ""),
    ("learn/12_answer_file_export_sign",
     f"{ALICE} --drafts out/learn/12/drafts {ACCOUNTS} --macro {MACROS}openpgp/settings.macro"),
]


def macro_of(step):
    return MACROS + step[0] + ".macro"


def arguments_of(step):
    """What stands behind ./dev run."""
    return shlex.split(f"{step[1]} --macro {macro_of(step)}")


def on_windows(step):
    """The same as a line for the folder of the archive, with what ./dev run adds said by itself."""
    options = shlex.split(step[1])
    mail = [] if "--mail" in options else ["--mail", "samples/mails"]
    drafts = [] if "--drafts" in options else ["--drafts", "out/drafts"]
    words = [*options, *mail, "--read-only", *drafts, "--macro", macro_of(step)]
    return " ".join(["small-host/wrenfold.exe", *words]).replace("/", "\\")


def expected_file(step):
    return ROOT / "tests/e2e/expected" / (step[0].split("/")[-1] + ".txt")


def read(path):
    return path.read_text(encoding="utf-8")


def block_of(step, in_the_archive):
    """Both commands, macro and output; standard error comes last, as the host's own lines do when a macro ends."""
    shown = read(expected_file(step)).replace(ERROR_MARK, "").rstrip("\n")
    command = shlex.join(["./dev", "run", *arguments_of(step)])
    macro = read(ROOT / macro_of(step)).rstrip("\n")
    windows = f"{in_the_archive}\n\n```powershell\n{on_windows(step)}\n```"
    return f"```sh\n{command}\n```\n\n{windows}\n\n```wrenfold\n{macro}\n```\n\n```text\n{shown}\n```"


def documented(name):
    """The text of a page with its steps as they should be."""
    page = read(ROOT / name)
    for number, step in enumerate(STEPS, 1):
        page = between_marks(page, f"step {number}", block_of(step, PAGES[name]), name)
    return page


def main():
    try:
        wanted = {name: documented(name) for name in PAGES}
    except NotUnderstood as problem:
        sys.exit(f"learning_path: {problem}")
    for name, text in wanted.items():
        (ROOT / name).write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
