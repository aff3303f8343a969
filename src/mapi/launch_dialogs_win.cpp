#include "src/mapi/launch_dialogs_win.h"

#include "resources/resource_ids.h"
#include "src/bridge/module_win.h"
#include "src/mapi/host_launch_win.h"

namespace wfinfo::mapi {
namespace {

constexpr UINT_PTR kTimer = 100;
constexpr UINT kTickMs = 200;
constexpr INT_PTR kDone = 1;
constexpr INT_PTR kGivenUp = 2;

struct Waiting {
  HWND parent;
  HANDLE event;  // null in dialog 101
};

INT_PTR End(HWND dialog, INT_PTR result) {
  KillTimer(dialog, kTimer);
  EndDialog(dialog, result);
  return TRUE;
}

// Without a parent nothing would keep the dialog in sight: to the middle of the screen, above everything.
void ShowAlone(HWND dialog) {
  RECT size;
  GetWindowRect(dialog, &size);
  const int x = (GetSystemMetrics(SM_CXSCREEN) - (size.right - size.left)) / 2;
  const int y = (GetSystemMetrics(SM_CYSCREEN) - (size.bottom - size.top)) / 2;
  SetWindowPos(dialog, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  SetWindowPos(dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

void Initialise(HWND dialog, const Waiting& waiting) {
  SetWindowLongPtrA(dialog, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(waiting.event));
  if (waiting.parent == nullptr) ShowAlone(dialog);
  SendDlgItemMessageA(dialog, IDC_LAUNCH_ICON, STM_SETICON,
                      reinterpret_cast<WPARAM>(LoadIconA(nullptr, reinterpret_cast<LPCSTR>(IDI_ASTERISK))),
                      0);
  SetTimer(dialog, kTimer, kTickMs, nullptr);
}

// What both dialogs do alike; `tick` is called with a living frame.
INT_PTR Handle(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam,
               void (*tick)(HWND dialog, HWND frame)) {
  if (message == WM_INITDIALOG) {
    Initialise(dialog, *reinterpret_cast<const Waiting*>(lparam));
    return TRUE;
  }
  if (message == WM_COMMAND && LOWORD(wparam) == IDCANCEL) return End(dialog, kGivenUp);
  if (message != WM_TIMER || wparam != kTimer) return FALSE;
  const HWND frame = FindHostFrame();
  if (frame == nullptr) return End(dialog, kGivenUp);
  tick(dialog, frame);
  return TRUE;
}

void SeeWhetherFree(HWND dialog, HWND frame) {
  if (!HasPopup(frame)) End(dialog, kDone);
}

void SeeWhetherAnswered(HWND dialog, HWND frame) {
  if (GetForegroundWindow() == dialog && HasPopup(frame)) SetForegroundWindow(GetLastActivePopup(frame));
  const auto event = reinterpret_cast<HANDLE>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
  if (WaitForSingleObject(event, 0) == WAIT_OBJECT_0) End(dialog, kDone);
}

INT_PTR CALLBACK BusyProcedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  return Handle(dialog, message, wparam, lparam, &SeeWhetherFree);
}

INT_PTR CALLBACK CallingProcedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  return Handle(dialog, message, wparam, lparam, &SeeWhetherAnswered);
}

// The wide form keeps the Japanese texts readable on every system.
bool Show(int id, DLGPROC procedure, const Waiting& waiting) {
  return DialogBoxParamW(g_hInstance, MAKEINTRESOURCEW(id), waiting.parent, procedure,
                         reinterpret_cast<LPARAM>(&waiting)) == kDone;
}

}  // namespace

bool WaitUntilHostIsFree(HWND parent) { return Show(IDD_HOST_BUSY, &BusyProcedure, {parent, nullptr}); }

bool WaitUntilHostAnswers(HWND parent, HANDLE event) {
  return Show(IDD_CALLING_HOST, &CallingProcedure, {parent, event});
}

}  // namespace wfinfo::mapi
