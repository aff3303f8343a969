#include "bridge/results_win.h"

#include <windows.h>

#include <cstring>
#include <utility>

namespace wfinfo {

char g_resultText[kShortResultSize + kShortResultSpare];

namespace {
char* g_longResult = nullptr;
}

char* NewResultBlock(std::size_t size) { return static_cast<char*>(LocalAlloc(LPTR, size)); }

void FreeResultBlock(char* block) { LocalFree(block); }

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

namespace {

bool IsResult(const char* text) {
  if (text >= g_resultText && text < g_resultText + kShortResultSize) return true;
  return g_longResult != nullptr && text >= g_longResult && text < g_longResult + LocalSize(g_longResult);
}

}  // namespace

StableText::StableText(const char* text) : text_(text) {
  if (text == nullptr || !IsResult(text)) return;
  const std::size_t size = std::strlen(text) + 1;
  copy_.reset(LocalAlloc(LMEM_FIXED, size));
  text_ = copy_ ? static_cast<const char*>(std::memcpy(copy_.get(), text, size)) : kNoText;
}

}  // namespace wfinfo
