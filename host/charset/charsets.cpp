#include "host/charset/charsets.h"

#include <algorithm>

#include "host/charset/east_asian.h"
#include "host/charset/japanese.h"
#include "host/charset/likely.h"
#include "host/charset/names.h"
#include "host/charset/unicode.h"
#include "src/text/code_page.h"
#include "src/text/host_text.h"
#include "src/text/wide_text.h"

namespace wrenfold {
namespace {

constexpr std::size_t kUnits = 0x10000;

// What Windows-1252 has in 0x80-0x9F; its five holes stay C1 controls.
constexpr char16_t kWindows1252High[] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                         0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                         0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                         0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
static_assert(std::size(kWindows1252High) == 32);

std::u16string DecodeWindows1252(std::string_view bytes) {
  std::u16string wide;
  wide.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    wide += byte >= 0x80 && byte < 0xA0 ? kWindows1252High[byte - 0x80] : static_cast<char16_t>(byte);
  }
  return wide;
}

bool IsSevenBit(std::string_view bytes) {
  return std::none_of(bytes.begin(), bytes.end(),
                      [](char c) { return (static_cast<unsigned char>(c) & 0x80) != 0; });
}

// Whole characters of UTF-8 for each broken byte that make a text UTF-8 against what its charset says.
std::size_t Utf8Ratio(const CharsetName* declared) {
  if (declared == nullptr || declared->seven_bit) return 2;
  return IsUnicode(declared->encoding) ? 1 : 4;
}

// ASCII, half-width katakana; Windows gives the bytes that Shift-JIS leaves free to C1 and
// private characters.
constexpr char16_t WideOfSingle(std::size_t byte) {
  if (byte <= 0x80) return static_cast<char16_t>(byte);
  if (byte == 0xA0) return 0xF8F0;
  return static_cast<char16_t>(byte < 0xFD ? 0xFF61 + byte - 0xA1 : 0xF8F1 + byte - 0xFD);
}

}  // namespace

class Charsets::Tables final : public JisTables {
 public:
  explicit Tables(const Charsets& charsets) : charsets_(charsets) {}

  char16_t OfShiftJis(unsigned code) const override { return charsets_.WideOf932(code); }

  char16_t OfJis0212(unsigned row, unsigned cell) const override {
    const char pair[] = {static_cast<char>(row | 0x80), static_cast<char>(cell)};
    const auto wide = charsets_.pages_.ToWide(20932, {pair, 2});
    return wide && wide->size() == 1 ? wide->front() : kReplacement;
  }

 private:
  const Charsets& charsets_;
};

// Where several codes give one character, Windows writes the one of JIS X 0208, else of NEC row 13, else of
// the IBM extensions, and never that of the NEC selection (0xED, 0xEE): the order of adding.
Charsets::Charsets(const CodePageConverter& pages)
    : pages_(pages), wide_of_932_(kUnits, kReplacement), code_of_wide_(kUnits, u'\0') {
  AddSingles();
  AddRows(0x81, 0x9F);
  AddRows(0xE0, 0xEC);
  AddRows(0xEF, 0xFC);
  AddRows(0xED, 0xEE);
}

void Charsets::AddSingles() {
  for (std::size_t byte = 0; byte < 0x100; ++byte) {
    if (wfinfo::IsLeadByte(static_cast<char>(byte))) continue;
    const char16_t unit = WideOfSingle(byte);
    wide_of_932_[byte] = unit;
    code_of_wide_[unit] = static_cast<char16_t>(byte);
  }
  code_of_wide_[0x1A] = 0;  // a 0x1A of the text itself must be escaped
}

void Charsets::AddRows(unsigned first_lead, unsigned last_lead) {
  for (unsigned lead = first_lead; lead <= last_lead; ++lead) {
    for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
      const char pair[] = {static_cast<char>(lead), static_cast<char>(trail)};
      const auto wide = pages_.ToWide(wfinfo::kCodePageShiftJis, {pair, 2});
      if (!wide || wide->size() != 1 || wide->front() == kReplacement) continue;
      const std::size_t code = lead << 8 | trail;
      wide_of_932_[code] = wide->front();
      char16_t& slot = code_of_wide_[wide->front()];
      if (slot == 0) slot = static_cast<char16_t>(code);
    }
  }
}

std::u16string Charsets::Decode(std::string_view name, std::string_view bytes) const {
  const CharsetName* charset = FindCharset(name);
  if (charset == nullptr) return DecodeWindows1252(bytes);
  switch (charset->encoding) {
    case Encoding::kUtf8:
      return Utf8ToWide(bytes);
    case Encoding::kUtf7:
      return DecodeUtf7(bytes);
    case Encoding::kUtf16:
    case Encoding::kUtf16Big:
      return DecodeUtf16(bytes, charset->encoding == Encoding::kUtf16Big);
    case Encoding::kUtf16Any:
      return DecodeUtf16(bytes, !LooksLittleEndian(bytes));
    case Encoding::kUtf32:
    case Encoding::kUtf32Big:
      return DecodeUtf32(bytes, charset->encoding == Encoding::kUtf32Big);
    case Encoding::kIso2022Jp:
      return DecodeIso2022Jp(bytes, Tables(*this));
    case Encoding::kShiftJis:
      return DecodeShiftJis(bytes, Tables(*this));
    case Encoding::kEucJp:
      return DecodeEucJp(bytes, Tables(*this));
    case Encoding::kWindows1252:
      return DecodeWindows1252(bytes);
    default:
      return DecodeCodePage(*charset, bytes);
  }
}

std::u16string Charsets::DecodeCodePage(const CharsetName& charset, std::string_view bytes) const {
  if (charset.encoding == Encoding::kHz) return DecodeHz(bytes, charset.code_page, pages_);
  if (charset.encoding == Encoding::kIso2022Kr) return DecodeIso2022Kr(bytes, charset.code_page, pages_);
  auto wide = pages_.ToWide(charset.code_page, bytes);
  if (!wide && charset.encoding == Encoding::kGb18030) return DecodeGb18030(bytes, charset.instead, pages_);
  if (!wide && charset.instead != 0) wide = pages_.ToWide(charset.instead, bytes);
  return wide ? *std::move(wide) : DecodeWindows1252(bytes);
}

std::u16string Charsets::Guess(std::string_view declared, std::string_view bytes) const {
  if (IsSevenBit(bytes)) {
    if (HasIso2022Escape(bytes)) return Decode("iso-2022-jp", bytes);
    return DecodeWindows1252(bytes);
  }
  const CharsetName* charset = FindCharset(declared);
  if (IsLikelyUtf8(bytes, Utf8Ratio(charset))) return Utf8ToWide(bytes);
  if (charset == nullptr && !NamesNoCharset(declared)) return DecodeWindows1252(bytes);
  if (IsEightBitCharset(declared)) return Decode(declared, bytes);
  const Tables tables(*this);
  const bool japanese = charset != nullptr && charset->encoding == Encoding::kIso2022Jp;
  switch (LikelyCharset(bytes, japanese, tables)) {
    case Likely::kEucJp:
      return DecodeEucJp(bytes, tables);
    case Likely::kShiftJis:
      return DecodeShiftJis(bytes, tables);
    default:
      return DecodeWindows1252(bytes);
  }
}

std::u16string Charsets::DecodeDeclared(std::string_view declared, std::string_view bytes) const {
  const CharsetName* charset = FindCharset(declared);
  if (charset == nullptr) return Guess(declared, bytes);
  if (!charset->seven_bit) return Decode(declared, bytes);
  const bool ascii = charset->encoding == Encoding::kWindows1252;
  const bool japanese = charset->encoding == Encoding::kIso2022Jp && HasIso2022Escape(bytes);
  return japanese || (!ascii && IsSevenBit(bytes)) ? Decode(declared, bytes) : Guess(declared, bytes);
}

std::string Charsets::ToHostText(std::u16string_view wide) const {
  std::string host;
  host.reserve(wide.size() * 2);
  for (const char16_t unit : wide) {
    const unsigned code = code_of_wide_[unit];
    if (code == 0 && unit != 0) {
      char escape[wfinfo::kEscapeLength];
      host.append(escape, wfinfo::WriteEscape(escape, unit));
      continue;
    }
    if (code > 0xFF) host += static_cast<char>(code >> 8);
    host += static_cast<char>(code & 0xFF);
  }
  return host;
}

// Bytes outside escapes are plain Shift-JIS; only a whole escape is special.
std::u16string Charsets::FromHostText(std::string_view host) const {
  const Tables tables(*this);
  std::u16string wide;
  while (!host.empty()) {
    std::size_t plain = 0;
    while (plain < host.size() && !wfinfo::StartsWithEscape(host.substr(plain))) {
      plain += wfinfo::UnitLength(host.substr(plain));
    }
    wide += DecodeShiftJis(host.substr(0, plain), tables);
    host.remove_prefix(plain);
    if (host.empty()) break;
    wide += wfinfo::EscapedUnit(host.data());
    host.remove_prefix(wfinfo::kEscapeLength);
  }
  return wide;
}

std::string Charsets::HostToUtf8(std::string_view host) const { return WideToUtf8(FromHostText(host)); }
std::string Charsets::Utf8ToHost(std::string_view utf8) const { return ToHostText(Utf8ToWide(utf8)); }

std::string Charsets::ForeignToUtf8(std::string_view bytes) const {
  bool escaped = false;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    escaped = escaped || wfinfo::StartsWithEscape(bytes.substr(at));
  }
  return !escaped && IsValidUtf8(bytes) ? std::string(bytes) : HostToUtf8(bytes);
}

const Charsets& SystemCharsets() {
  static const Charsets charsets(SystemCodePages());
  return charsets;
}

}  // namespace wrenfold
