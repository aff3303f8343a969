// What a source text of the macro language is made of: names and words, numbers, quoted texts, signs,
// line ends.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/macro/syntax.h"

namespace wrenfold::macro {

// Words that cannot be names.
inline constexpr std::string_view kKeywords[] = {"if", "else",  "end",      "while",    "for",
                                                 "in", "break", "continue", "null",     "and",
                                                 "or", "not",   "print",    "function", "return"};

// Of two that begin alike the longer one stands first.
inline constexpr std::string_view kSigns[] = {"==", "!=", "<=", ">=", "<", ">", "=", "+", "-", "*",
                                              "/",  "%",  "(",  ")",  ",", "[", "]", "{", "}", ":"};

struct Token {
  enum class Kind { kName, kNumber, kText, kSign, kLineEnd, kEnd };  // kName: a name or a keyword
  Kind kind = Kind::kEnd;
  Place place;
  std::string text;             // name or sign as written; the value of a quoted text, as host text
  std::uint64_t magnitude = 0;  // kNumber, without sign
  bool hexadecimal = false;

  bool IsSign(std::string_view sign) const { return kind == Kind::kSign && text == sign; }
  bool IsWord(std::string_view word) const { return kind == Kind::kName && text == word; }
};

// Takes one token after the other off a source text. After a problem it gives kEnd for ever.
class Tokens {
 public:
  Tokens(std::string_view source, const SyntaxOptions& options);
  Token Next();
  const std::optional<Problem>& problem() const { return problem_; }

 private:
  Token LineEnd(Token token);
  Token Name(Token token);
  Token Number(Token token);
  Token QuotedText(Token token);
  Token Sign(Token token);
  Token Fail(Token token, Place place, std::string text);

  bool TakeEscape(std::string& utf8, std::string& host);
  std::optional<unsigned> HexByte() const;
  void SkipBlanksAndComment();
  void Advance(std::size_t bytes);
  char Peek(std::size_t ahead = 0) const {
    return at_ + ahead < source_.size() ? source_[at_ + ahead] : '\0';
  }
  bool AtLineEnd() const { return at_ >= source_.size() || Peek() == '\n' || Peek() == '\r'; }

  std::string_view source_;
  const SyntaxOptions& options_;
  std::size_t at_ = 0;
  Place place_;
  std::optional<Problem> problem_;
};

}  // namespace wrenfold::macro
