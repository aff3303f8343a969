// UTF-8: all validators agree with each other and with a plain decoder, and the conversion to host text stays
// within its room and never splits a character.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "src/text/host_text.h"
#include "src/text/utf8_text.h"
#include "src/text/wide_text.h"
#include "tests/support/iconv_code_page.h"

namespace {

// Decodes one sequence; its length, 0 when it is not well-formed.
std::size_t PlainLength(std::string_view text) {
  const auto byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  if (byte(0) < 0x80) return 1;
  const std::size_t length = byte(0) >= 0xF0 ? 4 : byte(0) >= 0xE0 ? 3 : 2;
  if (byte(0) < 0xC2 || byte(0) > 0xF4 || length > text.size()) return 0;
  unsigned code = byte(0) & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    code = code << 6 | (byte(i) & 0x3F);
  }
  constexpr unsigned kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return code >= kSmallest[length] && code <= 0x10FFFF && !surrogate ? length : 0;
}

bool PlainIsWellFormed(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = PlainLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const bool well_formed = PlainIsWellFormed(text);
  for (const wfinfo::Utf8Validator* const validator : wfinfo::RunnableUtf8Validators()) {
    Demand(validator->is_well_formed(text) == well_formed);
  }

  const wfinfo::CodePage& code_page = wfinfo_test::IconvCodePage();
  const std::size_t room = wfinfo::Utf8ToHostRoom(text);
  const std::unique_ptr<char[]> host(new char[room]);
  const std::size_t length = wfinfo::Utf8ToHostMbcs(text, host.get(), code_page);
  Demand(length < room);
  // What comes out is whole units: the last one ends where the text does.
  std::string_view rest(host.get(), length);
  while (!rest.empty()) {
    Demand(rest[0] != wfinfo::kEscapeByte || wfinfo::StartsWithEscape(rest) || !well_formed);
    rest.remove_prefix(wfinfo::UnitLength(rest));
  }
  wfinfo::IsLikelyUtf8(text);
  wfinfo::LooksLikeShiftJis(text, code_page);
  // Host text that was written passes the Shift-JIS walk but for the share of rare characters.
  Demand(wfinfo::LooksLikeShiftJis({host.get(), 0}, code_page));
  return 0;
}
