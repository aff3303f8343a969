// Memory that ends right before memory that cannot be touched: one byte too many crashes the test.
#pragma once

#include <windows.h>

#include <cstring>
#include <string_view>

namespace wfinfo_test {

class Guarded {
 public:
  // Room for `size` bytes, all zero.
  explicit Guarded(std::size_t size) {
    constexpr std::size_t kPage = 4096;
    const std::size_t whole = (size + kPage - 1) / kPage * kPage;
    base_ = static_cast<char*>(VirtualAlloc(nullptr, whole + kPage, MEM_RESERVE, PAGE_NOACCESS));
    VirtualAlloc(base_, whole, MEM_COMMIT, PAGE_READWRITE);
    start_ = base_ + whole - size;
  }
  // `text` with its terminator.
  explicit Guarded(std::string_view text) : Guarded(text.size() + 1) {
    std::memcpy(start_, text.data(), text.size());
  }
  explicit Guarded(const char* text) : Guarded(std::string_view(text)) {}
  ~Guarded() { VirtualFree(base_, 0, MEM_RELEASE); }
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  char* get() const { return start_; }
  template <class Record>
  Record* as() const {
    return reinterpret_cast<Record*>(start_);
  }

 private:
  char* base_;
  char* start_;
};

}  // namespace wfinfo_test
