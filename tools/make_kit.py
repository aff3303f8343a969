"""Packs the Windows test kit: out/kit.zip. `./dev kit` builds what goes in and calls this.

    python3 tools/make_kit.py                   packs
    python3 tools/make_kit.py --take REPORT...  takes what Wine answered out of reports of the kit: tests/kit/expected.json

The archive is the same, byte for byte, for the same files. What is in it stands in docs/test-kit.md.
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests/e2e"))
sys.path.insert(0, str(ROOT / "tools"))
import learning_path  # noqa: E402
import test_examples  # noqa: E402
import test_learning  # noqa: E402
import test_services  # noqa: E402

OUT = ROOT / "out"
BUILD = ROOT / "build/windows"
ZIP = OUT / "kit.zip"
EXPECTED = ROOT / "tests/kit/expected.json"
GOOGLETEST_LICENSE = pathlib.Path("/usr/share/doc/googletest/copyright")

# In the kit: where it was built. The programs look for one another as they lie in build/windows.
PROGRAMS = ["dll_tests.exe", "pgp_tests.exe", "smime_tests.exe", "net_doubles_tests.exe", "torture_tests.exe",
            "system_tests.exe", "system_smime_tests.exe", "exec_target.exe", "show_state.exe", "services/services_tests.exe"]
DOUBLES = ["TmRegIni.dll", "extension.dll", "launched_host.exe", "console_typist.exe", "mapi_client.exe", "send_mail.exe",
           "net/WININET.dll", "net/WSOCK32.dll", "archivers/unlha32.dll", "archivers/Zip32J.dll", "archivers_without_entry/unlha32.dll",
           "archivers_without_entry/Zip32J.dll", "openpgp/pgp_child.exe", "openpgp/pgp/pgp.exe", "openpgp/gpg/gpg.exe",
           "openpgp/gpg2/gpg2.exe"]

# Name, program, whether it needs the desktop for itself, whether only Windows can judge it, seconds a test.
SUITES = [("system_smime", "system_smime_tests.exe", True, True, 60), ("system", "system_tests.exe", True, True, 180),
          ("dll", "dll_tests.exe", True, False, 120), ("pgp", "pgp_tests.exe", True, False, 120),
          ("smime", "smime_tests.exe", True, False, 120), ("services", "services/services_tests.exe", True, False, 300),
          ("net", "net_doubles_tests.exe", True, False, 120), ("torture", "torture_tests.exe", True, False, 600)]
KEY_CONTAINERS = ["wfinfo-kit-alice", "wfinfo-kit-bob"]

PRESSES_KEYS = "presses keys, which would go to whatever window is in front"
LEFT_OUT = [("dll.Keys.KeysThroughTheInputQueueReachTheFocus", PRESSES_KEYS),
            ("dll.Keys.TheRawFormPutsOneEventInTheQueue", PRESSES_KEYS),
            ("dll.Pgp.PgpIsAlsoFoundWhereItIsUsuallyInstalled", "writes into, and clears, the folder of another program"),
            ("net.*Missing*", "needs a system without these libraries")]
ABSENT = [("monkey", "calls exports at random with hostile arguments: not on a machine that somebody works on"),
          ("examples.library_in_c", "programs in C, which a compiler has to build"),
          ("examples.mapi", "programs in C, which a compiler has to build; and it changes the system's mail client"),
          ("examples.http", "needs a web server: Python"),
          ("examples.sockets", "needs a mail server: Python"),
          ("examples.smime", "needs a small PKI in the user's stores: OpenSSL"),
          ("examples.pgp", "needs a key ring with keys: see system.Gnupg"),
          ("learning.12_answer_file_export_sign", "needs a key ring with keys: see system.Gnupg")]
PYTHON = "written in Python, which the kit does not need; what its macros print is compared in services.*, examples.*, learning.*"


def commit():
    """What the kit was made from; "" in a source archive."""
    said = subprocess.run(["git", "describe", "--always", "--dirty"], cwd=ROOT, capture_output=True, text=True)
    return said.stdout.strip() if said.returncode == 0 else ""


def version():
    return re.search(r"project\(WFINFO VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text())[1]


# --- Runs of the small host ---


def service_runs():
    for script in test_services.SCRIPTS:
        source = script.read_text(encoding="utf-8")
        options = re.match(r"# options: (.*)", source)
        out, _, err = script.with_suffix(".txt").read_text(encoding="utf-8").partition("--- standard error ---\n")
        yield {"name": f"services_macros.{script.stem}", "copies": {"samples": "samples"}, "files": {script.name: source},
               "arguments": [*test_services.USUAL, *(options[1].split() if options else []), "--macro", script.name],
               "output": out, "errors": err}


def example_runs():
    """The families of examples that need nothing beside the mails: one host each, as tests/e2e/test_examples.py runs them."""
    no_more = {"application", "transmission"}  # their set-up makes two folders
    for path in sorted(test_examples.EXAMPLES.glob("*.macro")):
        family = path.stem
        if family in test_examples.SET_UPS and family not in no_more:
            continue
        files, arguments, output, typed = {}, [], "", ""
        for heading, lines in test_examples.examples_of(path)[1]:
            name = f"{test_examples.names_of(heading, path)[0]}.example"
            files[name] = f'print "{heading}"\n{test_examples.macro_of(lines)}\n'
            arguments += ["--macro", name]
            printed = "\n".join([heading, *test_examples.marked("#>", lines)]) + "\n"
            output += re.sub(r"\bFILE:(?=\d)", name + ":", printed)
            typed += "".join(line + "\n" for line in test_examples.marked("#<", lines))
        copies = {"samples": "samples"} | {f"programs/{file}": pathlib.Path(file).name
                                           for file in test_examples.STAND_INS.get(family, [])}
        yield {"name": f"examples.{family}", "copies": copies, "files": files, "input": typed, "output": output,
               "folders": ["server", "imap"] if family in no_more else [], "joined": True, "seconds": 300,
               "arguments": [*test_examples.options_of(path), *arguments]}


def learning_runs():
    for step in learning_path.STEPS[:-1]:
        [start] = test_learning.started_by_dev(learning_path.arguments_of(step))
        expected = learning_path.read(learning_path.expected_file(step))
        out, _, err = expected.partition(learning_path.ERROR_MARK)
        yield {"name": "learning." + step[0].split("/")[-1], "copies": {"samples": "samples"}, "arguments": start,
               "output": out, "errors": err}


def plan():
    tests = sorted(path.stem for path in (ROOT / "tests/e2e").glob("test_*.py"))
    suites = [{"name": name, "program": "programs/" + program, "folder": str(pathlib.PurePosixPath("programs", program).parent),
               "desktop": desktop, "first": first, "seconds": seconds} for name, program, desktop, first, seconds in SUITES]
    return {"version": version(), "commit": commit(), "suites": suites,
            "macros": [*service_runs(), *example_runs(), *learning_runs()],
            "left_out": [{"pattern": pattern, "reason": reason} for pattern, reason in LEFT_OUT],
            "absent": [{"name": name, "reason": reason} for name, reason in ABSENT + [(f"e2e.{t}", PYTHON) for t in tests]],
            "key_containers": KEY_CONTAINERS}


# --- The archive ---


def stripped(path):
    """A program without symbols, and without the folder in which it was compiled: full paths of the sources stand in its
    messages where the compiler was called with such."""
    with tempfile.TemporaryDirectory() as folder:
        copy = pathlib.Path(folder) / path.name
        # --preserve-dates: the time in its head too.
        subprocess.run(["x86_64-w64-mingw32-strip", "--preserve-dates", "-o", str(copy), str(path)], check=True)
        content = copy.read_bytes()
    root = f"{ROOT}/".encode()
    return content.replace(root, b"./" * (len(root) // 2) + b"/" * (len(root) % 2))


def samples():
    listed = subprocess.run(["git", "ls-files", "-z", "samples"], cwd=ROOT, capture_output=True, text=True)
    if listed.returncode == 0:
        return sorted(name for name in listed.stdout.split("\0") if name)
    return sorted(path.relative_to(ROOT).as_posix() for path in (ROOT / "samples").rglob("*") if path.is_file())


def contents():
    """{name in the kit: bytes}"""
    files = {"run.cmd": ROOT / "tools/kit/run.cmd", "README.txt": ROOT / "tools/kit/README.txt", "kit.exe": BUILD / "kit/kit.exe",
             "host/wrenfold.exe": OUT / "host/wrenfold.exe", "host/WFINFO.dll": OUT / "WFINFO.dll",
             "host/LICENSE-gumbo.txt": OUT / "host/LICENSE-gumbo.txt", "programs/LICENSE-googletest.txt": GOOGLETEST_LICENSE,
             "programs/WFINFO.dll": OUT / "WFINFO.dll", "expected.json": EXPECTED}
    files |= {f"programs/{name}": BUILD / name for name in PROGRAMS}
    files |= {f"programs/doubles/{name}": BUILD / "doubles" / name for name in DOUBLES}
    files |= {name: ROOT / name for name in samples()}
    packed = {name: stripped(path) if path.suffix in (".exe", ".dll") else path.read_bytes() for name, path in files.items()}
    packed["kit.json"] = (json.dumps(plan(), ensure_ascii=False, indent=1) + "\n").encode()
    return packed


def pack(target=ZIP, packed=None):
    temporary = target.with_suffix(".new")
    with zipfile.ZipFile(temporary, "w", zipfile.ZIP_DEFLATED, compresslevel=6) as archive:
        for name, content in sorted((packed or contents()).items()):
            info = zipfile.ZipInfo(name, (1980, 1, 1, 0, 0, 0))
            info.compress_type = zipfile.ZIP_DEFLATED
            info.create_system = 0  # as if made on Windows: no Unix permissions
            archive.writestr(info, content)
    temporary.replace(target)


# --- What Wine answered ---


def take(*reports):
    """Writes expected.json from reports, of which a later one goes before; a test a line, so that changes can be read."""
    tests = {}
    for report in reports:
        told = json.loads(pathlib.Path(report).read_text(encoding="utf-8"))
        system = f"Wine {told['system']['Wine']}, code pages {told['system']['code pages']}"
        for test in told["tests"]:
            if test["outcome"] == "not run" or test["name"].startswith(("kit.", "e2e.")):
                continue
            why = {} if test["outcome"] == "passed" else {"why": test.get("reason", "")}
            tests[test["name"]] = {"outcome": test["outcome"], **why}
    lines = ",\n".join(f"  {json.dumps(name)}: {json.dumps(tests[name], ensure_ascii=False)}" for name in sorted(tests))
    EXPECTED.write_text(f'{{\n "system": {json.dumps(system)},\n "tests": {{\n{lines}\n }}\n}}\n', encoding="utf-8")


if __name__ == "__main__" and sys.argv[1:2] == ["--take"]:
    sys.exit(take(*sys.argv[2:]) or 0)

if __name__ == "__main__":
    pack()
