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
int g_lentResults = 0;         // blocks that were kept before they were lent
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

bool IsLongResultKept() { return g_longResult != nullptr || g_lentResults > 0; }

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

LentText::LentText(const char* text) {
  if (*text == '\0') return;
  const std::size_t size = std::strlen(text) + 1;
  if (text == g_longResult) {
    block_ = std::exchange(g_longResult, nullptr);
    was_kept_ = true;
    ++g_lentResults;
    text_ = block_;
  } else {
    char* const copy = size <= kInlineRoom ? inline_ : block_ = NewResultBlock(size);
    if (copy == nullptr) return;
    text_ = static_cast<const char*>(std::memcpy(copy, text, size));
  }
  size_ = size;
}

LentText::~LentText() {
  if (was_kept_) {
    --g_lentResults;
    if (g_longResult == nullptr) std::swap(g_longResult, block_);
  }
  LocalFree(block_);
}

const char* LentText::Answered(const char* answer) {
  if (answer < text_ || answer >= text_ + size_) return answer;
  if (was_kept_) {
    KeepLongResult(std::exchange(block_, nullptr));
  } else {
    answer = ReturnText(answer);
  }
  g_hostText = answer;
  return answer;
}

}  // namespace wfinfo
