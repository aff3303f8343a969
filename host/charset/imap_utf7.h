// IMAP's modified UTF-7 for the names of mail folders (RFC 3501, 5.1.3):
//
//   name    = *( direct / "&-" / shifted )
//   direct  = %x20-25 / %x27-7E           stands for itself; "&-" is an ampersand
//   shifted = "&" 1*base64 "-"            UTF-16, high byte first, in base 64 with "," for "/", not padded
//
//   "Entw&APw-rfe"    Entwuerfe with its u umlaut
//
// Each name has one form: nothing that can stand for itself is shifted, and two shifts do not follow
// one another.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

// Half a character becomes U+FFFD.
std::string ToImapUtf7(std::u16string_view name);

// nullopt for what is no such name: a byte outside 0x20 to 0x7E, a shift without its end, a wrong character,
// bits left over that are not 0, half a character. Forms that a careless writer makes (ASCII in a shift,
// shifts next to one another) are read.
std::optional<std::u16string> FromImapUtf7(std::string_view encoded);

}  // namespace wrenfold
