"""No call fails without a word: what gave a failure value leaves a reason, in the trace and for HostReason()."""
import json
import os
import pathlib
import shutil
import socket
import subprocess
import time
import unittest

import example_set_ups
import host
from host import HostTest, run

OUT = pathlib.Path(os.environ.get("WFINFO_OUT", host.SOURCE / "out"))
USUAL = ["--english", "--read-only", "--yes", "--accounts", "samples/accounts.txt", "--templates", "samples/templates",
         "--book", "samples/address-book.csv"]

# --- Every export ---

# Why an export is not called by the test over all.
NOT_CALLED = {
    "hand-over, by the host alone": "NotifyWrenfoldInfo GetWFInfoVersion",
    "ends the run, or begins it anew": "Exit RestartTamarinMail",
    "a wrong address ends the program": "DllFunc",
    "waits for the user": "Bypass_MessageBox Bypass_MessageBoxW Bypass_ShellExecute Bypass_GetOpenFileName "
                          "Bypass_GetSaveFileName",
    "a wrong word is reported without end": "CheckDuplication",
}
# Why 0, "", null or -1 of an export is an answer like any other.
PLAIN = {
    "always the same result":
        "STARTUNIMACRO SyncOrikaeshi SwitchDontOrikaeshi SetHeader AddHeader AddHeaderIf SetHeaderUnited SetOrDeleteHeader "
        "DeleteHeaderUnited SimulateKeyStroke SimulateKeyStroke2 Bypass_keybd_event Bypass_keybd_event_raw StopAutoPushTimer "
        "StopAutoPushTimer2 HideNotifyWnd FreeUnlhaDll FreeZipDll Inet_Close CSV_Free SetWindowMoveHook "
        "ReleaseWindowMoveHook",
    "a question, and no is its answer":
        "IsMarked IsUnread IsOrikaeshi IsRootOrikaeshi GetDontOrikaeshi IsBookmarked IsGrepProcessing IsDialupOnline "
        "IsGrepWndBrowseMode IsHtmlMailViewerVisible IsTrayIcon IsWrenfoldMain IsWrenfoldGrep IsTamarinMailGrep IsIcon "
        "IsImapSyncAccount IsHighPriority IsRequestNotification TransmitCanceled HtmlViewerWnd HtmlEditorWnd "
        "CheckRandomString CheckRandomDomain IsFunctionExist Bypass_InSendMessage GetMailFlag IsThreadView "
        "GetCurrentMenuCheckState FindBookX GetFolderHotState GetFolderExpandState IsPasswordProtected IsTransmitting TransmitError GetCancel "
        "IsTamarinMacroExecuting IsWrenfoldMacroExecuting IsTamarinMailMacroExecuting GetThreadCollapse "
        "Bypass_IsWindowVisible Bypass_IsWindowEnabled SignHtmlFormat",
    "a place, a number or a way of showing, which is 0 at first":
        "MailFileOffset SortMethod ViewArea CurrentPane CurrentPane2 GetTitleListTopIndex GetCurrentTab HeaderView "
        "ReasonMacroStarted NewMailType tamarin_screentopy MailIndex GetThreadLevel TamarinMailVersionBeta "
        "WFInfoTamarinMailVersionBeta GetFolderPropAccountSpecify GetTabCount RemoteMailHotCount "
        "RemoteMailHotCount2 Export_SuccessCount Export_FailedCount",
    "what it was before, to be given back":
        "DisableThreadTreeOperation SetListBoxSpeech HtmlViewerNotIsolate SetHtmlMailAutoInlineView SetFoundHilight",
    "0 means success or that nothing was wrong":
        "Unlha Zip SMIMEVerifyCertificateByWinVerifyTrust SMIMEVerifyCertificateByWinVerifyTrust_Cert Sock_WSAGetLastError "
        "Bypass_GetLastError",
    "tells of another call, whose reason it was": "PgpGetExitCode GetLastSMIMESigned Inet_GetResponseCode Sock_GetErrorString",
    "nothing set or given, and that is what was asked": "GetFindPack ShowNotifyWnd IfEqual IfInclude CustomSmallHeader NewEditorMacro NewMailMacro ReplyMacro "
                                                      "ForwardMacro EncryptSign RootTransmitDate",
}


# Small numbers may be windows: the system takes the lower half of a handle for the whole.
NO_WINDOW = 0x10001


def value_of(parameter, number):
    kind = parameter["type"]
    if kind == "Handle" and number != 0:
        return str(NO_WINDOW)
    if kind in ("Int32", "UInt32", "Int64", "Handle"):
        return str(number)
    if kind in ("OptText", "RawText", "Value") and number == 0:
        return "0"
    return '"nowhere"' if "Text" in kind or kind == "Value" else "0"


def calls(number):
    """A call of each export with values that lead nowhere."""
    skipped = " ".join(NOT_CALLED.values()).split()
    for row in json.loads((OUT / "reference.json").read_text(encoding="utf-8")):
        if row["name"] not in skipped and row["family"] != "Simple MAPI":
            values = [value_of(parameter, number) for parameter in row["parameters"] if parameter["type"] != "Rest"]
            yield f"x = {row['name']}({', '.join(values)})\n"


class EveryExport(HostTest):
    def silent(self, number, *mails):
        """Exports that gave a failure value and no reason."""
        shutil.copytree(host.SOURCE / "samples", self.folder / "samples", dirs_exist_ok=True)
        macro = self.write("all.macro", "".join(calls(number)))
        # Without mails the host writes beside itself.
        own = self.folder / "host"
        shutil.copytree(host.EXECUTABLE.parent, own, dirs_exist_ok=True)
        result = run(*USUAL, *mails, "--macro", macro.name, "--trace-json", "trace.jsonl", folder=self.folder,
                     executable=own / host.EXECUTABLE.name)
        self.assertEqual(result.code, 0, result.err[-2000:])
        lines = (self.folder / "trace.jsonl").read_text(encoding="utf-8").splitlines()
        made = [record for record in map(json.loads, lines) if "result" in record]
        self.assertEqual(len(made), len(list(calls(number))))
        # JSON has no difference between 0 and false that matters here.
        return {call["call"] for call in made if call["result"] in (0, "", None, -1) and not call["reason"]}

    def test_that_gives_a_failure_value_leaves_a_reason(self):
        plain = set(" ".join(PLAIN.values()).split())
        for number in (99, 0):
            for mails in ((), ("--mail", "samples/mails")):
                with self.subTest(number=number, mails=mails):
                    self.assertEqual(sorted(self.silent(number, *mails) - plain), [])


# --- What a macro author meets ---

# Calls that fail, and the reason. {port} is one that nobody listens on.
REASONS = [
    ('Inet_OpenUrl("http://127.0.0.1:{port}/")', "no connection to the server (system error 12029)"),
    ('LoadDll("no-such-library.dll")', "no such library, or it needs one that is missing (system error 126)"),
    (f"Bypass_GetClientSize({NO_WINDOW})", f"{NO_WINDOW} is no window"),
    (f"Bypass_GetWindowText({NO_WINDOW})", f"{NO_WINDOW} is no window"),
    (f"Bypass_ShowWindow({NO_WINDOW}, 1)", f"{NO_WINDOW} is no window"),
    ("Bypass_GetWindowPos(0)", "0 is no window"),
    ('Bypass_DeleteFile("no-such-file")', "no such file (system error 2)"),
    ('Bypass_GetFileSize("no-such-file")', "no such file (system error 2)"),
    ('LoadTemplate("reply", "no such")', 'there is no template "no such"'),
    ("SelectTab(99)", "no tab 99"),
    ('SelectFolder("nowhere")', 'no folder "nowhere"'),
    ("SetMailIndex(99)", "the list has no mail 99; it shows 1"),
    ('SwitchTemplate("None")', "no mail is being written"),
    ('FormatDate("soon", "DD")', '"soon" is no date'),
    ('LoadStringFromFile("no-such-file")', "cannot read no-such-file: no such file or folder"),
    ('CSV_LoadFile("no-such-file")', "cannot read no-such-file: no such file or folder"),
    ('Import("no-such-file", "eml", "", "", "", "", "")', "cannot read no-such-file: no such file or folder"),
    ('SaveStringToFile("no-folder/a", "x", 0, 0)', "cannot write no-folder/a: there is no folder no-folder"),
    ('Export("no-folder/a", "mbox", "encode", "", "", "")', "cannot write no-folder/a: there is no folder no-folder"),
]
# Nothing was wrong with these.
NO_REASON = ['ToUpper("")', "IsMarked()", 'Quote("x")', 'SubtractDate("1 Jan 2024", "1 Jan 2024", "hour")',
             'Bypass_GetFileSize("empty")', 'SetSortMethod(1)']


class ExecAtMain(HostTest):
    def test_tells_why_its_macro_cannot_be_run(self):
        result = self.run_macro('print ExecAtMain("this is no macro"), " ", HostReason()\n')
        self.assertIn("0 macro:1:", result.out)
        self.assertIn("wrenfold: macro:1:", result.err)


class Reasons(HostTest):
    def reasons(self, calls_made):
        self.write("a.eml", "Subject: a\n\ntext\n")
        self.write("empty", "")
        source = "".join(f"x = {call}\nprint HostReason()\n" for call in calls_made)
        macro = self.write("test.macro", source)
        result = run("--english", "--templates", host.SOURCE / "samples/templates", "--mail", "a.eml", "--macro", macro.name,
                     folder=self.folder)
        self.assertEqual(result.code, 0, result.err)
        return result.out.splitlines()

    def test_name_the_value_at_fault_or_what_the_system_said(self):
        with socket.socket() as closed:
            closed.bind(("127.0.0.1", 0))
            port = closed.getsockname()[1]
        self.assertEqual(self.reasons([call.format(port=port) for call, _ in REASONS]), [reason for _, reason in REASONS])

    def test_are_none_where_nothing_was_wrong(self):
        self.assertEqual(self.reasons(NO_REASON), [""] * len(NO_REASON))

    def test_tell_of_a_page_that_the_server_refuses(self):
        with example_set_ups.web_site(self.folder) as provided:
            site = provided.variables["site"]
            self.assertEqual(self.reasons([f'Inet_OpenUrl("{site}/none")', f'Inet_OpenUrl("{site}/version.txt")']),
                             ["the server answered 404 Not Found", ""])

    def test_leave_the_last_error_to_the_macro(self):
        self.write("a.eml", "Subject: a\n\ntext\n")
        self.assert_output(self.run_macro(
            'x = Bypass_DeleteFile("no-such-file")\nprint HostReason(), " ", Bypass_GetLastError()\n'),
            "no such file (system error 2) 2\n")

    def test_list_the_words_that_there_are(self):
        result = self.run_macro('x = LoadTemplate("all", "x")\nprint HostReason()\n'
                                'x = MakeReplyCustom("Everyone", "", "", 0)\nprint HostReason()\n')
        first, second = result.out.splitlines()
        self.assertEqual(first, 'Invalid template kind specified in Template series function; kind cannot be "all"; it takes: '
                                '"newmail", "reply", "forward" or "sign" (a signature), in any letter case')
        self.assertTrue(second.startswith('The 1st parameter of MakeReplyCustom is invalid; kind cannot be "Everyone"; '
                                          'it takes (to whom): "" as the user has set it, Single the sender, '), second)


    def test_name_what_there_is_instead(self):
        self.write("a.eml", "Subject: Meeting at 10:30\n\ntext\n")
        result = self.run_macro('print CsvExport("x.csv", 0, 0, "date+sender"), " ", HostReason()\n'
                                'SetFindPack("text")\nprint SetFindPack("Subject: x\\nMeeting at 10:30"), " ", HostReason()\n'
                                'print GetFindPack(0, 0), " ", SetFindPack("Any: Meeting at 10:30")\n'
                                'print MakeGrepFolder("found", null, "Meeting at 10:30"), " ", HostReason()\n'
                                'print MakeGrepFolder("found", null, "Any: Meeting at 10:30")\n', "--mail", self.folder / "a.eml")
        self.assertEqual(result.out.splitlines(), [
            "0 no column 'sender'; there are date, from, to, cc, subject, size, folder, file and unread, with + between them",
            "0 'Meeting at 10' is no name of a header; to look for the text anywhere, write Any: Meeting at 10:30",
            "text 1",
            "0 'Meeting at 10' is no name of a header; to look for the text anywhere, write Any: Meeting at 10:30",
            "1"])


class WithoutAccounts(HostTest):
    NO_SENDER = "no account: the mail has no sender; --accounts FILE names one"

    def test_a_mail_without_a_sender_is_told_once_and_as_reason(self):
        self.write("a.eml", "From: a@example.com\n\ntext\n")
        source = 'print NewMail(), " ", HostReason()\nprint MakeReply("", 0), " ", HostReason()\n'
        result = self.run_macro(source, "--mail", self.folder / "a.eml")
        self.assertEqual(result.out, f"1 {self.NO_SENDER}\n" * 2)
        self.assertEqual(result.err.count(f"wrenfold: {self.NO_SENDER}\n"), 1, result.err)
        accounts = self.write("me.txt", "[me]\nszMailFromSpecify = me@example.com\n")
        result = self.run_macro(source, "--mail", self.folder / "a.eml", "--accounts", accounts)
        self.assertEqual((result.out, "sender" in result.err), ("1 \n1 \n", False))
        result = self.run_macro(source, "--strict", "--mail", self.folder / "a.eml", "--accounts", self.write("no.txt", "[me]\n"))
        self.assertEqual(result.out, "1 the first account has no szMailFromSpecify: the mail has no sender\n" * 2)

    def test_a_file_that_is_not_there_is_told_at_the_start(self):
        missing = self.folder / "nope.txt"
        result = self.run_macro("print 1\n", "--accounts", missing)
        self.assertEqual((result.out, result.code), ("1\n", 0))
        self.assertRegex(result.err, r"\Awrenfold: there is no file .*nope\.txt: it will be made with the first account\n\Z")
        self.assertFalse(missing.exists())


class OfTheSystem(HostTest):
    def test_is_one_line_of_our_own_words(self):
        (self.folder / "mails/to").mkdir(parents=True)
        self.write("mails/1.eml", "Subject: a\n\ntext\n")
        start = ["wine"] if os.name != "nt" else []
        holder = subprocess.Popen(start + ["cmd", "/c", "ping -n 30 127.0.0.1 < mails\\1.eml"], cwd=self.folder,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(3)
        try:
            result = run("--english", "--mail", "mails", "--macro",
                         self.write("m.macro", 'print Move("to", null), " [", HostReason(), "]"\n'), folder=self.folder)
        finally:
            holder.kill()
            holder.wait()
        self.assertRegex(result.out, r"^0 \[[^\r\n]*another program uses it \(system error 32\)\]\n$")


class WithoutMails(HostTest):
    def test_whatever_needs_mails_says_that_none_were_given(self):
        for call in ('SelectFolder("x")', "Delete()", "SetMailIndex(0)", 'RootHeader("To")', 'CurrentHeader("To")',
                     'MakeFolder("x")', "DoFilter()"):
            with self.subTest(call):
                result = self.run_macro(f"x = {call}\n")
                self.assertIn("test.macro:1:5: no mails were given: --mail MAIL\n", result.err)


class TraceOnly(HostTest):
    def test_refuses_a_word_that_is_neither_an_export_nor_a_code(self):
        for word, told in (("Nonsense", "no export, code or menu command 'Nonsense'"),
                           ("SetHeadr", "no export, code or menu command 'SetHeadr'; did you mean SetHeader"),
                           ("9999", "no export sends code or menu command 9999")):
            with self.subTest(word):
                result = self.run_macro("print 1\n", f"--trace=ToUpper,{word}")
                self.assertEqual((result.out, result.code), ("", 2))
                self.assertIn(told, result.err)


class Receiving(HostTest):
    def test_opens_the_first_mail_of_a_folder_that_was_empty(self):
        for name in ("box", "server"):
            (self.folder / name).mkdir()
        self.write("box/a.eml", "Subject: a\n\n")
        self.write("server/b.eml", "Subject: b\n\n")
        result = run("--english", "--mail", "box", "--inbox", "server", "--macro", self.write(
            "test.macro", 'Delete()\nprint "[", RootHeader("Subject"), "]"\nprint Receive(), " ", RootHeader("Subject")\n'),
            folder=self.folder)
        self.assertEqual((result.out, result.code), ("[]\n1 b\n", 0))


if __name__ == "__main__":
    unittest.main()
