#include "smime/address_words.h"

#include <algorithm>
#include <cstring>

namespace wfinfo::smime {
namespace {

constexpr char kSeparator[] = ", ";
constexpr std::size_t kSpareBytes = 5;       // behind the last item: separator, "..", terminator
constexpr std::size_t kLongestSigner = 128;  // bytes; an address of this many is not taken

char Lowered(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte; }

bool EndsAddress(std::string_view rest) {
  if (rest.empty()) return true;
  const auto next = static_cast<unsigned char>(rest[0]);
  return next <= ' ' || next == 0x7F || next == ',';
}

}  // namespace

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && StartsWithIgnoringCase(a, b);
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && std::equal(start.begin(), start.end(), text.begin(),
                                                   [](char a, char b) { return Lowered(a) == Lowered(b); });
}

std::size_t CountRecipients(std::string_view list) {
  return 1 + static_cast<std::size_t>(std::count(list.begin(), list.end(), ' '));
}

std::string_view RecipientAt(std::string_view list, std::size_t index) {
  for (; index > 0; --index) {
    const std::size_t blank = list.find(' ');
    if (blank == std::string_view::npos) return {};
    list.remove_prefix(blank + 1);
  }
  return list.substr(0, list.find(' '));
}

AddressListWriter::AddressListWriter(char* buffer, std::size_t capacity)
    : buffer_(buffer), limit_(capacity - kSpareBytes) {
  Append("");
}

void AddressListWriter::Append(std::string_view text) {
  std::memcpy(buffer_ + used_, text.data(), text.size());
  used_ += text.size();
  buffer_[used_] = '\0';
}

void AddressListWriter::Add(std::string_view address) {
  if (ended_) return;
  if (used_ > 0) Append(kSeparator);
  // An item is written when it is shorter than the space left.
  ended_ = used_ + address.size() >= limit_;
  Append(ended_ ? ".." : address);
}

std::string_view FurtherAddresses(std::string_view list) {
  const std::size_t separator = list.find(kSeparator);
  return separator == std::string_view::npos ? std::string_view{} : list.substr(separator + 2);
}

bool ListHoldsSender(std::string_view list, std::string_view sender) {
  for (std::string_view rest = list; !rest.empty(); rest = FurtherAddresses(rest)) {
    if (StartsWithIgnoringCase(rest, sender) && EndsAddress(rest.substr(sender.size()))) return true;
  }
  return false;
}

std::string_view SignerAddressIn(std::string_view report, std::string_view label) {
  const std::size_t found = report.find(label);
  if (found == std::string_view::npos || report.size() - found < kSignerAddressOffset) return {};
  const std::string_view rest = report.substr(found + kSignerAddressOffset);
  const auto end =
      std::find_if(rest.begin(), rest.end(), [](char c) { return static_cast<unsigned char>(c) <= ' '; });
  const auto length = static_cast<std::size_t>(end - rest.begin());
  return length < kLongestSigner ? rest.substr(0, length) : std::string_view{};
}

bool IsHttpUrl(std::string_view url) { return StartsWithIgnoringCase(url, "http:"); }

}  // namespace wfinfo::smime
