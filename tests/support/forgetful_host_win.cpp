#include "tests/support/forgetful_host_win.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

namespace wfinfo_test {
namespace {

constexpr std::size_t kBufferSize = 0x4000;
constexpr std::size_t kRecordSize = 4896;
constexpr int kCodeCurrentHeader = 3;
constexpr int kCodeQuoteOE = 297;  // its block is the text itself

// Addresses that are used one after the other and never again. (One reservation: a system has only so many.)
constexpr std::size_t kArenaSize = std::size_t{1} << 33;

// The addresses stay reserved: whoever reads there crashes.
void TakeMemory(void* pages, std::size_t size) { VirtualFree(pages, size, MEM_DECOMMIT); }

std::string ShownSlot(Slot slot) {
  if (slot > -0x10000 && slot < 0x10000) return std::to_string(slot);
  const auto* const text = reinterpret_cast<const char*>(slot);
  if (IsBadStringPtrA(text, kBufferSize)) return "*";
  return "\"" + std::string(text) + "\"";
}

}  // namespace

ForgetfulHost::ForgetfulHost(Forgets forgets) : forgets_(forgets) {
  arena_ = static_cast<char*>(VirtualAlloc(nullptr, kArenaSize, MEM_RESERVE, PAGE_READWRITE));
  next_ = arena_;
  buffer_ = NewPages();
  NewRecord();
  windows_.hook = [this](HWND, UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
    const bool command = IsMenuCommand(message, wparam, lparam);
    if (command) {
      requests_.push_back("command " + std::to_string(LOWORD(wparam)));
      *result = 1;
    }
    if (IsRequest(message)) *result = Answer(static_cast<int>(wparam), lparam);
    return command || IsRequest(message);
  };
}

ForgetfulHost::~ForgetfulHost() { VirtualFree(arena_, 0, MEM_RELEASE); }

// As many as a text or a record needs.
char* ForgetfulHost::NewPages() {
  static_assert(kRecordSize < kBufferSize);
  char* const pages = std::exchange(next_, next_ + kBufferSize);
  EXPECT_LE(next_, arena_ + kArenaSize);
  return static_cast<char*>(VirtualAlloc(pages, kBufferSize, MEM_COMMIT, PAGE_READWRITE));
}

void ForgetfulHost::NewRecord() {
  if (record_ != nullptr && forgets_ == Forgets::kByOverwriting) {
    std::memset(record_, 'R', kRecordSize);
    return;
  }
  if (record_ != nullptr) TakeMemory(record_, kBufferSize);
  record_ = NewPages();
}

const char* ForgetfulHost::Lend(const std::string& text) {
  EXPECT_LT(text.size(), kBufferSize);
  if (forgets_ == Forgets::kByUnmapping) {
    TakeMemory(buffer_, kBufferSize);
    buffer_ = NewPages();
  } else {
    std::memset(buffer_, 'Z', kBufferSize - 1);
  }
  std::memcpy(buffer_, text.c_str(), text.size() + 1);
  return buffer_;
}

std::vector<std::string> ForgetfulHost::TakeRequests() { return std::exchange(requests_, {}); }

std::string ForgetfulHost::Shown(int code, LPARAM lparam) const {
  std::string shown = std::to_string(code) + "(";
  const auto count = slots_.find(code);
  const auto* const block = reinterpret_cast<const Slot*>(lparam);
  if (code == kCodeQuoteOE) {
    shown += ShownSlot(lparam);
  } else if (count != slots_.end() && block != nullptr) {
    for (std::size_t i = 0; i < count->second; ++i) shown += (i > 0 ? ", " : "") + ShownSlot(block[i]);
  }
  return shown + ")";
}

LRESULT ForgetfulHost::Answer(int code, LPARAM lparam) {
  requests_.push_back(Shown(code, lparam));
  if (code == 76 || code == 77) NewRecord();
  // The host writes the value of a header where it was told to.
  if (code == kCodeCurrentHeader) {
    const auto* const block = reinterpret_cast<const Slot*>(lparam);
    std::strcpy(reinterpret_cast<char*>(block[1]), "value");
    Lend("after a header");
    return 5;
  }
  const auto text = texts_.find(code);
  if (text != texts_.end()) return reinterpret_cast<LRESULT>(Lend(text->second));
  Lend("the answer before is gone");
  if (code == 75) return reinterpret_cast<LRESULT>(record_);
  const auto number = numbers_.find(code);
  return number != numbers_.end() ? static_cast<LRESULT>(number->second) : 1;
}

}  // namespace wfinfo_test
