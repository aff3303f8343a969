// UTF-8: whether a text is it, and its way into host text.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "src/text/code_page.h"

namespace wfinfo {

// True when `text` is well-formed: shortest forms only, no surrogates, nothing above U+10FFFF. An empty
// text is.
bool IsWellFormedUtf8(std::string_view text);

// The routines behind it, slowest first; all that this processor runs.
struct Utf8Validator {
  const char* name;
  bool (*is_well_formed)(std::string_view text);
};
std::span<const Utf8Validator* const> RunnableUtf8Validators();

// True when `text` looks like UTF-8 rather than like Shift-JIS: multi-byte sequences are complete, and every
// character lies in a block that mail is written in. Plain ASCII is not: it needs no conversion. Forms that
// are not the shortest pass, and characters above U+FFFF count by their low 16 bits. A byte-order mark as the first character beyond ASCII settles it at once.
bool IsLikelyUtf8(std::string_view text);

// Room in bytes that Utf8ToHostMbcs needs for `text`, a terminator included.
std::size_t Utf8ToHostRoom(std::string_view text);

// Converts UTF-8 to host text and returns the bytes written; nothing is terminated. What code page 932 cannot
// hold becomes an escape; a character above U+FFFF, a byte that starts no sequence and U+0000 become "?";
// U+FEFF is dropped; a sequence that the end of the text cuts short ends the conversion.
std::size_t Utf8ToHostMbcs(std::string_view text, char* out, const CodePage& code_page);

// The Shift-JIS test: all bytes form characters of code page 932, and rare ones (lead byte from 0x99 on) are
// at most twice as many as common ones. An empty text passes.
bool LooksLikeShiftJis(std::string_view text, const CodePage& code_page);

}  // namespace wfinfo
