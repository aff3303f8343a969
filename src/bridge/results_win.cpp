#include "src/bridge/results_win.h"

#include <windows.h>

#include <cstring>
#include <utility>

namespace wfinfo {

char g_resultText[kShortResultSize + kShortResultSpare];
const char* g_hostText = nullptr;

namespace {

// Blocks of this size and more come fresh from the system, page by page.
constexpr std::size_t kLargeBlock = 0x10000;

char* g_longResult = nullptr;
char* g_spareBlock = nullptr;  // the block kept before, while large results of one size follow each other

// Frees the block that was kept before `kept`, or holds it ready for the next result of the same size.
void Retire(char* previous, char* kept) {
  const std::size_t size = previous != nullptr ? LocalSize(previous) : 0;
  const bool again = kept != nullptr && size >= kLargeBlock && size == LocalSize(kept);
  LocalFree(std::exchange(g_spareBlock, again ? previous : nullptr));
  if (!again) LocalFree(previous);
}

}  // namespace

char* NewResultBlock(std::size_t size) { return static_cast<char*>(LocalAlloc(LPTR, size)); }

void FreeResultBlock(char* block) { LocalFree(block); }

char* NewUnwrittenBlock(std::size_t size) {
  if (g_spareBlock == nullptr || LocalSize(g_spareBlock) != size) return NewResultBlock(size);
  return std::exchange(g_spareBlock, nullptr);
}

char* KeepLongResult(char* block) {
  char* const previous = std::exchange(g_longResult, block);
  if (previous != block) Retire(previous, block);
  return block;
}

char* KeptLongResult() { return g_longResult; }

void DropLongResult() { KeepLongResult(nullptr); }

const char* ReturnLongText(std::string_view text) {
  char* const block = NewUnwrittenBlock(text.size() + 1);
  if (block == nullptr) return kNoText;
  std::memcpy(block, text.data(), text.size());
  block[text.size()] = '\0';
  return KeepLongResult(block);
}

const char* ReturnText(std::string_view text) {
  if (text.size() >= kShortResultSize) return ReturnLongText(text);
  std::memmove(g_resultText, text.data(), text.size());
  g_resultText[text.size()] = '\0';
  return g_resultText;
}

}  // namespace wfinfo
