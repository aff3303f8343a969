#include "host/charset/text_file.h"

#include <algorithm>

#include "host/base/utf8_mark.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

constexpr std::string_view kLittleEndian = "\xFF\xFE";
constexpr std::string_view kBigEndian = "\xFE\xFF";

unsigned Byte(char c) { return static_cast<unsigned char>(c); }

std::u16string Utf16(std::string_view bytes, bool big_endian) {
  std::u16string wide;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const unsigned high = Byte(bytes[big_endian ? at : at + 1]);
    const unsigned low = Byte(bytes[big_endian ? at + 1 : at]);
    wide += static_cast<char16_t>(high << 8 | low);
  }
  return wide;
}

// Without the beginning of a character that does not fit in `limit` bytes.
std::string_view CutUtf8(std::string_view bytes, std::size_t limit) {
  if (bytes.size() <= limit) return bytes;
  std::size_t length = limit;
  while (length > 0 && (Byte(bytes[length]) & 0xC0) == 0x80) --length;
  return bytes.substr(0, length);
}

// An escape of host text can look like a character of UTF-8; plain UTF-8 has no 0x1A.
bool LooksLikeUtf8(std::string_view bytes) {
  const bool ascii = std::all_of(bytes.begin(), bytes.end(), [](char c) { return Byte(c) < 0x80; });
  return !ascii && bytes.find(wfinfo::kEscapeByte) == std::string_view::npos && IsValidUtf8(bytes);
}

std::string Decoded(std::string_view bytes, std::size_t limit, const Charsets& charsets) {
  for (const std::string_view mark : {kLittleEndian, kBigEndian}) {
    if (bytes.starts_with(mark)) {
      return charsets.ToHostText(Utf16(bytes.substr(0, limit).substr(mark.size()), mark == kBigEndian));
    }
  }
  const std::string_view utf8 = CutUtf8(bytes, limit);
  if (utf8.starts_with(kUtf8Mark) || LooksLikeUtf8(utf8)) return charsets.Utf8ToHost(WithoutUtf8Mark(utf8));
  return std::string(bytes.size() <= limit ? bytes : bytes.substr(0, wfinfo::CutBefore(bytes, limit)));
}

}  // namespace

std::string HostTextOfFile(std::string_view bytes, std::size_t limit, const Charsets& charsets) {
  std::string text = limit < 3 ? std::string() : Decoded(bytes, limit, charsets);
  text.resize(std::min(text.size(), text.find('\0')));
  return text;
}

}  // namespace wrenfold
