#include "src/smime/mail_names.h"

#include <cstddef>

namespace wfinfo::smime {
namespace {

constexpr unsigned char kSequence = 0x30;
constexpr unsigned char kMailName = 0x81;
constexpr unsigned char kLongTag = 0x1F;     // all low bits set: the tag goes on in the next byte
constexpr std::size_t kMostLengthBytes = 4;  // a longer length fits into no certificate

struct Element {
  unsigned char tag = 0;
  std::string_view content;
};

// Takes the first element off `bytes`; nothing when it is cut short or not in the definite form.
std::optional<Element> Take(std::string_view& bytes) {
  const auto at = [&bytes](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
  if (bytes.size() < 2 || (at(0) & kLongTag) == kLongTag) return std::nullopt;
  std::size_t header = 2;
  std::size_t length = at(1);
  if (length >= 0x80) {
    const std::size_t count = length & 0x7F;
    if (count == 0 || count > kMostLengthBytes || bytes.size() < header + count) return std::nullopt;
    length = 0;
    for (std::size_t i = 0; i < count; ++i) length = length << 8 | at(header + i);
    header += count;
  }
  if (bytes.size() - header < length) return std::nullopt;
  const Element element = {at(0), bytes.substr(header, length)};
  bytes.remove_prefix(header + length);
  return element;
}

}  // namespace

MailNames::MailNames(std::string_view encoded) {
  const std::optional<Element> names = Take(encoded);
  if (names && names->tag == kSequence) rest_ = names->content;
}

std::optional<std::string_view> MailNames::Next() {
  while (const std::optional<Element> name = Take(rest_)) {
    if (name->tag == kMailName) return name->content;
  }
  return std::nullopt;  // what is left is not taken: the next call fails alike
}

}  // namespace wfinfo::smime
