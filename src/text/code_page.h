// Code page 932 as tables, filled page by page from the system's own per-character conversion, which alone
// defines the result. A page is 256 characters and takes some microseconds once; a text in one script touches
// a few dozen. Against a table compiled in: it agrees with whatever system the library runs on, and the
// library's file does not grow, since the storage starts out as zeros.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace wfinfo {

// The system's conversion of one character, as callbacks: this is where Windows enters the pure code.
struct CharacterCalls {
  // Converts `length` (1 or 2) bytes to at most 2 units; returns the units written, 0 on failure.
  int (*to_wide)(const char* bytes, int length, char16_t* units);
  // True when the two bytes are one valid character (the conversion that refuses invalid ones succeeds).
  bool (*is_pair)(const char* bytes);
  // Converts one unit to at most 4 bytes without best fit; returns the bytes written, 0 on failure.
  int (*to_host)(char16_t unit, char* bytes, bool* default_used);
};

// Host forms of a unit that are no characters of the code page. No unit from 0x80 on has one of these two
// values.
inline constexpr std::uint16_t kNeedsEscape = 0;      // the default character had to be used
inline constexpr std::uint16_t kNoHostForm = 0xFFFF;  // any other outcome than one or two bytes

// Storage, all zeros at the start. One object may serve several threads: a page that two of them fill at once
// gets the same values from both.
struct CodePagePages {
  static constexpr std::size_t kWidePages = 257;  // by first byte; the last page holds the single bytes
  std::atomic<std::uint8_t> wide_ready[kWidePages];
  std::atomic<std::uint8_t> host_ready[256];
  std::atomic<std::uint32_t> wide[61]
                                 [256];  // 60 lead bytes and the single bytes: first unit, second unit << 16
  std::atomic<std::uint64_t> pairs[60][4];  // one bit for each valid trail byte
  std::atomic<std::uint16_t> host[256][256];
};

class CodePage {
 public:
  constexpr CodePage(const CharacterCalls& calls, CodePagePages& pages) : calls_(&calls), pages_(&pages) {}

  // The units of the double-byte character `lead` `trail`: the first in the low half, a second one (or 0)
  // above.
  std::uint32_t Pair(unsigned char lead, unsigned char trail) const {
    return Wide(lead, LeadRow(lead))[trail].load(std::memory_order_relaxed);
  }
  // The same for a byte from 0x80 on that stands alone.
  std::uint32_t Single(unsigned char byte) const {
    return Wide(kSinglePage, kSingleRow)[byte].load(std::memory_order_relaxed);
  }
  // True when the two bytes are a valid character. `lead` is a lead byte.
  bool IsPair(unsigned char lead, unsigned char trail) const {
    const std::size_t row = LeadRow(lead);
    Wide(lead, row);
    return (pages_->pairs[row][trail / 64].load(std::memory_order_relaxed) >> (trail % 64) & 1) != 0;
  }
  // The host bytes of a unit from 0x80 on: one byte, or lead << 8 | trail, or one of the two constants above.
  std::uint16_t Host(char16_t unit) const {
    const std::size_t page = unit >> 8;
    if (pages_->host_ready[page].load(std::memory_order_acquire) == 0) FillHost(page);
    return pages_->host[page][unit & 0xFF].load(std::memory_order_relaxed);
  }

 private:
  static constexpr std::size_t kSinglePage = 256;
  static constexpr std::size_t kSingleRow = 60;

  // 0x81-0x9F and 0xE0-0xFC as 0-59.
  static constexpr std::size_t LeadRow(unsigned char lead) {
    return lead < 0xE0 ? static_cast<std::size_t>(lead - 0x81) : static_cast<std::size_t>(lead - 0xE0 + 31);
  }

  const std::atomic<std::uint32_t>* Wide(std::size_t page, std::size_t row) const {
    if (pages_->wide_ready[page].load(std::memory_order_acquire) == 0) FillWide(page, row);
    return pages_->wide[row];
  }

  void FillWide(std::size_t page, std::size_t row) const;
  void FillHost(std::size_t page) const;

  const CharacterCalls* calls_;
  CodePagePages* pages_;
};

}  // namespace wfinfo
