#include "host/library/help_words.h"

#include <cstddef>
#include <utility>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

using wfinfo::IsLower;
using wfinfo::IsUpper;

bool IsWordPart(char c) { return IsLetter(c) || IsDigit(c); }

// "MailFlag" at F, "PGPDecrypt" and "CSVFile" at the last capital, which has a small letter behind it.
bool BeginsPart(std::string_view name, std::size_t at) {
  if (!IsUpper(name[at])) return false;
  const bool behind_small = !IsUpper(name[at - 1]);
  const bool before_small = at + 1 < name.size() && IsLower(name[at + 1]);
  return behind_small || before_small;
}

std::vector<std::string> Words(std::string_view text, bool takes_parts) {
  std::vector<std::string> words;
  for (std::size_t at = 0; at < text.size();) {
    if (!IsWordPart(text[at])) {
      ++at;
      continue;
    }
    std::size_t end = at + 1;
    while (end < text.size() && IsWordPart(text[end]) && !(takes_parts && BeginsPart(text, end))) ++end;
    words.push_back(WithoutEnding(Lower(text.substr(at, end - at))));
    at = end;
  }
  return words;
}

}  // namespace

std::vector<std::string> TextWords(std::string_view text) { return Words(text, false); }
std::vector<std::string> NameWords(std::string_view name) { return Words(name, true); }

std::string WithoutEnding(std::string_view word) {
  constexpr std::size_t kShortest = 4;  // letters that stay
  const auto cut = [&word](std::string_view ending, std::size_t letters) {
    const bool has = word.ends_with(ending) && word.size() >= kShortest + letters;
    if (has) word.remove_suffix(letters);
    return has;
  };
  const bool changed = cut("ies", 2) || cut("ied", 2) || cut("ing", 3) || cut("ed", 2) ||
                       (!word.ends_with("ss") && !word.ends_with("us") && cut("s", 1));
  static_cast<void>(changed);
  cut("e", 1);
  std::string stem(word);
  if (stem.size() >= kShortest && stem.ends_with('y')) stem.back() = 'i';
  return stem;
}

}  // namespace wrenfold
