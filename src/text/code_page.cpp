#include "src/text/code_page.h"

namespace wfinfo {
namespace {

// What a conversion that fails is replaced with.
constexpr std::uint32_t kReplacement = u'?';

std::uint32_t UnitsOf(const CharacterCalls& calls, const char* bytes, int length) {
  char16_t units[2] = {};
  const int count = calls.to_wide(bytes, length, units);
  if (count <= 0) return kReplacement;
  return units[0] | (count > 1 ? static_cast<std::uint32_t>(units[1]) << 16 : 0);
}

std::uint16_t BytesOf(const CharacterCalls& calls, char16_t unit) {
  char bytes[4] = {};
  bool default_used = false;
  const int count = calls.to_host(unit, bytes, &default_used);
  if (default_used) return kNeedsEscape;
  const auto first = static_cast<unsigned char>(bytes[0]);
  const auto second = static_cast<unsigned char>(bytes[1]);
  if (count == 1 && first != 0) return first;
  if (count == 2 && first != 0) return static_cast<std::uint16_t>(first << 8 | second);
  return kNoHostForm;
}

}  // namespace

std::uint32_t CodePage::FilledWide(unsigned row, unsigned char trail) const {
  if (pages_->wide_ready[row].load(std::memory_order_acquire) == 0) FillWide(row);
  return pages_->wide[row][trail].load(std::memory_order_relaxed);
}

bool CodePage::FilledIsPair(unsigned row, unsigned char trail) const {
  if (pages_->wide_ready[row].load(std::memory_order_acquire) == 0) FillWide(row);
  return HasPairBit(row, trail);
}

std::uint16_t CodePage::FilledHost(char16_t unit) const {
  const std::size_t page = unit >> 8;
  if (pages_->host_ready[page].load(std::memory_order_acquire) == 0) FillHost(page);
  return pages_->host[page][unit & 0xFF].load(std::memory_order_relaxed);
}

void CodePage::FillWide(unsigned row) const {
  const bool single = row == kLeadRows;
  const auto lead = static_cast<char>((row + 0xA1U) ^ 0x20);
  std::uint64_t valid[4] = {};
  for (unsigned byte = 0; byte < 256; ++byte) {
    const char bytes[2] = {single ? static_cast<char>(byte) : lead, static_cast<char>(byte)};
    pages_->wide[row][byte].store(UnitsOf(*calls_, bytes, single ? 1 : 2), std::memory_order_relaxed);
    if (!single && calls_->is_pair(bytes)) valid[byte / 64] |= std::uint64_t{1} << (byte % 64);
  }
  for (std::size_t word = 0; word < 4; ++word)
    pages_->pairs[row][word].store(valid[word], std::memory_order_relaxed);
  pages_->wide_ready[row].store(1, std::memory_order_release);
}

void CodePage::FillHost(std::size_t page) const {
  for (unsigned low = 0; low < 256; ++low) {
    const auto unit = static_cast<char16_t>(page << 8 | low);
    pages_->host[page][low].store(BytesOf(*calls_, unit), std::memory_order_relaxed);
  }
  pages_->host_ready[page].store(1, std::memory_order_release);
}

}  // namespace wfinfo
