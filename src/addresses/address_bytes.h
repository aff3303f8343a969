// Finding the bytes of an address list that may mean something, 64 at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace wfinfo {

inline constexpr std::size_t kAddressBlock = 64;

// Bit i is set when byte i of the 64 bytes at `block` may be a delimiter, a control character or part of
// a longer unit: below 0x20, above 0x7F, or one of " ' ( ) , ; < = > \ . The second is the plain form of
// the first.
std::uint64_t AddressByteMask(const char* block);
std::uint64_t AddressByteMaskPortable(const char* block);

// Steps from one such byte of a text to the next.
class AddressBytes {
 public:
  explicit AddressBytes(std::string_view text) : text_(text) {}

  std::string_view text() const { return text_; }

  // The first of them at or behind `position`; some position at or behind the end when there is none.
  // Positions may go back only a little at a time for this to be quick.
  std::size_t Next(std::size_t position) {
    for (;; position = base_ + kAddressBlock) {
      if (position - base_ >= kAddressBlock || !loaded_) Load(position);
      const std::uint64_t rest = mask_ >> (position - base_);
      if (rest != 0) return position + static_cast<std::size_t>(__builtin_ctzll(rest));
      if (base_ + kAddressBlock >= text_.size()) return text_.size() > position ? text_.size() : position;
    }
  }

 private:
  void Load(std::size_t base);

  std::string_view text_;
  std::size_t base_ = 0;
  std::uint64_t mask_ = 0;
  bool loaded_ = false;
};

}  // namespace wfinfo
