// Exports that tell which host window is which, show, hide, activate and close them, bring them to the top,
// and find where keys of the HTML viewer go.
#include <windows.h>

#include "src/bridge/host_protocol.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/top_level_walk_win.h"
#include "src/catalogue/declarations.h"
#include "src/desktop/main_window_win.h"

using namespace wfinfo;

namespace {

int ShowMainWindow(int command) {
  const HWND window = MainFrame();
  if (window == nullptr) return 0;
  ShowWindow(window, command);
  return 1;
}

// The host's visible top-level windows: frames and used outer views of this process.
bool IsHostWindow(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId() || !IsWindowVisible(window)) return false;
  return HasClass(window, kFrameClass) ||
         (HasClass(window, kOuterViewClass) && GetWindowLongPtrA(window, GWLP_USERDATA) != 0);
}

// The nearest other host window from `start` in the given z-order direction, searched around the end.
HWND NeighbourOf(HWND start, UINT direction) {
  HWND nearest[2] = {};  // before and behind `start`
  bool behind = false;
  const auto clear = [&] {
    nearest[0] = nearest[1] = nullptr;
    behind = false;
  };
  WalkTopLevelWindows(
      [&](HWND window) {
        if (window == start) {
          behind = true;
        } else if ((nearest[behind] == nullptr || direction == GW_HWNDPREV) && IsHostWindow(window)) {
          nearest[behind] = window;
        }
        return false;
      },
      clear);
  const bool preferred = direction == GW_HWNDNEXT;
  return nearest[preferred] != nullptr ? nearest[preferred] : nearest[!preferred];
}

int ActivateNeighbour(UINT direction) {
  HWND start = GetActiveWindow();
  if (start == nullptr || !IsHostWindow(start)) start = MainFrame();
  if (start == nullptr) return 0;
  const HWND neighbour = NeighbourOf(start, direction);
  if (neighbour == nullptr) return 0;
  if (IsIconic(neighbour)) ShowWindow(neighbour, SW_RESTORE);
  SetForegroundWindow(neighbour);
  return 1;
}

HWND GrepWindow() { return FromSlot<HWND>(GrepWnd()); }

// Asks the window to close as its Cancel button would; false when it is still there afterwards. What the host told
// may be no window: 65535 would press Cancel in every window of every program.
bool Close(HWND window) {
  if (IsWindow(window)) SendMessageA(window, WM_COMMAND, IDCANCEL, 0);
  return !IsWindow(window);
}

// Tells when a sequence of handles repeats itself: each is compared with one before it, and the one kept is
// renewed at longer and longer distances, so that a circle of any length is found.
class Repetition {
 public:
  bool Comes(HWND window) {
    if (window == kept_) return true;
    if (++steps_ == limit_) {
      kept_ = window;
      steps_ = 0;
      limit_ *= 2;
    }
    return false;
  }

 private:
  HWND kept_ = nullptr;
  unsigned steps_ = 0;
  unsigned limit_ = 1;
};

constexpr int kCodeGrepRaised = 264;
constexpr char kBrowserClass[] = "Internet Explorer_Server";

// The window of class `kBrowserClass` at `window` or below it, child before sibling; null when there is none.
// The system bounds how deep windows stand in one another.
HWND BrowserAtOrBelow(HWND window) {
  if (HasClass(window, kBrowserClass)) return window;
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    if (const HWND found = BrowserAtOrBelow(child)) return found;
  }
  return nullptr;
}

bool Shows(HWND window) { return window != nullptr && IsWindowVisible(window); }

void Raise(HWND frame, HWND window) {
  SendMessageA(frame, kHostRaiseWindow, reinterpret_cast<WPARAM>(window), 0);
}

}  // namespace

int IsWrenfoldMain() noexcept {
  const HWND acting = ActingWindow();
  if (acting == nullptr) return 0;
  return HasClass(acting, kFrameClass) || HasClass(GetAncestor(acting, GA_ROOT), kFrameClass) ? 1 : 0;
}

int IsWrenfoldGrep() noexcept {
  const HWND search_results = ToldGrepWindow().value_or(nullptr);
  return search_results != nullptr && ActsInside(search_results) ? 1 : 0;
}

int IsTamarinMailGrep() noexcept { return IsWrenfoldGrep(); }

void* MainWnd() noexcept { return MainFrame(); }
void* MainWnd2() noexcept { return FirstOwnFrame(nullptr); }

int IsIcon() noexcept {
  const HWND window = MainFrame();
  return window != nullptr && IsIconic(window) ? 1 : 0;
}

int TrayIcon() noexcept {
  if (ShowMainWindow(SW_MINIMIZE) == 0) return 0;
  if (IsTrayIcon() != 0) ShowMainWindow(SW_HIDE);
  return 1;
}

int RestoreWindow() noexcept { return ShowMainWindow(SW_RESTORE); }
int MaximizeWindow() noexcept { return ShowMainWindow(SW_MAXIMIZE); }
int MinimizeWindow() noexcept { return ShowMainWindow(SW_MINIMIZE); }

int NextTamWren() noexcept { return ActivateNeighbour(GW_HWNDNEXT); }
int PrevTamWren() noexcept { return ActivateNeighbour(GW_HWNDPREV); }

void* SetWaitCursor() noexcept { return SetCursor(LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_WAIT))); }

void* RestoreWaitCursor(void* cursor) noexcept {
  const auto previous = static_cast<HCURSOR>(cursor);
  return SetCursor(previous != nullptr ? previous
                                       : LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW)));
}

int CloseGrepWnd(int all) noexcept {
  if (IsTamarinMailGrep() != 0) {
    ReportError(
        {"CloseGrepWnd function called on grep result window. CloseGrepWnd function must be called on "
         "TamarinMail main window. Please refer the help.",
         "CloseGrepWnd関数が検索結果ウィンドウで呼ばれました。CloseGrepWnd関数はTamarinMailの"
         "メインウィンドウで呼ぶ必要があります。ヘルプを参照してください。"});
    return 0;
  }
  if (IsGrepProcessing() != 0) {
    ReportError({"Cannot call CloseGrepWnd in grep processing.", "検索中はCloseGrepWnd関数は使えません。"});
    return 0;
  }
  HWND window = GrepWindow();
  if (window == nullptr) return 0;
  // A host that goes on naming windows which are gone has none left.
  Repetition repetition;
  do {
    if (!Close(window)) return 0;
    if (repetition.Comes(window)) return 1;
    window = all != 0 ? GrepWindow() : nullptr;
  } while (window != nullptr);
  return 1;
}

void* FindHtmlViewerFocusWnd(void* window) noexcept {
  const HWND first = GetWindow(static_cast<HWND>(window), GW_CHILD);
  if (first == nullptr) return nullptr;
  const HWND browser = BrowserAtOrBelow(first);
  return browser != nullptr ? browser : first;
}

long long SetMainWndTop() noexcept {
  const auto window = static_cast<HWND>(MainWnd());
  if (!Shows(window)) return 0;
  const HWND frame = ActingWindow();
  if (frame == nullptr) return 0;
  Raise(frame, window);
  return 1;
}

long long SetGrepWndTop() noexcept {
  const auto window = FromSlot<HWND>(GrepWnd());
  if (!Shows(window)) return 0;
  const HWND frame = FindHostWindow(SearchMode::kFrameTarget, false, static_cast<unsigned>(kCodeGrepRaised));
  if (frame == nullptr || frame == window || GetAncestor(frame, GA_ROOT) == window) return 0;
  Raise(frame, window);
  SendHostRequest(kCodeGrepRaised);
  return 1;
}
