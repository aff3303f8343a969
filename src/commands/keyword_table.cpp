#include "src/commands/keyword_table.h"

namespace wfinfo {
namespace {

constexpr char Folded(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

bool SameWord(std::string_view text, std::string_view word, LetterCase letter_case) {
  return text.size() == word.size() && BeginsWith(text, word, letter_case);
}

bool BeginsWith(std::string_view text, std::string_view word, LetterCase letter_case) {
  if (letter_case == LetterCase::kCounts) return text.starts_with(word);
  if (text.size() < word.size()) return false;
  for (std::size_t at = 0; at < word.size(); ++at) {
    if (Folded(text[at]) != Folded(word[at])) return false;
  }
  return true;
}

long long KeywordOr(const KeywordTable& table, std::string_view text, long long fallback) {
  const Keyword* const row = FindKeyword(table, text);
  return row == nullptr ? fallback : row->code;
}

const Keyword* FindKeywordPrefix(const KeywordTable& table, std::string_view text) {
  for (const Keyword& row : table.rows) {
    if (BeginsWith(text, row.word, table.letter_case)) return &row;
  }
  return nullptr;
}

KeywordScan ScanKeywords(const KeywordTable& table, std::string_view text) {
  KeywordScan scan{0, text};
  while (!scan.rest.empty()) {
    const Keyword* const row = FindKeywordPrefix(table, scan.rest);
    if (row == nullptr || row->word.empty()) break;
    scan.codes |= row->code;
    scan.rest.remove_prefix(row->word.size());
    if (scan.rest.starts_with('+')) scan.rest.remove_prefix(1);
  }
  return scan;
}

}  // namespace wfinfo
