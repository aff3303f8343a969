// The code page tables of the native build: iconv.
#ifndef _WIN32
#include <iconv.h>

#include <cerrno>

#include "host/charset/charsets.h"
#include "host/charset/unicode.h"
#include "src/text/code_page.h"

namespace wrenfold {
namespace {

struct PageName {
  unsigned code_page;
  const char* name;
};

// The others are called "CP" and their number, or "ISO-8859-" and what is above 28590.
constexpr PageName kNamedPages[] = {
    {20866, "KOI8-R"},    {21866, "KOI8-U"},       {54936, "GB18030"},           {20932, "EUC-JP"},
    {10000, "MACINTOSH"}, {10007, "MAC-CYRILLIC"}, {10029, "MAC-CENTRALEUROPE"}, {20273, "CP273"},
    {20424, "CP424"},     {1361, "JOHAB"}};

std::string IconvName(unsigned code_page) {
  for (const PageName& row : kNamedPages) {
    if (row.code_page == code_page) return row.name;
  }
  if (code_page > 28590 && code_page < 28610) return "ISO-8859-" + std::to_string(code_page - 28590);
  return "CP" + std::to_string(code_page);
}

// Owns one conversion to UTF-16.
class Iconv {
 public:
  explicit Iconv(unsigned code_page) : handle_(iconv_open("UTF-16LE", IconvName(code_page).c_str())) {}
  ~Iconv() {
    if (IsOpen()) iconv_close(handle_);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  bool IsOpen() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

  // Converts as far as it goes; `bytes` keeps what is left.
  void Convert(std::string_view& bytes, std::u16string& wide) const {
    char* in = const_cast<char*>(bytes.data());  // iconv's parameter type; it does not write there
    std::size_t in_left = bytes.size();
    constexpr std::size_t kRoomForLast = 8;
    char buffer[1024 + kRoomForLast];
    do {
      char* out = buffer;
      std::size_t out_left = sizeof buffer - kRoomForLast;
      errno = 0;
      iconv(handle_, &in, &in_left, &out, &out_left);
      const int error = errno;
      // A letter that waits for its accent is given out.
      if (in_left == 0 && error != E2BIG) {
        out_left += kRoomForLast;
        iconv(handle_, nullptr, nullptr, &out, &out_left);
      }
      for (const char* unit = buffer; unit < out; unit += 2) {
        wide += static_cast<char16_t>(static_cast<unsigned char>(unit[0]) |
                                      static_cast<unsigned char>(unit[1]) << 8);
      }
      if (error != E2BIG) break;
    } while (in_left > 0);
    bytes.remove_prefix(bytes.size() - in_left);
  }

 private:
  iconv_t handle_;
};

// JIS X 0212 in code page 20932 lacks the prefix that EUC-JP has.
std::string EucOf20932(std::string_view bytes) {
  const bool jis0212 = bytes.size() == 2 && (bytes[0] & 0x80) != 0 && (bytes[1] & 0x80) == 0;
  if (!jis0212) return std::string(bytes);
  return {'\x8F', bytes[0], static_cast<char>(bytes[1] | 0x80)};
}

class NativeCodePages final : public CodePageConverter {
 public:
  std::optional<std::u16string> ToWide(unsigned code_page, std::string_view bytes) const override {
    if (code_page == wfinfo::kCodePageShiftJis) return ToWide(shift_jis_, bytes);
    const Iconv page(code_page);
    if (!page.IsOpen()) return std::nullopt;
    if (code_page == 20932) return ToWide(page, EucOf20932(bytes));
    return ToWide(page, bytes);
  }

 private:
  static std::optional<std::u16string> ToWide(const Iconv& page, std::string_view bytes) {
    if (!page.IsOpen()) return std::nullopt;
    std::u16string wide;
    while (!bytes.empty()) {
      page.Convert(bytes, wide);
      if (bytes.empty()) break;
      wide += kReplacement;
      bytes.remove_prefix(1);
    }
    return wide;
  }

  Iconv shift_jis_{wfinfo::kCodePageShiftJis};  // asked for each of its characters when the tables are built
};

}  // namespace

const CodePageConverter& SystemCodePages() {
  static const NativeCodePages pages;
  return pages;
}

}  // namespace wrenfold
#endif
