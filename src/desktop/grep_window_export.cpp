#include <windows.h>

#include "bridge/report_win.h"
#include "catalogue/declarations.h"

using namespace wfinfo;

namespace {

HWND GrepWindow() { return reinterpret_cast<HWND>(static_cast<INT_PTR>(GrepWnd())); }

// Asks the window to close as its Cancel button would; false when it is still there afterwards.
bool Close(HWND window) {
  SendMessageA(window, WM_COMMAND, IDCANCEL, 0);
  return !IsWindow(window);
}

}  // namespace

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
  do {
    if (!Close(window)) return 0;
    window = all != 0 ? GrepWindow() : nullptr;
  } while (window != nullptr);
  return 1;
}
