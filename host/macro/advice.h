// What to write in place of words and signs that other languages have.
#pragma once

#include <string_view>

namespace wrenfold::macro {

// "write 1; 0, \"\" and null are false" for "true", in any letter case; "" for any other word.
std::string_view AdviceForWord(std::string_view word);

// Whether the word, at the beginning of a line, is one that only other languages have: "elseif", "endif".
bool IsForeignStatement(std::string_view word);

// The same for what `source` (UTF-8) begins with, when that is no sign of this language: "write not" for "!".
// Without anything better, how texts are written. `length` is set to the bytes of the sign.
std::string_view AdviceForSign(std::string_view source, std::size_t& length);

}  // namespace wrenfold::macro
