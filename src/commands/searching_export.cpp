// Search settings as a text, and searches that replace the results shown before.
#include "src/bridge/host_request_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/text/host_text.h"

using namespace wfinfo;

namespace {

constexpr int kCodeFindPack = 81;

// Searching from the main window replaces the results shown: an old grep window is closed first. Not while a
// search runs, and not when the grep window itself asks.
void CloseOldGrepWindow() {
  if (IsTamarinMailGrep() == 0 && IsGrepProcessing() == 0) CloseGrepWnd(1);
}

}  // namespace

const char* GetFindPack(unsigned a, unsigned b) noexcept {
  Slot block[] = {ToSlot(a), ToSlot(b)};
  CopyWithinLimit(g_resultText, SendFrameRequestStr(kCodeFindPack, block), kShortResultSize);
  return g_resultText;
}

long long DoGrep(const char* folder1, const char* folder2, unsigned flags) noexcept {
  CloseOldGrepWindow();
  return DoGrep2(folder1, folder2, flags, 0);
}

long long StartDoGrep(const char* folder1, const char* folder2, unsigned flags) noexcept {
  CloseOldGrepWindow();
  return StartDoGrep2(folder1, folder2, flags, 0);
}
