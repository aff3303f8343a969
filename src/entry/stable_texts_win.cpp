#include "src/entry/stable_texts_win.h"

#include <windows.h>

#include <cstring>

#include "src/bridge/report_win.h"
#include "src/entry/live_results_win.h"

namespace wfinfo {

// A text may be a pass phrase: no copy stays behind. The last error stays the body's.
StableTexts::~StableTexts() {
  // Much cheaper for short texts than SecureZeroMemory; the empty statement keeps the compiler from leaving
  // it out.
  std::memset(inline_, 0, used_);
  asm volatile("" : : "r"(inline_) : "memory");
  if (blocks_ == nullptr) return;
  const DWORD error = GetLastError();
  while (blocks_ != nullptr) {
    Block* const block = blocks_;
    blocks_ = block->next;
    SecureZeroMemory(block, LocalSize(block));
    LocalFree(block);
  }
  SetLastError(error);
}

// Room for `size` bytes, or null.
char* StableTexts::Room(std::size_t size) {
  if (size <= kInlineRoom - used_) {
    char* const room = inline_ + used_;
    used_ += size;
    return room;
  }
  auto* const block = static_cast<Block*>(LocalAlloc(LMEM_FIXED, offsetof(Block, text) + size));
  if (block == nullptr) return nullptr;
  block->next = blocks_;
  blocks_ = block;
  return block->text;
}

const char* StableTexts::Keep(const char* text) {
  const auto view = failed_ ? std::nullopt : TextAt(text);
  if (!view) return text;
  const std::size_t size = view->size() + 1;
  char* const copy = Room(size);
  failed_ = copy == nullptr;
  return failed_ ? nullptr : static_cast<const char*>(std::memcpy(copy, text, size));
}

long long StableTexts::KeepValue(long long value) {
  const auto* const text = reinterpret_cast<const char*>(value);
  return IsLiveResult(text) ? reinterpret_cast<long long>(Keep(text)) : value;
}

}  // namespace wfinfo
