#include "src/mapi/host_launch_win.h"

#include "src/bridge/host_protocol.h"
#include "src/bridge/language_win.h"
#include "src/bridge/module_win.h"
#include "src/bridge/top_level_walk_win.h"
#include "src/mapi/host_blocks.h"
#include "src/mapi/mapi_log_win.h"

namespace wfinfo::mapi {
namespace {

constexpr DWORD kFirstWaitMs = 10000;  // for the frame of a host that shows nothing
constexpr DWORD kWaitAfterWindowMs = 5000;
constexpr DWORD kPollMs = 100;
constexpr DWORD kReadyWaitMs = 3000;
constexpr DWORD kReadyPollMs = 300;

// Starts wrenfold.exe of this library's own folder. Returns its process id, 0 on failure.
DWORD Launch() {
  wchar_t path[MAX_PATH];
  wchar_t command[MAX_PATH + 2];
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_HIDE;
  PROCESS_INFORMATION process{};
  bool started = false;
  SetLastError(ERROR_FILENAME_EXCED_RANGE);
  if (PathBesideLibrary(L"wrenfold.exe", path)) {
    wsprintfW(command, L"\"%s\"", path);
    started =
        CreateProcessW(nullptr, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process);
  }
  if (!started) {
    LogNumber("ExecWrenfold CreateProcess failed code=%u", GetLastError());
    return 0;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return process.dwProcessId;
}

bool ShowsWindow(DWORD process) {
  bool shows = false;
  WalkTopLevelWindows([&](HWND window) {
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    return shows = owner == process && IsWindowVisible(window);
  });
  return shows;
}

// Any window that the starting host shows (a question, a password prompt) keeps the wait alive.
HWND WaitForFrame(DWORD process) {
  DWORD since = GetTickCount();
  DWORD limit = kFirstWaitMs;
  for (;;) {
    if (const HWND frame = FindHostFrame(); frame != nullptr) return frame;
    Sleep(kPollMs);
    if (GetTickCount() - since >= limit) break;
    if (!ShowsWindow(process)) continue;
    since = GetTickCount();
    limit = kWaitAfterWindowMs;
  }
  MessageBoxA(nullptr, Chosen({"Failed to launch TamarinMail.", "タマリンメールを起動できませんでした。"}),
              nullptr, MB_ICONHAND | MB_SYSTEMMODAL);
  return nullptr;
}

// Asks until the host is ready, for 3 seconds at most; without a frame too, where every round fails: a caller
// hears of a host without a window three seconds after the user.
void WaitUntilReady(HWND frame) {
  const DWORD since = GetTickCount();
  for (;;) {
    DWORD_PTR answer = 0;
    if (SendMessageTimeoutA(frame, kHostQueryReady, 0, 0, SMTO_BLOCK, kReadyTimeoutMs, &answer) != 0 &&
        answer != 0)
      return;
    if (GetTickCount() - since >= kReadyWaitMs) return;
    Sleep(kReadyPollMs);
  }
}

}  // namespace

HWND FindHostFrame() { return FindWindowA(kFrameClass, nullptr); }

bool HasPopup(HWND frame) { return GetLastActivePopup(frame) != frame; }

HWND ExecWrenfold() {
  if (const HWND frame = FindHostFrame(); frame != nullptr) return frame;
  const DWORD process = Launch();
  if (process == 0) return nullptr;
  const HWND frame = WaitForFrame(process);
  WaitUntilReady(frame);
  return frame;
}

}  // namespace wfinfo::mapi
