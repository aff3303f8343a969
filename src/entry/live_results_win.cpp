#include "src/entry/live_results_win.h"

#include <windows.h>

#include "src/bridge/results_win.h"
#include "src/commands/account_record_win.h"

namespace wfinfo {

const char* g_lastTexts[kMostHandExports];

namespace {

bool LiesIn(const char* address, const char* start, std::size_t size) {
  return start != nullptr && address >= start && address < start + size;
}

bool IsLastText(const char* address) {
  for (const char* const text : g_lastTexts) {
    if (text == address) return true;
  }
  return false;
}

}  // namespace

bool IsLiveResult(const char* address) {
  if (address == nullptr) return false;
  const char* const block = KeptLongResult();
  return address == g_hostText || LiesIn(address, g_resultText, kShortResultSize) ||
         LiesIn(address, block, block != nullptr ? LocalSize(KeptLongResult()) : 0) || IsOfAccount(address) ||
         IsLastText(address);
}

}  // namespace wfinfo
