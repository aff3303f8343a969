"""Boxes that show while a macro runs: each is told, --yes presses its default button, and no host hangs untold."""
import json
import re
import subprocess
import time
import unittest

import host
from host import HostTest, run

BOX = "Bypass_MessageBox(0, {text}, {caption}, {kind})"
# Published button kinds and answers of message boxes.
OK_CANCEL, YES_NO, SECOND = 1, 4, 0x100
OK, CANCEL, YES, NO = 1, 2, 6, 7


# The system's own words on its buttons, in the language of the locale.
LABELS = {"OK": "OK", "Yes": "(?:Yes|はい)", "No": "(?:No|いいえ)", "Cancel": "(?:Cancel|キャンセル)"}


def box(text, caption="Title", kind=0):
    return BOX.format(text=json.dumps(text), caption=json.dumps(caption), kind=kind)


class Pressed(HostTest):
    def told(self, text, button, line, call):
        return (f'wrenfold: the box "Title" showed: {text}; --yes pressed "{LABELS[button]}"\n'
                + re.escape(f"  in {self.folder}/test.macro:{line}: {call}\n"))

    def test_the_default_button_is_pressed_and_told_with_its_place(self):
        calls = [box("first"), box("second", kind=YES_NO), box("third", kind=YES_NO + SECOND), box("fourth", kind=OK_CANCEL + SECOND)]
        result = self.run_macro("".join(f"print {call}\n" for call in calls), "--yes")
        self.assertEqual((result.out, result.code), (f"{OK}\n{YES}\n{NO}\n{CANCEL}\n", 0))
        buttons = ("OK", "Yes", "No", "Cancel")
        told = "".join(self.told(text, button, f"{line}:7", call) for line, (text, button, call) in
                       enumerate(zip(("first", "second", "third", "fourth"), buttons, calls), 1))
        self.assertRegex(result.err, rf"\A{told}\Z")

    def test_a_message_of_the_library_does_not_hang(self):
        """No certificate of that address lies in the store: the library tells that in a box of its own."""
        result = self.run_macro('PgpSetProgram(2)\nprint "[", PgpEncryptSuper(0, "text", "nobody@example.invalid", null, null, 6, 0, 0), "] ", '
                                'HostReason()\nprint 3\n', "--yes")
        reason = "The certificate not found. email address=nobody@example.invalid"
        self.assertEqual((result.out, result.code), (f"[] {reason}\n3\n", 0), result.err)
        self.assertRegex(result.err, rf'(?m)^wrenfold: the box "[^"]+" showed: {reason}; --yes pressed "OK"\n'
                                     r'  in .*test\.macro:2:12: PgpEncryptSuper\(0, "text", ')

    def test_control_characters_of_a_box_reach_no_terminal(self):
        result = self.run_macro('print Bypass_MessageBox(0, "a\\x1B[2Jb\\nc", "t", 0)\n', "--yes")
        self.assertEqual((result.out, result.code), ("1\n", 0))
        self.assertNotIn("\x1b", result.err)
        self.assertEqual(len(result.err.splitlines()), 2, result.err)

    def test_the_trace_names_the_call_before_it_comes_back(self):
        trace = self.folder / "trace.json"
        self.run_macro(f"print {box('text', kind=YES_NO)}\n", "--yes", "--trace-json", trace)
        records = [json.loads(line) for line in trace.read_text(encoding="utf-8").splitlines()]
        [shown] = [record for record in records if "box" in record]
        self.assertRegex(shown.pop("button"), LABELS["Yes"])
        self.assertEqual(shown, {"box": "Title", "text": "text", "fate": "pressed", "call": "Bypass_MessageBox",
                                 "file": f"{self.folder}/test.macro", "line": 1, "column": 7})
        [call] = [record for record in records if record.get("call") == "Bypass_MessageBox" and "result" in record]
        self.assertLess(records.index(shown), records.index(call))

    def test_the_macros_own_timer_comes_first(self):
        source = f'SetAutoPushTimerMilli(200, "no")\nprint {box("own", kind=YES_NO)}\nprint {box("other", kind=YES_NO)}\n'
        result = self.run_macro(source, "--yes")
        self.assertEqual((result.out, result.code), (f"{NO}\n{YES}\n", 0))
        self.assertNotIn("own", result.err)
        self.assertRegex(result.err, f'showed: other; --yes pressed "{LABELS["Yes"]}"\n')


class Waiting(HostTest):
    def test_without_yes_a_box_waits_and_says_how_to_go_on(self):
        macro = self.write("test.macro", f"print {box('unseen', kind=YES_NO)}\n")
        err = self.folder / "err.txt"
        with open(err, "wb") as to:
            process = subprocess.Popen(host.command() + ["--english", "--macro", str(macro)], stdin=subprocess.DEVNULL,
                                       stdout=subprocess.DEVNULL, stderr=to)
            try:
                deadline = time.monotonic() + host.TIMEOUT_SECONDS
                while err.read_bytes().count(b"\n") < 2:
                    self.assertLess(time.monotonic(), deadline, "the box was never told")
                    time.sleep(0.1)
                self.assertIsNone(process.poll(), "it waits for its user")
            finally:
                process.kill()
                process.wait()
        self.assertRegex(err.read_text(encoding="utf-8"),
                         r'\Awrenfold: the box "Title" waits: unseen; press a button, or start again with --yes, which presses its '
                         f'default one, "{LABELS["Yes"]}"\n' + re.escape(f'  in {macro}:1:7: {box("unseen", kind=YES_NO)}\n') + r"\Z")


if __name__ == "__main__":
    unittest.main()
