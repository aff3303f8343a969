// Exports that bring windows of the host to the top, and that find where keys of the HTML viewer go.
#include <windows.h>

#include "src/bridge/host_request_win.h"
#include "src/bridge/host_window_win.h"
#include "src/catalogue/declarations.h"
#include "src/desktop/main_window_win.h"

using namespace wfinfo;

namespace {

constexpr UINT kHostRaiseWindow = 21627;  // to the frame: wParam is the window to bring to the top
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
  const auto window = reinterpret_cast<HWND>(static_cast<INT_PTR>(GrepWnd()));
  if (!Shows(window)) return 0;
  const HWND frame = FindHostWindow(SearchMode::kFrameTarget, false, static_cast<unsigned>(kCodeGrepRaised));
  if (frame == nullptr || frame == window || GetAncestor(frame, GA_ROOT) == window) return 0;
  Raise(frame, window);
  SendHostRequest(kCodeGrepRaised);
  return 1;
}
