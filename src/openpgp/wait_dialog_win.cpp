#include "src/openpgp/wait_dialog_win.h"

#include "resources/resource_ids.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/module_win.h"
#include "src/openpgp/system_win.h"

namespace wfinfo {
namespace {

constexpr int kCodeCentreWindow = 105;
constexpr UINT_PTR kTimer = 100;
constexpr UINT kPollMs = 50;

constexpr INT_PTR kEnded = 1;
constexpr INT_PTR kAborted = 2;

void SetUp(HWND dialog, LPARAM process) {
  SetWindowLongPtrW(dialog, DWLP_USER, process);
  Slot block[] = {ToSlot(dialog)};
  SendHostRequest(kCodeCentreWindow, block);
  const HICON icon = LoadIconA(nullptr, IDI_INFORMATION);
  SendDlgItemMessageA(dialog, IDC_PGP_WAIT_ICON, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
  SetTimer(dialog, kTimer, kPollMs, nullptr);
}

void End(HWND dialog, INT_PTR result) {
  KillTimer(dialog, kTimer);
  EndDialog(dialog, result);
}

bool HasEnded(HWND dialog) {
  const auto process = reinterpret_cast<HANDLE>(GetWindowLongPtrW(dialog, DWLP_USER));
  return g_pgpSystem.wait(process, 0) == WAIT_OBJECT_0;
}

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) return SetUp(dialog, lparam), TRUE;
  if (message == WM_TIMER && wparam == kTimer && HasEnded(dialog)) return End(dialog, kEnded), TRUE;
  if (message == WM_COMMAND && LOWORD(wparam) == IDCANCEL) return End(dialog, kAborted), TRUE;
  return FALSE;
}

}  // namespace

bool WaitWithDialog(bool gnupg, HANDLE process) {
  const int dialog = gnupg ? IDD_GNUPG_WAIT : IDD_PGP_WAIT;
  // As Unicode: the Japanese texts show in every code page.
  return DialogBoxParamW(g_hInstance, MAKEINTRESOURCEW(dialog), MessageBoxOwner(), &Procedure,
                         reinterpret_cast<LPARAM>(process)) == kEnded;
}

}  // namespace wfinfo
