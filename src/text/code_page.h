// Code page 932 as tables, filled page by page from the system's own per-character conversion, which alone
// defines the result. A page is 256 characters and takes some microseconds once; a text in one script touches
// a few dozen. Against a table compiled in: it agrees with whatever system the library runs on, and the
// library's file does not grow, since the storage starts out as zeros.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace wfinfo {

// The system's numbers of code pages.
inline constexpr unsigned kCodePageShiftJis = 932;  // of host text
inline constexpr unsigned kCodePageUtf8 = 65001;

// The system's conversion of one character, as callbacks: this is where Windows enters the pure code.
struct CharacterCalls {
  // Converts `length` (1 or 2) bytes to at most 2 units; returns the units written, 0 on failure.
  int (*to_wide)(const char* bytes, int length, char16_t* units);
  // True when the two bytes are one valid character (the conversion that refuses invalid ones succeeds).
  bool (*is_pair)(const char* bytes);
  // Converts one unit to at most 4 bytes without best fit; returns the bytes written, 0 on failure.
  int (*to_host)(char16_t unit, char* bytes, bool* default_used);
};

// Host forms of a unit that are no characters of the code page. No unit from 0x80 on has one of these
// two values.
inline constexpr std::uint16_t kNeedsEscape = 1;      // the default character had to be used
inline constexpr std::uint16_t kNoHostForm = 0xFFFF;  // any other outcome than one or two bytes

// Storage, all zeros at the start. One object may serve several threads: a page that two of them fill at once
// gets the same values from both.
struct CodePagePages {
  static constexpr std::size_t kWidePages =
      61;  // one for each lead byte, the last for the bytes that stand alone
  std::atomic<std::uint8_t> wide_ready[kWidePages];
  std::atomic<std::uint8_t> host_ready[256];
  std::atomic<std::uint32_t> wide[kWidePages][256];  // first unit, second unit << 16
  std::atomic<std::uint64_t> pairs[kWidePages][4];   // one bit for each valid trail byte
  std::atomic<std::uint16_t> host[256][256];
};

class CodePage {
 public:
  constexpr CodePage(const CharacterCalls& calls, CodePagePages& pages) : calls_(&calls), pages_(&pages) {}

  // Number of a lead byte in the tables; 60 and more for other bytes. (0x81-0x9F and 0xE0-0xFC become
  // neighbours when bit 5 is turned over.)
  static constexpr unsigned kLeadRows = 60;
  static constexpr unsigned LeadRow(unsigned char byte) { return static_cast<unsigned>(byte ^ 0x20) - 0xA1U; }

  // The units of a double-byte character: the first in the low half, a second one (or 0) above. Entries that
  // are still zero are looked at more closely; a few characters are zero for good.
  std::uint32_t Pair(unsigned row, unsigned char trail) const {
    const std::uint32_t units = pages_->wide[row][trail].load(std::memory_order_relaxed);
    return units != 0 ? units : FilledWide(row, trail);
  }
  // The same for a byte from 0x80 on that stands alone.
  std::uint32_t Single(unsigned char byte) const { return Pair(kLeadRows, byte); }
  // True when the two bytes are a valid character.
  bool IsPair(unsigned row, unsigned char trail) const {
    return HasPairBit(row, trail) || FilledIsPair(row, trail);
  }
  // The host bytes of a unit from 0x80 on: one byte, or lead << 8 | trail, or one of the two constants above.
  std::uint16_t Host(char16_t unit) const {
    const std::uint16_t bytes = pages_->host[unit >> 8][unit & 0xFF].load(std::memory_order_relaxed);
    return bytes != 0 ? bytes : FilledHost(unit);
  }

 private:
  bool HasPairBit(unsigned row, unsigned char trail) const {
    return (pages_->pairs[row][trail / 64].load(std::memory_order_relaxed) >> (trail % 64) & 1) != 0;
  }

  // The slow ways, which fill the page if that was not done yet.
  std::uint32_t FilledWide(unsigned row, unsigned char trail) const;
  bool FilledIsPair(unsigned row, unsigned char trail) const;
  std::uint16_t FilledHost(char16_t unit) const;
  void FillWide(unsigned row) const;
  void FillHost(std::size_t page) const;

  const CharacterCalls* calls_;
  CodePagePages* pages_;
};

}  // namespace wfinfo
