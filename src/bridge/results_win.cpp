#include "bridge/results_win.h"

#include <windows.h>

#include <cstring>
#include <utility>

namespace wfinfo {

char g_resultText[kShortResultSize];

namespace {
char* g_longResult = nullptr;
}

char* NewResultBlock(std::size_t size) { return static_cast<char*>(LocalAlloc(LPTR, size)); }

char* KeepLongResult(char* block) {
  char* const previous = std::exchange(g_longResult, block);
  if (previous != block) LocalFree(previous);
  return block;
}

char* KeptLongResult() { return g_longResult; }

void DropLongResult() { KeepLongResult(nullptr); }

const char* ReturnLongText(std::string_view text) {
  char* const block = NewResultBlock(text.size() + 1);
  if (block == nullptr) return kNoText;
  std::memcpy(block, text.data(), text.size());
  return KeepLongResult(block);
}

const char* ReturnText(std::string_view text) {
  if (text.size() >= kShortResultSize) return ReturnLongText(text);
  std::memmove(g_resultText, text.data(), text.size());
  g_resultText[text.size()] = '\0';
  return g_resultText;
}

}  // namespace wfinfo
