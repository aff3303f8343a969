"""Soaks the library: thousands of HTTP opens, of exchanges over TCP, and of mails of other programs.

    soak.py [--opens N] [--rounds N] [--mails N] [--seed S]     10,000, 2,000 and 1,000 unless told otherwise
    soak.py --quick                                             200, 50 and 24

Runs build/windows/soak_net.exe and soak_mails.exe (`WFINFO_BUILD` names the folder) against servers on this machine
and the small host. With 0 a part is left out. A finding is told with the seed and what repeats it; which threads and
programs come first is left to the system, so it may take several runs.

The mails go through the system's mapi32, for which the small host is registered as mail client for the time.
"""
import argparse
import collections
import email
import email.policy
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).parents[2]))
sys.path[:0] = [str(SOURCE / "tests/e2e"), str(SOURCE / "tests/monkey")]

import host  # noqa: E402
import monkey  # noqa: E402
from judge import judge, read  # noqa: E402
from servers import Exchange, Pages, body, closed_port, serving  # noqa: E402

BUILD = pathlib.Path(os.environ.get("WFINFO_BUILD", SOURCE / "build/windows"))
CLIENT = BUILD / "doubles/mapi_client.exe"
THREADS = 8
CALLERS = 8
WHOLE = {"opens": 10_000, "rounds": 2_000, "mails": 1_000}
QUICK = {"opens": 200, "rounds": 50, "mails": 24}
TIMEOUT_SECONDS = 3600


def windows_path(path):
    return str(path) if os.name == "nt" else "Z:" + str(path).replace("/", "\\")


def run(folder, program, *words, **environment):
    """(exit code, what it printed) of a Windows program."""
    printed = folder / f"{pathlib.Path(program).stem}-{words[0]}.txt"  # a file: hosts that stay would keep a pipe open
    with open(printed, "wb") as output:
        code = subprocess.run(host.command(program) + [str(word) for word in words], stdin=subprocess.DEVNULL,
                              stdout=output, stderr=subprocess.DEVNULL, timeout=TIMEOUT_SECONDS,
                              env={**os.environ, **environment}).returncode
    return code, printed.read_text(encoding="utf-8", errors="replace")


def findings_of(code, printed):
    findings = re.findall(r"^finding: (.*?)\r?$", printed, re.M)
    if code and not findings:
        findings.append(f"the program ended with {code}: {printed[-300:]}")
    return findings


def tell(title, seconds, printed):
    print(f"{title}: {seconds:.0f} seconds")
    for line in re.findall(r"^(?:count|held|slow): .*?\r?$", printed, re.M):
        print("  " + line.strip())


def soak_pages(folder, seed, opens):
    began = time.monotonic()
    with serving(Pages) as port, closed_port() as closed:
        code, printed = run(folder, BUILD / "soak_net.exe", "http", seed, opens, THREADS, port, closed)
    tell(f"{opens} HTTP opens on {THREADS} threads", time.monotonic() - began, printed)
    return findings_of(code, printed)


def soak_sockets(folder, seed, rounds):
    began = time.monotonic()
    with serving(Exchange) as port, closed_port() as closed:
        code, printed = run(folder, BUILD / "soak_net.exe", "sockets", seed, rounds, port, closed)
    tell(f"{rounds} socket rounds", time.monotonic() - began, printed)
    return findings_of(code, printed)


def text_of(number):
    return f"text of mail {number}\r\n" * (number % 40 + 1)


def why_broken(mail, number):
    """What an arrived mail lacks, or None."""
    plain = mail.get_body()
    if plain.get_content() != text_of(number):
        return "another text"
    files = [part.get_content() for part in mail.iter_attachments()]
    if files != ([body(number, 1000 + number)] if number % 10 == 0 else []):
        return "other files"
    return None


def look_into(outbox):
    """(how often each number arrived, findings, files that a host left when it was killed)."""
    arrived, findings = collections.Counter(), []
    for file in sorted(outbox.glob("*.eml")):
        mail = email.message_from_bytes(file.read_bytes(), policy=email.policy.default)
        found = re.fullmatch(r"mail (\d+)", mail["Subject"] or "")
        if not found:
            findings.append(f"{file.name}: not a mail of ours")
            continue
        number = int(found[1])
        arrived[number] += 1
        broken = why_broken(mail, number)
        if broken:
            findings.append(f"mail {number}: {broken}")
    return arrived, findings, sorted(outbox.glob("*.tmp"))


def send_mails(folder, seed, mails):
    """What the callers printed, with the host registered and ended afterwards."""
    home = folder / "home"
    home.mkdir()
    registered = host.run("--register-mapi", "--yes")
    if registered.code:
        raise RuntimeError(registered.err)
    try:
        return run(folder, BUILD / "soak_mails.exe", seed, mails, CALLERS, windows_path(host.EXECUTABLE),
                   WRENFOLD_HOME=windows_path(home))
    finally:
        run(folder, CLIENT, "close")
        host.run("--unregister-mapi")


def soak_mails(folder, seed, mails):
    began = time.monotonic()
    code, printed = send_mails(folder, seed, mails)
    arrived, broken, left = look_into(folder / "home/outbox")
    sent, kills = read(printed)
    judgement = judge(sent, kills, arrived, range(mails), CALLERS)
    tell(f"{mails} mails of {CALLERS} programs", time.monotonic() - began, printed)
    print(f"  hosts killed: {len(kills)}; files that they left half written: {len(left)}")
    for what, count in judgement.counts.items():
        print(f"  {count} {what}")
    for line in judgement.lost:
        print("  " + line)
    return findings_of(code, printed) + broken + judgement.findings


PARTS = {"opens": soak_pages, "rounds": soak_sockets, "mails": soak_mails}


def main(arguments):
    parser = argparse.ArgumentParser(prog="./dev soak", description="Soaks the library.")
    for name in PARTS:
        parser.add_argument("--" + name, type=int, help=f"{WHOLE[name]} unless told otherwise; 0: none")
    parser.add_argument("--quick", action="store_true", help="some seconds of each")
    parser.add_argument("--seed", type=int, help="another one each time unless told")
    options = parser.parse_args(arguments)
    sizes = {name: getattr(options, name) for name in PARTS}
    for name, size in sizes.items():
        if size is None:
            sizes[name] = (QUICK if options.quick else WHOLE)[name]
    seed = options.seed
    if seed is None:
        seed = monkey.seed_of(monkey.commit_at_hand())[0] if options.quick else random.randrange(1_000_000)
    again = " ".join(f"--{name} {size}" for name, size in sizes.items())
    print(f"seed {seed}; again with: ./dev soak {again} --seed {seed}", flush=True)
    findings = []
    folder = pathlib.Path(tempfile.mkdtemp(prefix="soak-"))
    for name, size in sizes.items():
        if size:
            findings += PARTS[name](folder, seed, size)
            sys.stdout.flush()
    for finding in findings:
        print("finding: " + finding)
    if findings:
        print(f"what was printed and what arrived lies in {folder}; again with: ./dev soak {again} --seed {seed}")
    else:
        shutil.rmtree(folder)
    print(f"{len(findings)} findings")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
