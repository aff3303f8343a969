#include "src/smime/address_words.h"

#include <algorithm>
#include <cstring>

#include "src/text/ascii.h"
#include "src/text/host_text.h"

namespace wfinfo::smime {
namespace {

constexpr char kSeparator[] = ", ";
constexpr std::size_t kSpareBytes = 5;       // behind the last item: separator, "..", terminator
constexpr std::size_t kLongestSigner = 128;  // bytes; an address of this many is not taken

bool IsSameUnit(std::string_view a, std::string_view b) {
  return a.size() == 1 && b.size() == 1 ? LowerAscii(a[0]) == LowerAscii(b[0]) : a == b;
}

// True at the start of a line of `text`. A line that an edit control has folded ends with CR CR LF: what
// follows that is the same line to whoever wrote it.
bool StartsLine(std::string_view text, std::size_t position) {
  const std::string_view before = text.substr(0, position);
  return before.empty() || (before.ends_with('\n') && !before.ends_with("\r\r\n"));
}

std::size_t FindAtLineStart(std::string_view text, std::string_view label) {
  std::size_t found = text.find(label);
  while (found != std::string_view::npos && !StartsLine(text, found)) found = text.find(label, found + 1);
  return found;
}

}  // namespace

bool IsSameAddress(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  while (!a.empty()) {
    const std::string_view unit = NextUnit(a);
    const std::string_view other = NextUnit(b);
    if (!IsSameUnit(unit, other)) return false;
    a.remove_prefix(unit.size());
    b.remove_prefix(other.size());
  }
  return true;
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

bool AddressListWriter::Add(std::string_view address) {
  if (ended_) return false;
  if (used_ > 0) Append(kSeparator);
  // An item is written when it is shorter than the space left.
  ended_ = used_ + address.size() >= limit_;
  char* const item = buffer_ + used_;
  Append(ended_ ? ".." : address);
  std::replace(item, buffer_ + used_, ',', '?');
  return !ended_;
}

std::string_view FurtherAddresses(std::string_view list) {
  const std::size_t separator = list.find(kSeparator);
  return separator == std::string_view::npos ? std::string_view{} : list.substr(separator + 2);
}

std::string_view SignerAddressIn(std::string_view report, std::string_view label) {
  const std::size_t found = FindAtLineStart(report, label);
  if (found == std::string_view::npos || report.size() - found < kSignerAddressOffset) return {};
  const std::string_view rest = report.substr(found + kSignerAddressOffset);
  const auto end =
      std::find_if(rest.begin(), rest.end(), [](char c) { return static_cast<unsigned char>(c) <= ' '; });
  const auto length = static_cast<std::size_t>(end - rest.begin());
  return length < kLongestSigner ? rest.substr(0, length) : std::string_view{};
}

bool IsHttpUrl(std::string_view url) { return StartsWithIgnoringCase(url, "http:"); }

}  // namespace wfinfo::smime
