// Words that users have for what exports, the language and the prompt name otherwise.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

struct Synonym {
  std::string_view asked;  // phrases with | between them; one fits when all its words are asked for
  std::string_view names;  // of exports and entries, the likeliest first, with blanks between them
};

std::span<const Synonym> Synonyms();

// The English words for the Japanese ones that `asked` (UTF-8) holds.
std::string EnglishWords(std::string_view asked);

}  // namespace wrenfold
