#include <windows.h>

#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"

using namespace wfinfo;

namespace {

HWND GrepWindow() { return reinterpret_cast<HWND>(static_cast<INT_PTR>(GrepWnd())); }

// Asks the window to close as its Cancel button would; false when it is still there afterwards.
bool Close(HWND window) {
  SendMessageA(window, WM_COMMAND, IDCANCEL, 0);
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
  // A host that goes on naming windows which are gone has none left.
  Repetition repetition;
  do {
    if (!Close(window)) return 0;
    if (repetition.Comes(window)) return 1;
    window = all != 0 ? GrepWindow() : nullptr;
  } while (window != nullptr);
  return 1;
}
