#include "tests/doubles/crypt32/ber.h"

#include <cstdlib>

namespace ber {
namespace {

constexpr unsigned kConstructed = 0x20;
constexpr int kDeepest = 32;

// Length of the elements in `bytes` up to the end mark of an indefinite length; npos when there is none.
std::size_t UpToEndMark(std::string_view bytes, int depth);

Element FirstAt(std::string_view bytes, int depth) {
  Element element;
  if (bytes.size() < 2 || depth > kDeepest) return element;
  const auto byte = [&bytes](std::size_t at) {
    return static_cast<std::size_t>(static_cast<unsigned char>(bytes[at]));
  };
  if ((byte(0) & 0x1F) == 0x1F) return element;  // long tags are not used here
  std::size_t header = 2;
  std::size_t length = byte(1);
  std::size_t tail = 0;
  if (length == 0x80) {
    length = UpToEndMark(bytes.substr(2), depth + 1);
    if (length == std::string_view::npos) return element;
    tail = 2;
  } else if (length > 0x80) {
    const std::size_t count = length & 0x7F;
    if (count > 4 || bytes.size() < 2 + count) return element;
    length = 0;
    for (std::size_t i = 0; i < count; ++i) length = length << 8 | byte(2 + i);
    header += count;
  }
  if (bytes.size() - header < length + tail) return element;
  element.tag = static_cast<unsigned>(byte(0));
  element.whole = bytes.substr(0, header + length + tail);
  element.content = bytes.substr(header, length);
  return element;
}

std::size_t UpToEndMark(std::string_view bytes, int depth) {
  for (std::size_t at = 0; at + 2 <= bytes.size();) {
    if (bytes[at] == 0 && bytes[at + 1] == 0) return at;
    const Element element = FirstAt(bytes.substr(at), depth);
    if (!element) break;
    at += element.whole.size();
  }
  return std::string_view::npos;
}

}  // namespace

Element First(std::string_view bytes) { return FirstAt(bytes, 0); }

std::vector<Element> Element::Children() const {
  std::vector<Element> children;
  for (std::string_view rest = content; !rest.empty();) {
    const Element child = First(rest);
    if (!child) return {};
    children.push_back(child);
    rest.remove_prefix(child.whole.size());
  }
  return children;
}

Bytes Element::Joined() const {
  if ((tag & kConstructed) == 0) return Bytes(content);
  Bytes joined;
  for (const Element& piece : Children()) joined += piece.Joined();
  return joined;
}

Bytes Write(unsigned tag, const Bytes& content) {
  Bytes out(1, static_cast<char>(tag));
  if (content.size() < 0x80) {
    out += static_cast<char>(content.size());
  } else {
    Bytes length;
    for (std::size_t rest = content.size(); rest != 0; rest >>= 8)
      length.insert(length.begin(), static_cast<char>(rest));
    out += static_cast<char>(0x80 | length.size());
    out += length;
  }
  return out + content;
}

Bytes Oid(const char* dotted) {
  std::vector<unsigned long> arcs;
  for (const char* at = dotted;; ++at) {
    char* end = nullptr;
    arcs.push_back(std::strtoul(at, &end, 10));
    at = end;
    if (*at == '\0') break;
  }
  arcs[1] += arcs[0] * 40;
  Bytes out;
  for (std::size_t i = 1; i < arcs.size(); ++i) {
    Bytes septets(1, static_cast<char>(arcs[i] & 0x7F));
    for (unsigned long rest = arcs[i] >> 7; rest != 0; rest >>= 7) {
      septets.insert(septets.begin(), static_cast<char>(0x80 | (rest & 0x7F)));
    }
    out += septets;
  }
  return out;
}

}  // namespace ber
