// What the runner asks of the system, call by call: how files are made, how the program is started, waited
// for and stopped, and what the user sees meanwhile.
#include <string>
#include <thread>
#include <vector>

#include "src/bridge/results_win.h"
#include "src/bridge/security_state_win.h"
#include "src/openpgp/runner_win.h"
#include "src/openpgp/system_win.h"
#include "tests/support/library.h"
#include "tests/support/pgp_stage_win.h"

namespace wfinfo_test {
namespace {

using wfinfo::g_pgpSystem;
using wfinfo::PgpSystem;

constexpr DWORD kPatienceMs = 10000;

struct FileCall {
  std::wstring name;
  DWORD access, share, disposition, attributes;
  bool inheritable;
  HANDLE handle;
};

struct StartCall {
  std::string application, command;
  BOOL inherits;
  DWORD flags;
  STARTUPINFOA startup;
  bool input_is_inheritable;
};

struct Calls {
  std::vector<FileCall> files;
  std::vector<StartCall> starts;
  std::vector<BOOL> copies;     // of handles: whether children inherit them
  std::vector<bool> pipes;      // the same
  std::vector<DWORD> waits;     // milliseconds
  std::vector<UINT> exits;      // codes that programs were stopped with
  HCURSOR waiting = nullptr;    // the cursor during the long wait
  std::vector<DWORD> refusals;  // errors that the next starts fail with
  std::string last_words;       // what a start that fails leaves in the messages
  bool impatient = false;       // the long wait is over at once
};
Calls g_calls;
const PgpSystem g_real = g_pgpSystem;

bool IsInheritable(HANDLE handle) {
  DWORD flags = 0;
  return GetHandleInformation(handle, &flags) && (flags & HANDLE_FLAG_INHERIT) != 0;
}

HANDLE WINAPI NotedCreateFile(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                              DWORD disposition, DWORD attributes, HANDLE like) {
  const HANDLE handle = g_real.create_file(name, access, share, security, disposition, attributes, like);
  const DWORD error = GetLastError();
  g_calls.files.push_back({std::filesystem::path(name).filename().wstring(), access, share, disposition,
                           attributes, IsInheritable(handle), handle});
  SetLastError(error);
  return handle;
}

BOOL WINAPI NotedCreatePipe(PHANDLE read, PHANDLE write, LPSECURITY_ATTRIBUTES security, DWORD size) {
  const BOOL made = g_real.create_pipe(read, write, security, size);
  g_calls.pipes.push_back(IsInheritable(*read) && IsInheritable(*write));
  return made;
}

BOOL WINAPI NotedDuplicate(HANDLE from, HANDLE handle, HANDLE to, LPHANDLE copy, DWORD access, BOOL inherits,
                           DWORD options) {
  g_calls.copies.push_back(inherits);
  return g_real.duplicate_handle(from, handle, to, copy, access, inherits, options);
}

BOOL WINAPI NotedStart(LPCSTR application, LPSTR command, LPSECURITY_ATTRIBUTES process_security,
                       LPSECURITY_ATTRIBUTES thread_security, BOOL inherits, DWORD flags, LPVOID environment,
                       LPCSTR folder, LPSTARTUPINFOA startup, LPPROCESS_INFORMATION process) {
  g_calls.starts.push_back({application != nullptr ? application : "(null)", command, inherits, flags,
                            *startup, IsInheritable(startup->hStdInput)});
  if (g_calls.starts.size() <= g_calls.refusals.size()) {
    DWORD written;
    g_real.write_file(startup->hStdOutput, g_calls.last_words.data(),
                      static_cast<DWORD>(g_calls.last_words.size()), &written, nullptr);
    return SetLastError(g_calls.refusals[g_calls.starts.size() - 1]), FALSE;
  }
  ForgetChild();
  return g_real.create_process(application, command, process_security, thread_security, inherits, flags,
                               environment, folder, startup, process);
}

DWORD WINAPI NotedWait(HANDLE handle, DWORD time) {
  g_calls.waits.push_back(time);
  if (time == kPatienceMs) g_calls.waiting = GetCursor();
  if (time != kPatienceMs || !g_calls.impatient) return g_real.wait(handle, time);
  AwaitChild();  // ten seconds are never so short that it is not up
  return WAIT_TIMEOUT;
}

BOOL WINAPI NotedTerminate(HANDLE process, UINT code) {
  g_calls.exits.push_back(code);
  return g_real.terminate(process, code);
}

class PgpSystemCalls : public PgpStage {
 protected:
  PgpSystemCalls() {
    g_calls = {};
    g_pgpSystem.create_file = &NotedCreateFile;
    g_pgpSystem.create_pipe = &NotedCreatePipe;
    g_pgpSystem.duplicate_handle = &NotedDuplicate;
    g_pgpSystem.create_process = &NotedStart;
    g_pgpSystem.wait = &NotedWait;
    g_pgpSystem.terminate = &NotedTerminate;
    LetMessagesPass();
  }
  ~PgpSystemCalls() override { g_pgpSystem = g_real; }
  void Use(wfinfo::PgpProgram program) {
    wfinfo::g_pgpProgram = program;
    InstallPrograms(program == wfinfo::kProgramPgp ? "pgp" : "gpg");
    wfinfo::BeginPgpRun();
    DeleteFileA("child.input");
  }
};

// --- Files ---------------------------------------------------------------------------------------------

TEST_F(PgpSystemCalls, FilesAreMadeAnewAndOnlyThatOfTheMessagesIsForTheProgram) {
  Use(wfinfo::kProgramGnupg);
  Child("OUTPUT", "x");
  EXPECT_STREQ(wfinfo::RunPgpDecryption("text", "pw", "signed", true), "x");
  ASSERT_EQ(g_calls.files.size(), 4u);
  const struct {
    const wchar_t* name;
    bool inheritable;
  } made[] = {{L"$PgpIn.asc", false}, {L"$PgpIn", false}, {L"$PgpErr.$$$", true}};
  for (std::size_t i = 0; i < std::size(made); ++i) {
    const FileCall& call = g_calls.files[i];
    EXPECT_EQ(call.name, made[i].name);
    EXPECT_EQ(call.access, GENERIC_READ | GENERIC_WRITE);
    EXPECT_EQ(call.share, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE});
    EXPECT_EQ(call.disposition, DWORD{CREATE_ALWAYS});
    EXPECT_EQ(call.attributes, DWORD{FILE_ATTRIBUTE_ARCHIVE});
    EXPECT_EQ(call.inheritable, made[i].inheritable) << i;
  }
  EXPECT_EQ(g_calls.files[3].name, L"$PgpOut.asc");
  EXPECT_EQ(g_calls.files[3].disposition, DWORD{OPEN_EXISTING});
}

// --- An output of an earlier run -----------------------------------------------------------------------

// Pauses between the tries would make ten seconds of these tests.
TEST_F(PgpSystemCalls, AReadOnlyOutputOfAnEarlierRunIsNeverThisRuns) {
  Use(wfinfo::kProgramGnupg);
  for (const char* const output : {"", "fresh"}) {
    folder_.Write("$PgpOut.asc", "stale secret");
    SetFileAttributesA("$PgpOut.asc", FILE_ATTRIBUTE_READONLY);
    Child("OUTPUT", output);
    EXPECT_STREQ(wfinfo::RunPgpDecryption("text", "pw", nullptr, true), output);
    EXPECT_EQ(LeftFiles(), "");
  }
}

TEST_F(PgpSystemCalls, AHeldOutputOfAnEarlierRunIsNeverThisRuns) {
  Use(wfinfo::kProgramGnupg);
  for (const DWORD share : {FILE_SHARE_READ, FILE_SHARE_READ | FILE_SHARE_WRITE}) {
    folder_.Write("$PgpOut.asc", "stale secret");
    const HANDLE held = CreateFileA("$PgpOut.asc", GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    EXPECT_STREQ(wfinfo::RunPgpDecryption("text", "pw", nullptr, true), "");
    CloseHandle(held);
  }
}

int g_denials;  // that are still to come
BOOL WINAPI DenyingDelete(LPCWSTR name) {
  if (std::filesystem::path(name).filename() == L"$PgpIn.asc" && g_denials > 0) {
    --g_denials;
    return SetLastError(ERROR_ACCESS_DENIED), FALSE;
  }
  return g_real.delete_file(name);
}

TEST_F(PgpSystemCalls, ADeletionThatIsDeniedIsTriedAgainWhileTheNameStillOpens) {
  Use(wfinfo::kProgramGnupg);
  Child("OUTPUT", "x");
  g_pgpSystem.delete_file = &DenyingDelete;
  g_denials = 5;
  EXPECT_STREQ(wfinfo::RunPgpDecryption("text", "pw", nullptr, true), "x");
  EXPECT_EQ(g_denials, 0);
  EXPECT_EQ(LeftFiles(), "") << "clear text does not stay";
}

// --- The start -----------------------------------------------------------------------------------------

TEST_F(PgpSystemCalls, AGnupgInAFolderThatTheCodePageCannotHoldIsStartedByItsName) {
  const wchar_t* const names[] = {L"\x0E01\x0E02", L"\x00A5 \x00E0\x03B1\x0142"};
  for (const wchar_t* const name : names) {
    const std::filesystem::path folder = std::filesystem::path(folder_.WidePath(L".")).parent_path() / name;
    if (!CreateDirectoryW(folder.c_str(), nullptr)) {
      GTEST_SKIP() << "this file system takes no name outside of the code page";
    }
    const std::filesystem::path program = std::filesystem::path(ProgramFolder("gpg")) / "gpg.exe";
    ASSERT_TRUE(CopyFileW(program.c_str(), (folder / L"gpg.exe").c_str(), FALSE));
    Use(wfinfo::kProgramGnupg);
    SetEnvironmentVariableW(L"PATH", (L"C:\\windows\\system32;C:\\windows;" + folder.wstring()).c_str());
    Child("OUTPUT", "x");
    g_calls.starts.clear();
    EXPECT_STREQ(wfinfo::RunPgpEncryption({0, "text", "a", nullptr, nullptr}), "x");
    host_.ExpectMessages({});
    ASSERT_EQ(g_calls.starts.size(), 1u);
    EXPECT_EQ(g_calls.starts[0].application, "(null)");
    EXPECT_TRUE(g_calls.starts[0].command.starts_with("gpg.exe ")) << g_calls.starts[0].command;
  }
}

TEST_F(PgpSystemCalls, GnupgIsStartedHiddenWithAConsolePipeAndMessages) {
  Use(wfinfo::kProgramGnupg);
  wfinfo::RunPgpEncryption({0, "text", "a", nullptr, nullptr});
  ASSERT_EQ(g_calls.starts.size(), 1u);
  const StartCall& start = g_calls.starts[0];
  EXPECT_EQ(start.application, ProgramFolder("gpg") + "\\gpg.exe");
  EXPECT_TRUE(start.inherits);
  EXPECT_EQ(start.flags, DWORD{CREATE_NEW_CONSOLE});
  EXPECT_EQ(start.startup.dwFlags, DWORD{STARTF_USESHOWWINDOW | STARTF_USESTDHANDLES});
  EXPECT_EQ(start.startup.wShowWindow, SW_HIDE);
  EXPECT_NE(start.startup.hStdInput, nullptr);
  EXPECT_TRUE(start.input_is_inheritable);
  EXPECT_EQ(g_calls.files[1].name, L"$PgpErr.$$$");
  EXPECT_EQ(start.startup.hStdOutput, g_calls.files[1].handle);
  EXPECT_EQ(start.startup.hStdError, g_calls.files[1].handle);
}

TEST_F(PgpSystemCalls, PgpIsStartedHiddenAndDetachedWithItsOutputAlone) {
  Use(wfinfo::kProgramPgp);
  wfinfo::RunPgpEncryption({1, "text", nullptr, "me", "pw"});
  ASSERT_EQ(g_calls.starts.size(), 1u);
  const StartCall& start = g_calls.starts[0];
  EXPECT_EQ(start.application, "(null)");
  EXPECT_TRUE(start.inherits);
  EXPECT_EQ(start.flags, DWORD{DETACHED_PROCESS});
  EXPECT_EQ(start.startup.dwFlags, DWORD{STARTF_USESHOWWINDOW | STARTF_USESTDHANDLES});
  EXPECT_EQ(start.startup.wShowWindow, SW_HIDE);
  EXPECT_EQ(start.startup.hStdInput, nullptr);
  EXPECT_EQ(start.startup.hStdOutput, g_calls.files[1].handle);
  EXPECT_EQ(start.startup.hStdError, nullptr);
  EXPECT_EQ(g_calls.pipes.size(), 0u);
}

TEST_F(PgpSystemCalls, OnlyAPgpThatIsNotFoundIsLookedForElsewhere) {
  const struct {
    wfinfo::PgpProgram program;
    std::vector<DWORD> refusals;
    std::size_t starts;
    const char* error;
  } cases[] = {{wfinfo::kProgramPgp, {2, 3}, 2, "\nerror code = 3"},
               {wfinfo::kProgramPgp, {5, 5}, 1, "\nerror code = 5"},
               {wfinfo::kProgramPgp, {3, 3}, 1, "\nerror code = 3"},
               {wfinfo::kProgramGnupg, {2, 2}, 1, "\nerror code = 2"}};
  for (const auto& c : cases) {
    Use(c.program);
    g_calls.starts.clear();
    g_calls.refusals = c.refusals;
    EXPECT_STREQ(wfinfo::RunPgpEncryption({0, "text", "a", nullptr, nullptr}), "");
    EXPECT_EQ(g_calls.starts.size(), c.starts);
    const std::vector<std::string> messages = host_.TakeMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].ends_with(c.error)) << messages[0];
    if (c.starts < 2) continue;
    EXPECT_EQ(g_calls.starts[1].command,
              "\"C:\\Program files\\Network Associates\\PGPNT\\pgp.exe\" +batchmode -o $PgpOut.asc -ea "
              "$PgpIn.asc a");
    EXPECT_EQ(g_calls.starts[1].flags, DWORD{DETACHED_PROCESS});
  }
}

TEST_F(PgpSystemCalls, AFailedStartKeepsTheMessagesUnlessItIsQuiet) {
  Use(wfinfo::kProgramGnupg);
  g_calls.refusals = {5};
  g_calls.last_words = "of the system\r\n";
  EXPECT_STREQ(wfinfo::RunPgpEncryption({0, "text", "a", nullptr, nullptr}), "");
  EXPECT_STREQ(wfinfo::PgpInfoText(), "of the system\r\n");
  g_calls.starts.clear();
  EXPECT_EQ(wfinfo::RunPgpDecryption("text", "pw", nullptr, false), nullptr);
  EXPECT_STREQ(wfinfo::PgpInfoText(), "of the system\r\n");
  EXPECT_EQ(host_.TakeMessages().size(), 2u);
  g_calls.starts.clear();
  EXPECT_STREQ(wfinfo::RunPgpDecryption("text", "pw", nullptr, true), "");
  EXPECT_TRUE(std::string(wfinfo::PgpInfoText()).ends_with("\nerror code = 5")) << wfinfo::PgpInfoText();
}

TEST_F(PgpSystemCalls, ThePipeIsInheritableAndAnEncryptionTakesItsWritingEndBack) {
  Use(wfinfo::kProgramGnupg);
  wfinfo::RunPgpEncryption({1, "text", nullptr, "me", "pw"});
  EXPECT_EQ(g_calls.pipes, std::vector<bool>{true});
  EXPECT_EQ(g_calls.copies, std::vector<BOOL>{FALSE});
  g_calls = {};
  wfinfo::RunPgpDecryption("text", "pw", nullptr, true);
  EXPECT_EQ(g_calls.pipes, std::vector<bool>{true});
  EXPECT_EQ(g_calls.copies, std::vector<BOOL>{}) << "kept as it was made";
  g_calls = {};
  wfinfo::RunPgpDecryption("text", "", nullptr, true);
  EXPECT_EQ(g_calls.pipes, std::vector<bool>{}) << "no pass phrase, no pipe";
}

// --- The wait ------------------------------------------------------------------------------------------

TEST_F(PgpSystemCalls, TheWaitIsTenSecondsWithAWaitCursor) {
  Use(wfinfo::kProgramGnupg);
  const HCURSOR arrow = LoadCursorA(nullptr, IDC_ARROW);
  SetCursor(arrow);
  wfinfo::RunPgpEncryption({0, "text", "a", nullptr, nullptr});
  EXPECT_EQ(g_calls.waits, std::vector<DWORD>{kPatienceMs});
  EXPECT_EQ(g_calls.waiting, LoadCursorA(nullptr, IDC_WAIT));
  EXPECT_EQ(GetCursor(), arrow) << "and the old one is back";
  EXPECT_EQ(g_calls.exits, std::vector<UINT>{});
}

TEST_F(PgpSystemCalls, AQuietDecryptionThatTakesTooLongSaysSoInBothLanguages) {
  g_calls.impatient = true;
  Child("SLEEP", "600000");
  Child("SAYS", "nobody sees this");
  for (const auto& [language, text] :
       {std::pair{Language::kEnglish,
                  std::string("The encryption program does not respond more than 10 seconds.")},
        std::pair{Language::kJapanese, Sjis(u8"暗号化プログラムが10秒以上応答しません。")}}) {
    Use(wfinfo::kProgramGnupg);
    host_.SetLanguage(language);
    EXPECT_STREQ(wfinfo::RunPgpDecryption("t", "pw", nullptr, true), "");
    EXPECT_EQ(wfinfo::PgpInfoText(), text);
    EXPECT_EQ(wfinfo::g_pgpExitCode, -1);
    EXPECT_EQ(LeftFiles(), "");
  }
  EXPECT_EQ(g_calls.exits, (std::vector<UINT>{0, 0}));
}

// --- The dialog and the question -----------------------------------------------------------------------

// What the dialog was seen to be at its first timer, from its own thread.
struct Seen {
  HWND dialog = nullptr, owner = nullptr;
  bool owner_waits = false, has_information_icon = false;
  int timers = 0;
  DWORD first = 0, last = 0;  // ticks
};
Seen g_seen;

LRESULT CALLBACK NoteTimer(int code, WPARAM removed, LPARAM address) {
  const MSG& message = *reinterpret_cast<const MSG*>(address);
  if (code == HC_ACTION && removed == PM_REMOVE && message.message == WM_TIMER && message.wParam == 100) {
    g_seen.last = GetTickCount();
    if (g_seen.timers++ == 0) {
      g_seen.first = g_seen.last;
      g_seen.dialog = message.hwnd;
      g_seen.owner = GetWindow(message.hwnd, GW_OWNER);
      g_seen.owner_waits = !IsWindowEnabled(g_seen.owner);
      g_seen.has_information_icon = SendDlgItemMessageA(message.hwnd, 1000, STM_GETICON, 0, 0) ==
                                    reinterpret_cast<LRESULT>(LoadIconA(nullptr, IDI_INFORMATION));
    }
  }
  return CallNextHookEx(nullptr, code, removed, address);
}

TEST_F(PgpSystemCalls, TheDialogBelongsToTheHostAndLooksEveryFiftyMilliseconds) {
  Use(wfinfo::kProgramGnupg);
  g_calls.impatient = true;
  g_seen = {};
  Slot centred = 0;
  host_.Expect(105).Any().Do([&](const Request& request) {
    centred = request.block[0];
    return Slot{0};
  });
  Child("SLEEP", "1500");
  Child("OUTPUT", "x");
  const HHOOK hook = SetWindowsHookExA(WH_GETMESSAGE, &NoteTimer, nullptr, GetCurrentThreadId());
  EXPECT_STREQ(wfinfo::RunPgpEncryption({0, "t", "a", nullptr, nullptr}), "x");
  UnhookWindowsHookEx(hook);
  ASSERT_GE(g_seen.timers, 3);
  EXPECT_EQ(g_seen.owner, host_.frame());
  EXPECT_TRUE(g_seen.owner_waits);
  EXPECT_TRUE(IsWindowEnabled(host_.frame()));
  EXPECT_TRUE(g_seen.has_information_icon);
  EXPECT_EQ(centred, reinterpret_cast<Slot>(g_seen.dialog));
  // A busy machine makes the pauses longer, never shorter.
  EXPECT_GE(g_seen.last - g_seen.first, static_cast<DWORD>(g_seen.timers - 1) * 40);
  EXPECT_GE(g_seen.timers, static_cast<int>(g_calls.waits.size()) - 1) << "each look has its timer";
  EXPECT_FALSE(IsWindow(g_seen.dialog));
}

// Presses the dialog's button, then answers the question, and notes what the question looks like.
class Aborter {
 public:
  explicit Aborter(int answer)
      : thread_([this, answer] {
          while (!stop_) {
            EnumWindows(&Visit, reinterpret_cast<LPARAM>(this));
            if (box_ != nullptr && !std::exchange(answered_, true)) {
              PostMessageA(box_, WM_COMMAND, static_cast<WPARAM>(answer), 0);
            }
            Sleep(10);
          }
        }) {}
  ~Aborter() {
    stop_ = true;
    thread_.join();
  }
  std::wstring text, caption;
  HWND owner = nullptr;
  bool has_yes = false, has_no = false, has_ok = false, has_question_icon = false;

 private:
  static std::wstring TextOf(HWND window) {
    wchar_t text[200] = L"";
    GetWindowTextW(window, text, 200);
    return text;
  }
  static BOOL CALLBACK Visit(HWND window, LPARAM self) {
    auto& aborter = *reinterpret_cast<Aborter*>(self);
    DWORD process;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId() || !IsWindowVisible(window)) return TRUE;
    if (GetDlgItem(window, 1000) != nullptr) {
      PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
    } else if (aborter.box_ == nullptr && GetDlgItem(window, 0xFFFF) != nullptr) {
      aborter.Look(window);
    }
    return TRUE;
  }
  void Look(HWND box) {
    text = TextOf(GetDlgItem(box, 0xFFFF));
    caption = TextOf(box);
    owner = GetWindow(box, GW_OWNER);
    has_yes = GetDlgItem(box, IDYES) != nullptr && IsWindowVisible(GetDlgItem(box, IDYES));
    has_no = GetDlgItem(box, IDNO) != nullptr && IsWindowVisible(GetDlgItem(box, IDNO));
    has_ok = GetDlgItem(box, IDOK) != nullptr && IsWindowVisible(GetDlgItem(box, IDOK));
    const auto question = reinterpret_cast<LRESULT>(LoadIconA(nullptr, IDI_QUESTION));
    for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
      if (SendMessageA(child, STM_GETICON, 0, 0) == question) has_question_icon = true;
    }
    box_ = box;
  }
  HWND box_ = nullptr;
  bool answered_ = false;
  volatile bool stop_ = false;
  std::thread thread_;
};

std::wstring Widened(const std::string& text) {
  wchar_t wide[200] = L"";
  MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, wide, 200);
  return wide;
}

TEST_F(PgpSystemCalls, AfterAbortTheUserIsAskedAndYesStopsTheProgramWithCodeZero) {
  host_.Expect(105).Any().Always();
  const struct {
    Language language;
    bool decrypts;
    std::string question;
  } cases[] = {
      {Language::kEnglish, false, "Do you want to terminate encryption program forced?"},
      {Language::kEnglish, true, "Do you want to terminate the encryption program forced?"},
      {Language::kJapanese, false, Sjis(u8"暗号化プログラムを強制終了しますか？")},
  };
  for (const auto& c : cases) {
    Use(wfinfo::kProgramGnupg);
    g_calls = {};
    g_calls.impatient = true;
    Child("SLEEP", "600000");
    Child("SAYS", "$PgpIn.asc");  // taken out of the messages, so that they are empty
    host_.SetLanguage(c.language);
    Aborter aborter(IDYES);
    const char* const result = c.decrypts ? wfinfo::RunPgpDecryption("t", "pw", nullptr, false)
                                          : wfinfo::RunPgpEncryption({0, "t", "a", nullptr, nullptr});
    EXPECT_STREQ(result, "") << "no failure, no output";
    EXPECT_EQ(aborter.text, Widened(c.question));
    EXPECT_EQ(aborter.caption, L"PGP/GnuPG");
    EXPECT_EQ(aborter.owner, host_.frame());
    EXPECT_TRUE(aborter.has_yes && aborter.has_no && !aborter.has_ok);
    EXPECT_TRUE(aborter.has_question_icon);
    EXPECT_EQ(g_calls.exits, std::vector<UINT>{0});
    EXPECT_EQ(wfinfo::g_pgpExitCode, -1);
    EXPECT_EQ(LeftFiles(), "");
  }
}

TEST_F(PgpSystemCalls, NoLeavesTheProgramAlone) {
  host_.Expect(105).Any().Always();
  Use(wfinfo::kProgramPgp);
  g_calls.impatient = true;
  Child("SLEEP", "600000");
  {
    Aborter aborter(IDNO);
    EXPECT_STREQ(wfinfo::RunPgpEncryption({0, "t", "a", nullptr, nullptr}), "");
  }
  EXPECT_EQ(g_calls.exits, std::vector<UINT>{});
  EXPECT_EQ(wfinfo::g_pgpExitCode, -1);
  EndChild();
}

}  // namespace
}  // namespace wfinfo_test
