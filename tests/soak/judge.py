"""What became of the mails of a soak: which were lost, whether they might be, and what else is wrong.

A mail may be lost only in these ways, all of which take a host that died while its caller was at it:

  unanswered       the host that was found died before it answered
  not handed over  the host that was found was gone before the mail could be passed to its process; a box tells

What was answered lies in the outbox, once and whole.
"""
import re
import typing

# The window of a process that was ended may stand for a moment, and a caller may find it.
AFTERLIFE_MS = 3000
# So many mails take long enough for a host to be killed meanwhile.
ENOUGH_FOR_A_DEATH = 100


class Mail(typing.NamedTuple):
    number: int
    began: int
    ended: int
    outcome: str


class Kill(typing.NamedTuple):
    began: int
    ended: int


class Judgement(typing.NamedTuple):
    findings: list
    lost: list      # lines that tell of each lost mail
    counts: dict


def read(printed):
    """(mails, kills) of what the callers and the killer printed."""
    mails = [Mail(int(number), int(began), int(ended), outcome.strip()) for number, began, ended, outcome in
             re.findall(r"^mail: (\d+) began (\d+) ended (\d+) (.*)$", printed, re.M)]
    kills = [Kill(int(began), int(ended)) for began, ended in
             re.findall(r"^kill: at (\d+) to (\d+) ", printed, re.M)]
    return mails, kills


def overlaps(mail, kill):
    return kill.began <= mail.ended and kill.ended + AFTERLIFE_MS >= mail.began


def why_wrong(mail, copies, kills):
    """What is wrong with the mail, or None."""
    if copies > 1:
        return f"arrived {copies} times"
    if mail.outcome.startswith("refused"):
        return "the host could not keep it"
    if mail.outcome == "answered" and copies == 0:
        return "answered, and did not arrive"
    if mail.outcome == "not handed over":
        return "not handed over, and nobody was told"
    if mail.outcome.startswith("not handed over") and copies:
        return "not handed over, and arrived"
    if mail.outcome != "answered" and not any(overlaps(mail, kill) for kill in kills):
        return "no host was killed meanwhile"
    return None


def judge(mails, kills, arrived, sent, callers):
    """`arrived`: how often each number lies in the outbox; `sent`: the numbers that were to be sent by so many `callers`."""
    findings = [f"mail {number}: sent by nobody" for number in sorted(set(arrived) - set(sent))]
    findings += [f"mail {number}: its caller did not come back" for number in
                 sorted(set(sent) - {mail.number for mail in mails})]
    lost, allowed, counts = [], 0, {"answered": 0, "arrived without an answer": 0, "lost": 0}
    for mail in sorted(mails):
        copies = arrived.get(mail.number, 0)
        wrong = why_wrong(mail, copies, kills)
        if wrong:
            findings.append(f"mail {mail.number} ({mail.outcome}): {wrong}")
        if mail.outcome == "answered":
            counts["answered"] += 1
        elif copies:
            counts["arrived without an answer"] += 1
        if not copies:
            allowed += not wrong
            counts["lost"] += 1
            kind = "lost: " + mail.outcome.split("; box")[0]
            counts[kind] = counts.get(kind, 0) + 1
            lost.append(f"mail {mail.number} is lost: {mail.outcome}; {mail.ended - mail.began} ms")
    # Each caller has one mail in hand when a host dies.
    if allowed > len(kills) * callers:
        findings.append(f"{allowed} mails lost by {len(kills)} deaths of a host and {callers} callers")
    if len(mails) >= ENOUGH_FOR_A_DEATH and not kills:
        findings.append("no host was killed")
    return Judgement(findings, lost, counts)
