// Character sets of mail to UTF-16, and UTF-16 to and from host text.
//
//   bytes + charset name --Decode--> UTF-16 --ToHostText--> host text
//   host text --FromHostText--> UTF-16 --WideToUtf8--> UTF-8
//
// Nothing here throws for bad input: what cannot be decoded becomes U+FFFD, one for each such byte
// or character.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

struct CharsetName;

// The system's conversion tables: the only part of the decoding that differs between systems.
class CodePageConverter {
 public:
  virtual ~CodePageConverter() = default;
  // `bytes` of the Windows code page `code_page` as UTF-16, U+FFFD for what it does not define; nullopt when
  // the system does not have the page. Code page 20932 means pairs of JIS X 0208 (both bytes with bit 7) and
  // JIS X 0212 (only the first byte with bit 7).
  virtual std::optional<std::u16string> ToWide(unsigned code_page, std::string_view bytes) const = 0;
};

// Code page tables of the system that the program runs on (iconv natively).
const CodePageConverter& SystemCodePages();

class Charsets {
 public:
  // Builds the tables of code page 932 from `pages`, which must outlive this object.
  explicit Charsets(const CodePageConverter& pages);

  // Decodes `bytes`. An unknown or empty name is read as Windows-1252, so that ASCII is never lost.
  std::u16string Decode(std::string_view name, std::string_view bytes) const;

  // Decodes bytes whose charset is not, or not reliably, known: 7-bit ones as ISO-2022-JP when they hold its
  // escape sequences, else as ASCII; 8-bit ones as UTF-8 when they are but for a few broken bytes (the more
  // `declared` speaks against it, the fewer), else as `declared` when that is an 8-bit charset (a name that
  // is not known counts as one), else as what is likely of EUC-JP, code page 932 and Windows-1252.
  std::u16string Guess(std::string_view declared, std::string_view bytes) const;

  // Decodes a body: as `declared` when its bytes can be of that charset, else by Guess.
  std::u16string DecodeDeclared(std::string_view declared, std::string_view bytes) const;

  // Host text: code page 932, and the four-byte escape for each UTF-16 unit that it does not hold (a
  // character outside the BMP is two escapes). Zero units are kept as zero bytes.
  std::string ToHostText(std::u16string_view wide) const;
  std::u16string FromHostText(std::string_view host) const;

  std::string HostToUtf8(std::string_view host) const;
  std::string Utf8ToHost(std::string_view utf8) const;

  // UTF-8 of bytes that another program passed on as they were: UTF-8 when they are valid UTF-8 and hold
  // no escape, else host text. Half-width katakana of Shift-JIS can happen to be valid UTF-8; they are
  // read as it.
  std::string ForeignToUtf8(std::string_view bytes) const;

 private:
  class Tables;

  std::u16string DecodeCodePage(const CharsetName& charset, std::string_view bytes) const;
  void AddSingles();
  void AddRows(unsigned first_lead, unsigned last_lead);
  char16_t WideOf932(std::size_t code) const { return wide_of_932_[code]; }

  const CodePageConverter& pages_;
  std::u16string wide_of_932_;   // by code, one byte or two; U+FFFD when undefined
  std::u16string code_of_wide_;  // by UTF-16 unit; 0 when code page 932 does not hold it
};

// Over SystemCodePages(), made at the first use.
const Charsets& SystemCharsets();

// UTF-8 with every malformed byte as U+FFFD, and back (a lone surrogate as U+FFFD).
std::u16string Utf8ToWide(std::string_view utf8);
std::string WideToUtf8(std::u16string_view wide);
bool IsValidUtf8(std::string_view bytes);

}  // namespace wrenfold
