#include "host/windows/frame_win.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "host/base/plain_window_win.h"
#include "host/mapi/refusal_win.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/own_code_win.h"
#include "host/windows/menu_win.h"
#include "src/bridge/host_protocol.h"

namespace wrenfold {
namespace {

constexpr UINT kSearchEnds = WM_APP;
constexpr UINT kPlaceOnly = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;

RequestServer* g_server = nullptr;  // while the windows live
HWND g_frame = nullptr;
HWND g_view = nullptr;
HWND g_receiver = nullptr;  // of the request at hand
HWND g_acting = nullptr;    // a frame that acts for all windows; null: each for itself
std::vector<HWND> g_greps;  // windows with search results, the newest last
bool g_searching = false;

bool IsGrep(HWND window) { return std::find(g_greps.begin(), g_greps.end(), window) != g_greps.end(); }
bool IsFrame(HWND window) { return window == g_frame || IsGrep(window); }

LRESULT Serve(HWND window, int code, LPARAM block) {
  const HWND before = std::exchange(g_receiver, window);
  const LRESULT answer = g_server->Serve(code, block);
  g_receiver = before;
  return answer;
}

LRESULT RunCommand(HWND window, int id) {
  if (id != IDCANCEL || !IsGrep(window)) return g_server->ServeCommand(id);
  DestroyWindow(window);
  return 0;
}

void Raise(HWND window) {
  SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, kPlaceOnly);
  if (IsFrame(window)) g_acting = window;
}

// What was opened in it is no longer open. The window stays, since OpenView uses it again.
void CloseView() {
  SetWindowLongPtrA(g_view, GWLP_USERDATA, 0);
  ShowWindow(g_view, SW_HIDE);
}

// As on a click at the cross. Nobody sees these windows: another program did it, or a macro.
void Close(HWND window) {
  HostState& state = g_server->state();
  if (window == g_frame) {
    state.commands.application.exit_asked = state.commands.application.frame_closed = true;
    PostQuitMessage(0);
  } else if (window != g_view) {
    DestroyWindow(window);
  } else if (!state.HasDraft()) {
    CloseView();
  }
}

void Forget(HWND window) {
  std::erase(g_greps, window);
  if (g_acting == window) g_acting = nullptr;
}

// Windows with mails' texts in their titles are made with wide functions.
LRESULT AnswerAsUsual(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  return IsWindowUnicode(window) ? DefWindowProcW(window, message, wparam, lparam)
                                 : DefWindowProcA(window, message, wparam, lparam);
}

// Frames and the outer view answer alike.
LRESULT CALLBACK AnswerMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  const OwnCode own_code;
  if (g_server == nullptr) return AnswerAsUsual(window, message, wparam, lparam);
  if (const auto refused = RefuseOtherProgram(message, wparam, lparam, Complain)) return *refused;
  switch (message) {
    case wfinfo::kHostRequest:
      return Serve(window, static_cast<int>(wparam), lparam);
    case wfinfo::kHostGetActiveView:
      return reinterpret_cast<LRESULT>(g_acting);
    case wfinfo::kHostGetRequestTarget:
      return reinterpret_cast<LRESULT>(window);
    case WM_INITMENU:
      return UpdateHostMenu(reinterpret_cast<HMENU>(wparam), g_server->state()), 0;
    case WM_COMMAND:
      return RunCommand(window, LOWORD(wparam));
    case wfinfo::kHostRaiseWindow:
      return Raise(reinterpret_cast<HWND>(wparam)), 0;
    case kSearchEnds:
      return g_searching = false, 0;
    case WM_CLOSE:
      return Close(window), 0;
    case WM_DESTROY:
      Forget(window);
      break;
  }
  return AnswerAsUsual(window, message, wparam, lparam);
}

HWND CreateHidden(const char* class_name, const char* title) {
  return MakePlainWindow(class_name, AnswerMessage, title, WS_OVERLAPPEDWINDOW, nullptr);
}

}  // namespace

Windows::Windows(RequestServer& server) {
  g_server = &server;
  // The view's user data stays 0 as long as no mail is open in it, so that searches pass it by.
  g_view = view_ = CreateHidden(wfinfo::kOuterViewClass, "Wrenfold");
  g_frame = frame_ = CreateHidden(wfinfo::kFrameClass, "Wrenfold");
  if (frame_ != nullptr) SetMenu(frame_, CreateHostMenu());
}

Windows::~Windows() {
  while (!g_greps.empty()) DestroyWindow(g_greps.back());
  if (frame_ != nullptr) DestroyWindow(frame_);
  if (view_ != nullptr) DestroyWindow(view_);
  g_server = nullptr;
  g_frame = g_view = nullptr;
}

HWND Windows::Frame() { return g_frame; }
HWND Windows::View() { return g_view; }
HWND Windows::Receiver() { return g_receiver; }

Windows::Acting::Acting(HWND window)
    : window_(window), acting_before_(g_acting), above_(GetWindow(window, GW_HWNDPREV)) {
  // An outer view does not act for frames: it is found by standing in front.
  g_acting = IsFrame(window) ? window : nullptr;
  SetWindowPos(window_, HWND_TOP, 0, 0, 0, 0, kPlaceOnly);
}

Windows::Acting::~Acting() {
  g_acting = IsFrame(acting_before_) ? acting_before_ : nullptr;
  SetWindowPos(window_, above_ != nullptr ? above_ : HWND_TOP, 0, 0, 0, 0, kPlaceOnly);
}

bool Windows::OpenGrepWindow() {
  const HWND window = CreateHidden(wfinfo::kFrameClass, "Wrenfold: search results");
  if (window == nullptr) return false;
  SetWindowPos(window, HWND_BOTTOM, 0, 0, 0, 0, kPlaceOnly | SWP_SHOWWINDOW);
  g_greps.push_back(window);
  return true;
}

HWND Windows::GrepWindow() { return g_greps.empty() ? nullptr : g_greps.back(); }

void Windows::BeginSearch() {
  g_searching = true;
  PostMessageA(g_frame, kSearchEnds, 0, 0);
}
void Windows::EndSearch() { g_searching = false; }
bool Windows::IsSearching() { return g_searching; }

void Windows::OpenView() {
  SetWindowLongPtrA(g_view, GWLP_USERDATA, 1);
  // A frame in front gives way. The view cannot act for it: what asks the frame for it would be refused.
  g_acting = nullptr;
  if (IsFrame(GetActiveWindow())) ShowWindow(g_view, SW_SHOW);
  SetWindowPos(g_view, HWND_TOP, 0, 0, 0, 0, kPlaceOnly);
}

HWND Windows::MakeWindow(const wchar_t* class_name, const std::wstring& title, HWND parent) {
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = AnswerMessage;
  window_class.hInstance = GetModuleHandleA(nullptr);
  window_class.lpszClassName = class_name;
  RegisterClassW(&window_class);  // fails the second time, when the class is there
  const DWORD style = parent == nullptr ? WS_OVERLAPPEDWINDOW : WS_CHILD;
  const HWND window = CreateWindowExW(0, class_name, title.c_str(), style, 0, 0, 320, 200, parent, nullptr,
                                      window_class.hInstance, nullptr);
  if (parent == nullptr) SetWindowPos(window, HWND_BOTTOM, 0, 0, 0, 0, kPlaceOnly);
  return window;
}

HMENU Windows::Menu() { return g_frame == nullptr ? nullptr : GetMenu(g_frame); }

bool Windows::Pump() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) return false;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return true;
}

}  // namespace wrenfold
