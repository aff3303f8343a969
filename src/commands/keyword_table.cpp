#include "src/commands/keyword_table.h"

#include "src/text/ascii.h"

namespace wfinfo {

bool SameWord(std::string_view text, std::string_view word, LetterCase letter_case) {
  return text.size() == word.size() && BeginsWith(text, word, letter_case);
}

bool BeginsWith(std::string_view text, std::string_view word, LetterCase letter_case) {
  return letter_case == LetterCase::kCounts ? text.starts_with(word) : StartsWithIgnoringCase(text, word);
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
