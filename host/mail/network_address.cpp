#include "host/mail/network_address.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

constexpr std::size_t kMappedAt = 12;  // of the four bytes of an IPv4 address

struct Block {
  std::string_view first;  // address
  int bits;                // of the prefix; of an IPv4 block, those of its four bytes
  std::string_view name;
  bool is_inside = false;
};

// Of blocks within one another the smaller stands first.
constexpr Block kBlocks[] = {
    {"0.0.0.0", 8, "This network"},
    {"10.0.0.0", 8, "Private-Use", true},
    {"100.64.0.0", 10, "Shared Address Space", true},
    {"127.0.0.0", 8, "Loopback", true},
    {"169.254.0.0", 16, "Link Local", true},
    {"172.16.0.0", 12, "Private-Use", true},
    {"192.0.2.0", 24, "Documentation (TEST-NET-1)"},
    {"192.0.0.0", 24, "IETF Protocol Assignments"},
    {"192.88.99.0", 24, "Deprecated (6to4 Relay Anycast)"},
    {"192.168.0.0", 16, "Private-Use", true},
    {"198.18.0.0", 15, "Benchmarking"},
    {"198.51.100.0", 24, "Documentation (TEST-NET-2)"},
    {"203.0.113.0", 24, "Documentation (TEST-NET-3)"},
    {"224.0.0.0", 4, "Multicast"},
    {"255.255.255.255", 32, "Limited Broadcast"},
    {"240.0.0.0", 4, "Reserved"},
    {"::1", 128, "Loopback", true},
    {"::", 128, "Unspecified Address"},
    {"64:ff9b::", 96, "IPv4-IPv6 Translat."},
    {"100::", 64, "Discard-Only Address Block"},
    {"2001:db8::", 32, "Documentation"},
    {"2002::", 16, "6to4"},
    {"3fff::", 20, "Documentation"},
    {"fc00::", 7, "Unique-Local", true},
    {"fe80::", 10, "Link-Local Unicast", true},
    {"ff00::", 8, "Multicast"},
};

// A number without sign of 1 to `longest` digits in `base`, all of `text`.
std::optional<unsigned> Number(std::string_view text, int base, std::size_t longest) {
  unsigned value = 0;
  const char* end = text.data() + text.size();
  if (text.empty() || text.size() > longest || HexValue(text[0]) < 0) return std::nullopt;
  const auto read = std::from_chars(text.data(), end, value, base);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return value;
}

// Four numbers up to 255 into `bytes`.
bool ReadDotted(std::string_view text, std::uint8_t* bytes) {
  for (int i = 0; i < 4; ++i) {
    const std::size_t end = i < 3 ? text.find('.') : text.size();
    if (end == text.npos) return false;
    const auto number = Number(text.substr(0, end), 10, 3);
    if (!number || *number > 255) return false;
    bytes[i] = static_cast<std::uint8_t>(*number);
    text.remove_prefix(i < 3 ? end + 1 : end);
  }
  return true;
}

// Groups of four hexadecimal digits between colons, the last two of them maybe dotted, into `bytes`. Returns
// their number of bytes, nullopt for anything else.
std::optional<std::size_t> ReadGroups(std::string_view text, std::uint8_t (&bytes)[16]) {
  std::size_t filled = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(':'), text.size());
    const std::string_view group = text.substr(0, end);
    if (end == text.size() && group.find('.') != group.npos) {
      if (filled > kMappedAt || !ReadDotted(group, bytes + filled)) return std::nullopt;
      return filled + 4;
    }
    const auto number = Number(group, 16, 4);
    if (!number || filled == 16) return std::nullopt;
    bytes[filled++] = static_cast<std::uint8_t>(*number >> 8);
    bytes[filled++] = static_cast<std::uint8_t>(*number & 0xFF);
    if (end + 1 == text.size()) return std::nullopt;  // a colon with nothing behind it
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return filled;
}

std::optional<NetworkAddress> ReadV6(std::string_view text) {
  const std::size_t gap = text.find("::");
  std::uint8_t front[16];
  std::uint8_t back[16];
  const auto before = ReadGroups(text.substr(0, gap), front);
  const auto behind =
      gap == text.npos ? std::optional<std::size_t>(0) : ReadGroups(text.substr(gap + 2), back);
  if (!before || !behind) return std::nullopt;
  if (gap == text.npos ? *before != 16 : *before + *behind > 14) return std::nullopt;
  NetworkAddress address{};
  std::copy_n(front, *before, address.begin());
  std::copy_n(back, *behind, address.end() - static_cast<std::ptrdiff_t>(*behind));
  return address;
}

const Block* BlockOf(const NetworkAddress& address) {
  for (const Block& block : kBlocks) {
    const auto first = ReadNetworkAddress(block.first);
    const bool is_v4 = block.first.find(':') == block.first.npos;
    const auto bits = static_cast<std::size_t>(block.bits) + (is_v4 ? kMappedAt * 8 : 0);
    const auto whole = static_cast<std::ptrdiff_t>(bits / 8);
    const auto mask = static_cast<std::uint8_t>(0xFF00 >> (bits % 8));
    const bool same = std::equal(first->begin(), first->begin() + whole, address.begin());
    if (same && (bits % 8 == 0 || ((*first)[bits / 8] & mask) == (address[bits / 8] & mask))) return &block;
  }
  return nullptr;
}

}  // namespace

std::optional<NetworkAddress> ReadNetworkAddress(std::string_view text) {
  if (text.find(':') != text.npos) return ReadV6(text);
  NetworkAddress address{};
  address[10] = address[11] = 0xFF;
  if (!ReadDotted(text, address.data() + kMappedAt)) return std::nullopt;
  return address;
}

std::string_view SpecialPurpose(const NetworkAddress& address) {
  const Block* block = BlockOf(address);
  return block == nullptr ? "" : block->name;
}

bool IsInside(const NetworkAddress& address) {
  const Block* block = BlockOf(address);
  return block != nullptr && block->is_inside;
}

}  // namespace wrenfold
