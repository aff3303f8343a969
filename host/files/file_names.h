// Names for files on disk out of names that mails and other programs suggest.
//
//   "..\..\a?b.txt. "    LastComponent: "a?b.txt. "    CleanFileName: "a_b.txt"
//   "NUL"  "aux.tar.gz"  "COM\u00B9.txt"               "_NUL"  "_aux.tar.gz"  "_COM\u00B9.txt"
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wrenfold {

// Longest name that CleanFileName makes unless told otherwise, in UTF-16 units: leaves room for a folder and
// a number in front of it within Windows' 260.
inline constexpr std::size_t kLongestFileName = 200;

// What stands behind the last slash or backslash.
std::u16string_view LastComponent(std::u16string_view path);

// True when Windows takes `name` for a device whatever folder it stands in: CON, PRN, AUX, NUL, COM0 to COM9,
// LPT0 to LPT9 (also with the raised digits 1, 2, 3), CONIN$, CONOUT$ and CLOCK$, in any case, with any
// extension, with blanks behind.
bool IsDeviceName(std::u16string_view name);

// `name` as one that a file of any Windows folder can have, "" when nothing is left of it. Characters that no
// name may hold, slashes included, become "_"; blanks around it and periods behind it go, since Windows drops
// them itself; a device's name gets a "_" in front. At most `longest` units stay, which cut no character in
// half: of a longer name the end of the stem goes, its extension stays.
std::u16string CleanFileName(std::u16string_view name, std::size_t longest = kLongestFileName);

}  // namespace wrenfold
