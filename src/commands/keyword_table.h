// Macro words and the host's codes for them. All word tables have one shape and are read by the
// functions here.
//
// Words are ASCII, so letter case means ASCII letters: a double-byte character never equals a word.
#pragma once

#include <span>
#include <string_view>

namespace wfinfo {

enum class LetterCase { kIgnored, kCounts };

// One word of a table. "" stands for an empty text. Tables with further columns have a `word` as well.
struct Keyword {
  std::string_view word;
  long long code;
};

struct KeywordTable {
  std::span<const Keyword> rows;  // searched in this order, the first match wins
  LetterCase letter_case = LetterCase::kIgnored;
};

bool SameWord(std::string_view text, std::string_view word, LetterCase letter_case);
bool BeginsWith(std::string_view text, std::string_view word, LetterCase letter_case);

// The first row whose word is `text`, or null. For any row type with a `word`.
template <class Row>
constexpr const Row* FindWord(std::span<const Row> rows, std::string_view text, LetterCase letter_case) {
  for (const Row& row : rows) {
    if (SameWord(text, row.word, letter_case)) return &row;
  }
  return nullptr;
}

inline const Keyword* FindKeyword(const KeywordTable& table, std::string_view text) {
  return FindWord(table.rows, text, table.letter_case);
}

// The code of `text`, or `fallback` when it is no word of the table.
long long KeywordOr(const KeywordTable& table, std::string_view text, long long fallback);

// The first row whose word stands at the beginning of `text`, whatever follows it; null when there is none.
const Keyword* FindKeywordPrefix(const KeywordTable& table, std::string_view text);

// What ScanKeywords found: the codes, or-ed, and the text from the first position where no word stands.
struct KeywordScan {
  long long codes;
  std::string_view rest;  // "" when all of the text was read
};

// Reads words one after another, each with an optional "+" behind it:
//   list = { word [ "+" ] }
// "a+b", "ab" and "a+b+" are the same; "+a" and "a++b" stop at the (second) plus.
KeywordScan ScanKeywords(const KeywordTable& table, std::string_view text);

}  // namespace wfinfo
