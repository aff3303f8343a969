// Each system call of the runner made to fail, one by one: nothing stays behind, nothing crashes, and the
// result is the failure value or the output.
#include <map>

#include "src/bridge/results_win.h"
#include "src/bridge/security_state_win.h"
#include "src/openpgp/runner_win.h"
#include "src/openpgp/system_win.h"
#include "tests/support/pgp_stage_win.h"

namespace wfinfo_test {
namespace {

using wfinfo::g_pgpSystem;
using wfinfo::PgpSystem;

// Which call of which function fails; all calls are counted. Handles that were handed out are remembered.
struct Faults {
  int function = -1;  // place in the table below
  int call = 0;
  int counts[16] = {};
  std::map<HANDLE, bool> handles;  // true: of a process or thread

  bool Fails(int which) { return ++counts[which] == call && which == function; }
};
Faults g_faults;
const PgpSystem g_real = g_pgpSystem;

BOOL Refuse() {
  SetLastError(ERROR_GEN_FAILURE);
  return FALSE;
}
void Remember(HANDLE handle, bool of_process = false) {
  if (handle != nullptr && handle != INVALID_HANDLE_VALUE) g_faults.handles[handle] = of_process;
}

HANDLE WINAPI CreateFileFault(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                              DWORD disposition, DWORD flags, HANDLE copy) {
  if (g_faults.Fails(0)) return Refuse(), INVALID_HANDLE_VALUE;
  const HANDLE handle = g_real.create_file(name, access, share, security, disposition, flags, copy);
  const DWORD error = GetLastError();
  Remember(handle);
  SetLastError(error);
  return handle;
}
BOOL WINAPI WriteFileFault(HANDLE file, LPCVOID data, DWORD size, LPDWORD written, LPOVERLAPPED overlapped) {
  return g_faults.Fails(1) ? Refuse() : g_real.write_file(file, data, size, written, overlapped);
}
BOOL WINAPI ReadFileFault(HANDLE file, LPVOID data, DWORD size, LPDWORD read, LPOVERLAPPED overlapped) {
  return g_faults.Fails(2) ? Refuse() : g_real.read_file(file, data, size, read, overlapped);
}
BOOL WINAPI GetFileSizeFault(HANDLE file, PLARGE_INTEGER size) {
  return g_faults.Fails(3) ? Refuse() : g_real.get_file_size(file, size);
}
BOOL WINAPI DeleteFileFault(LPCWSTR name) {
  // As while a console still holds the file: what the runner has to try again.
  if (g_faults.Fails(4)) return SetLastError(ERROR_SHARING_VIOLATION), FALSE;
  // Each call is to fail for its own fault only, not since this system takes long over ending a console.
  constexpr int kLongestWaitMs = 60000;
  for (int waited = 0; waited < kLongestWaitMs; waited += 10) {
    if (g_real.delete_file(name)) return TRUE;
    if (GetLastError() != ERROR_SHARING_VIOLATION) return FALSE;
    Sleep(10);
  }
  return SetLastError(ERROR_SHARING_VIOLATION), FALSE;
}
BOOL WINAPI CreatePipeFault(PHANDLE read, PHANDLE write, LPSECURITY_ATTRIBUTES security, DWORD size) {
  if (g_faults.Fails(5)) return Refuse();
  const BOOL made = g_real.create_pipe(read, write, security, size);
  Remember(*read);
  Remember(*write);
  return made;
}
BOOL WINAPI DuplicateHandleFault(HANDLE from, HANDLE handle, HANDLE to, LPHANDLE copy, DWORD access,
                                 BOOL inherit, DWORD options) {
  if (g_faults.Fails(6)) return Refuse();
  const BOOL made = g_real.duplicate_handle(from, handle, to, copy, access, inherit, options);
  Remember(*copy);
  return made;
}
BOOL WINAPI CreateProcessFault(LPCSTR application, LPSTR command, LPSECURITY_ATTRIBUTES a,
                               LPSECURITY_ATTRIBUTES b, BOOL inherit, DWORD flags, LPVOID environment,
                               LPCSTR folder, LPSTARTUPINFOA startup, LPPROCESS_INFORMATION process) {
  if (g_faults.Fails(7)) return Refuse();
  ForgetChild();
  const BOOL made = g_real.create_process(application, command, a, b, inherit, flags, environment, folder,
                                          startup, process);
  const DWORD error = GetLastError();
  Remember(process->hProcess, true);
  Remember(process->hThread, true);
  SetLastError(error);
  return made;
}
DWORD WINAPI WaitFault(HANDLE handle, DWORD time) {
  // A wait that fails counts as no end; the dialog asks again at once and finds the program ended. The ten
  // seconds are shortened for the program that waits for a pass phrase which could not be written.
  constexpr DWORD kShort = 1500;
  if (time == 10000) AwaitChild();
  return g_faults.Fails(8) ? Refuse(), WAIT_FAILED : g_real.wait(handle, time == 10000 ? kShort : time);
}
BOOL WINAPI GetExitCodeFault(HANDLE process, LPDWORD code) {
  return g_faults.Fails(9) ? Refuse() : g_real.get_exit_code(process, code);
}
HLOCAL WINAPI AllocateFault(UINT flags, SIZE_T size) {
  return g_faults.Fails(10) ? nullptr : g_real.allocate(flags, size);
}
// False for a closed handle, and for one whose number the system has given to something else since.
bool IsOpen(HANDLE handle, bool of_process) {
  if (!of_process) return GetFileType(handle) != FILE_TYPE_UNKNOWN;
  return GetProcessId(handle) != 0 || GetThreadId(handle) != 0;
}

constexpr const char* kNames[] = {"CreateFile", "WriteFile",   "ReadFile",        "GetFileSizeEx",
                                  "DeleteFile", "CreatePipe",  "DuplicateHandle", "CreateProcess",
                                  "Wait",       "GetExitCode", "Allocate"};
constexpr int kFunctions = static_cast<int>(std::size(kNames));

// Looks for the wait dialog from another thread, notes it, and presses its button when told to.
class DialogWatcher {
 public:
  explicit DialogWatcher(bool presses) : presses_(presses) {
    thread_ = CreateThread(nullptr, 0, &Body, this, 0, nullptr);
  }
  ~DialogWatcher() {
    stop_ = true;
    WaitForSingleObject(thread_, INFINITE);
    CloseHandle(thread_);
  }
  std::wstring caption, text, button;
  bool has_icon = false;

 private:
  static std::wstring TextOf(HWND window) {
    wchar_t text[200] = L"";
    GetWindowTextW(window, text, 200);
    return text;
  }
  static void Keep(const std::wstring& seen, std::wstring& kept) {
    if (!seen.empty()) kept = seen;
  }
  static BOOL CALLBACK Visit(HWND window, LPARAM self) {
    auto* const watcher = reinterpret_cast<DialogWatcher*>(self);
    DWORD process;
    GetWindowThreadProcessId(window, &process);
    const HWND icon = GetDlgItem(window, 1000);
    if (process != GetCurrentProcessId() || icon == nullptr || !IsWindowVisible(window)) return TRUE;
    // A dialog that is just ending has no texts any more.
    Keep(TextOf(window), watcher->caption);
    Keep(TextOf(GetDlgItem(window, IDCANCEL)), watcher->button);
    Keep(TextOf(FindWindowExW(window, icon, L"Static", nullptr)), watcher->text);
    watcher->has_icon = watcher->has_icon || SendMessageA(icon, STM_GETICON, 0, 0) != 0;
    if (watcher->presses_) PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
    return TRUE;
  }
  static DWORD WINAPI Body(LPVOID self) {
    while (!static_cast<DialogWatcher*>(self)->stop_) {
      EnumWindows(&Visit, reinterpret_cast<LPARAM>(self));
      Sleep(20);
    }
    return 0;
  }
  const bool presses_;
  volatile bool stop_ = false;
  HANDLE thread_;
};

class PgpFaults : public PgpStage {
 protected:
  PgpFaults() {
    wfinfo::g_pgpProgram = wfinfo::kProgramGnupg;
    InstallPrograms("gpg");
    Child("OUTPUT", "the output");
    Child("SAYS", "a message");
    host_.Expect(105).Any().Always();
    LetMessagesPass();
    g_pgpSystem = {.create_file = &CreateFileFault,
                   .write_file = &WriteFileFault,
                   .read_file = &ReadFileFault,
                   .get_file_size = &GetFileSizeFault,
                   .delete_file = &DeleteFileFault,
                   .create_pipe = &CreatePipeFault,
                   .duplicate_handle = &DuplicateHandleFault,
                   .create_process = &CreateProcessFault,
                   .wait = &WaitFault,
                   .get_exit_code = &GetExitCodeFault,
                   .terminate = g_real.terminate,
                   .allocate = &AllocateFault,
                   .free = g_real.free};
  }
  ~PgpFaults() override { g_pgpSystem = g_real; }

  // Runs `action` with each call of each function failing in turn, as long as there are further calls.
  template <class Action>
  void FailEachCall(Action action) {
    action();  // the system opens what it needs once
    for (int function = 0; function < kFunctions; ++function) {
      for (int call = 1; call < 30; ++call) {
        g_faults = {function, call, {}, {}};
        wfinfo::BeginPgpRun();
        const char* const result = action();
        if (g_faults.counts[function] < call) break;
        SCOPED_TRACE(kNames[function] + (" call " + std::to_string(call)));
        if (result != nullptr && *result != '\0') {
          EXPECT_STREQ(result, "the output");
        }
        EXPECT_EQ(LeftFiles(), "");
        for (const auto& [handle, of_process] : g_faults.handles) {
          EXPECT_FALSE(IsOpen(handle, of_process)) << handle << " is left open";
        }
        ++failures_;
      }
    }
  }
  int failures_ = 0;
};

TEST_F(PgpFaults, OfAnEncryptionLeaveNothingBehind) {
  FailEachCall([] { return wfinfo::RunPgpEncryption({2, "text", "a b", "me", "pw"}); });
  EXPECT_GT(failures_, 15);
  host_.TakeMessages();
}

TEST_F(PgpFaults, OfADecryptionLeaveNothingBehind) {
  // A program that has no pass phrase to read can only be aborted.
  DialogWatcher watcher(true);
  BoxCloser boxes(IDYES);
  FailEachCall([] { return wfinfo::RunPgpDecryption("text", "pw", "signed", false); });
  EXPECT_GT(failures_, 15);
  host_.TakeMessages();
}

TEST_F(PgpFaults, OfAQuietDecryptionLeaveNothingBehindAndSayNothing) {
  FailEachCall([] {
    const char* const result = wfinfo::RunPgpDecryption("text", "pw", "signed", true);
    EXPECT_NE(result, nullptr);
    return result;
  });
  EXPECT_GT(failures_, 15);
  host_.ExpectMessages({});
}

TEST_F(PgpFaults, WithoutAPipeTheResultIsNullAndTheMessageEnglish) {
  g_faults = {5, 1, {}, {}};
  host_.SetLanguage(Language::kJapanese);
  EXPECT_EQ(wfinfo::RunPgpEncryption({0, "t", "a", nullptr, nullptr}), nullptr);
  host_.ExpectMessages({"CreatePipe failed."});
  g_faults = {5, 1, {}, {}};
  EXPECT_EQ(wfinfo::RunPgpDecryption("t", "pw", nullptr, false), nullptr);
  host_.ExpectMessages({"CreatePipe failed"});
  g_faults = {5, 1, {}, {}};
  EXPECT_STREQ(wfinfo::RunPgpDecryption("t", "pw", nullptr, true), "");
  host_.ExpectMessages({});
}

TEST_F(PgpFaults, AFullDiskIsReportedWithItsFile) {
  g_faults = {1, 2, {}, {}};
  EXPECT_EQ(wfinfo::RunPgpDecryption("t", "pw", "signed", false), nullptr);
  host_.ExpectMessages(
      {"Failed to create temporary file for decryption.\nfile name = $PgpIn\nerror code = 31"});
}

// --- The dialog ----------------------------------------------------------------------------------------

// The ten seconds pass in no time; later questions are answered by the test.
DWORD g_later_answer = WAIT_TIMEOUT;
DWORD WINAPI ImpatientWait(HANDLE handle, DWORD time) {
  if (time == 10000) return AwaitChild(), WAIT_TIMEOUT;
  return time == 0 ? g_later_answer : g_real.wait(handle, time);
}

class PgpDialog : public PgpStage {
 protected:
  PgpDialog() {
    g_pgpSystem.wait = &ImpatientWait;
    g_later_answer = WAIT_TIMEOUT;
    host_.Expect(105).Any().Always().Do([this](const Request& request) {
      ++centred_;
      EXPECT_TRUE(IsWindow(reinterpret_cast<HWND>(request.block[0])));
      return Slot{0};
    });
    LetMessagesPass();
    Child("OUTPUT", "too late");
  }
  ~PgpDialog() override { g_pgpSystem = g_real; }
  void Use(wfinfo::PgpProgram program) {
    wfinfo::g_pgpProgram = program;
    InstallPrograms(program == wfinfo::kProgramPgp ? "pgp" : "gpg");
    wfinfo::BeginPgpRun();
    ForgetChild();
  }
  int centred_ = 0;
};

TEST_F(PgpDialog, ClosesWhenTheProgramEnds) {
  Use(wfinfo::kProgramGnupg);
  Child("SLEEP", "1000");
  Child("EXIT", "3");
  DialogWatcher watcher(false);
  g_pgpSystem.wait = [](HANDLE handle, DWORD time)
                         WINAPI -> DWORD { return time == 10000 ? WAIT_TIMEOUT : g_real.wait(handle, time); };
  EXPECT_STREQ(wfinfo::RunPgpEncryption({0, "t", "a", nullptr, nullptr}), "too late");
  EXPECT_EQ(wfinfo::g_pgpExitCode, 3);
  EXPECT_EQ(centred_, 1);
  EXPECT_EQ(watcher.caption, L"GnuPG処理中");
  EXPECT_EQ(watcher.text, L"GnuPGが終了するのを待っています。");
  EXPECT_EQ(watcher.button, L"中断！");
  EXPECT_TRUE(watcher.has_icon);
  EXPECT_EQ(LeftFiles(), "");
}

TEST_F(PgpDialog, AbortedAndStoppedOnConfirmation) {
  Use(wfinfo::kProgramPgp);
  Child("SLEEP", "600000");
  DialogWatcher watcher(true);
  BoxCloser boxes(IDYES);
  EXPECT_STREQ(wfinfo::RunPgpEncryption({1, "t", nullptr, "me", "pw"}), "");
  ASSERT_EQ(boxes.boxes().size(), 1u);
  EXPECT_EQ(boxes.boxes()[0].text, "Do you want to terminate encryption program forced?");
  EXPECT_EQ(boxes.boxes()[0].caption, "PGP/GnuPG");
  EXPECT_EQ(watcher.caption, L"PGP処理中");
  EXPECT_EQ(watcher.text, L"PGPが終了するのを待っています。");
  EXPECT_EQ(wfinfo::g_pgpExitCode, -1);
  EXPECT_EQ(LeftFiles(), "");
}

TEST_F(PgpDialog, AbortedAndLeftToItself) {
  Use(wfinfo::kProgramGnupg);
  Child("SLEEP", "600000");
  DialogWatcher watcher(true);
  BoxCloser boxes(IDNO);
  EXPECT_STREQ(wfinfo::RunPgpDecryption("t", "pw", nullptr, false), "");
  EXPECT_FALSE(folder_.Has("child.end")) << "nobody waits for the program";
  ASSERT_EQ(boxes.boxes().size(), 1u);
  EXPECT_EQ(boxes.boxes()[0].text, "Do you want to terminate the encryption program forced?");
  EXPECT_EQ(wfinfo::g_pgpExitCode, -1);
  // What the program holds open itself can only go when it ends; the input is gone at once.
  EXPECT_EQ(LeftFiles().find("$PgpIn.asc"), std::string::npos);
  EndChild();
}

TEST_F(PgpDialog, AThreadThatIsToEndStopsTheProgramUnaskedAndEndsAfterwards) {
  for (const auto program : {wfinfo::kProgramPgp, wfinfo::kProgramGnupg}) {
    Use(program);
    Child("SLEEP", "600000");
    BoxCloser boxes(IDNO);
    PostQuitMessage(55);
    EXPECT_STREQ(wfinfo::RunPgpEncryption({1, "secret", nullptr, "me", "pw"}), "");
    EXPECT_TRUE(boxes.boxes().empty());
    EXPECT_EQ(wfinfo::g_pgpExitCode, -1);
    EXPECT_EQ(LeftFiles().find("$PgpIn.asc"), std::string::npos) << "no clear text stays behind";
    MSG message{};
    ASSERT_TRUE(PeekMessageA(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    EXPECT_EQ(message.message, UINT{WM_QUIT});
    EXPECT_EQ(message.wParam, 55u);
  }
}

// --- Secrets -------------------------------------------------------------------------------------------

// The blocks of command lines as they are when they are freed.
std::string g_freed;
HLOCAL WINAPI NotingFree(HLOCAL block) {
  g_freed.append(static_cast<const char*>(block), LocalSize(block));
  return g_real.free(block);
}

class PgpThreats : public PgpDialog {};

TEST_F(PgpThreats, TheCommandLineOfPgpIsWiped) {
  Use(wfinfo::kProgramPgp);
  g_pgpSystem.free = &NotingFree;
  g_freed.clear();
  g_pgpSystem.wait = g_real.wait;
  wfinfo::RunPgpEncryption({1, "t", nullptr, "me", "hush hush"});
  EXPECT_NE(Noted("command").find("hush hush"), std::string::npos);
  EXPECT_GT(g_freed.size(), 100u) << "both copies came by";
  EXPECT_EQ(g_freed, std::string(g_freed.size(), '\0'));
}

// --- What survives a change of directory ---------------------------------------------------------------

std::filesystem::path g_elsewhere;
DWORD WINAPI WanderingWait(HANDLE handle, DWORD time) {
  const DWORD outcome = g_real.wait(handle, time);
  std::filesystem::current_path(g_elsewhere);
  return outcome;
}

TEST_F(PgpDialog, FilesAreFoundAgainAfterTheHostChangedItsDirectory) {
  Use(wfinfo::kProgramGnupg);
  const TempFolder elsewhere;
  g_elsewhere = std::filesystem::path(elsewhere.WidePath(L".")).parent_path();
  g_pgpSystem.wait = &WanderingWait;
  EXPECT_STREQ(wfinfo::RunPgpEncryption({0, "t", "a", nullptr, nullptr}), "too late");
  EXPECT_EQ(LeftFiles(), "");
  std::filesystem::current_path(std::filesystem::path(folder_.WidePath(L".")).parent_path());
}

}  // namespace
}  // namespace wfinfo_test
