#include "host/macro/block_words.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "host/base/ascii.h"
#include "host/macro/tokens.h"

namespace wrenfold::macro {
namespace {

constexpr std::string_view kOpening[] = {"if", "for", "while", "function"};
constexpr std::string_view kInside[] = {"else", "elseif", "elif", "elsif"};
constexpr std::string_view kForeign[] = {"def", "do",     "foreach", "func",   "repeat",
                                         "sub", "switch", "try",     "unless", "until"};

template <class Words>
bool IsOneOf(const Words& words, const Token& token) {
  return token.kind == Token::Kind::kName &&
         std::find(std::begin(words), std::end(words), Lower(token.text)) != std::end(words);
}

// Only words, signs and the ends of texts matter here, so texts are left as they are.
const SyntaxOptions& AsWritten() {
  static const SyntaxOptions options = {[](std::string_view utf8) { return std::string(utf8); }, true};
  return options;
}

bool EndsWithEnd(Tokens& tokens) {
  Token last;
  for (Token token = tokens.Next(); token.kind != Token::Kind::kEnd; token = tokens.Next())
    last = std::move(token);
  return !tokens.problem() && last.IsWord("end");
}

}  // namespace

int BlocksOpened(std::string_view line) {
  Tokens tokens(line, AsWritten());
  const Token first = tokens.Next();
  if (IsOneOf(kOpening, first)) return EndsWithEnd(tokens) ? 0 : 1;
  return first.kind == Token::Kind::kName && EqualsIgnoringCase(first.text, "end") ? -1 : 0;
}

bool BelongsToBlock(std::string_view line) {
  Tokens tokens(line, AsWritten());
  const Token first = tokens.Next();
  if (IsOneOf(kInside, first)) return true;
  if (!IsOneOf(kForeign, first)) return false;
  // As a name in an expression it begins nothing.
  const Token second = tokens.Next();
  return second.kind != Token::Kind::kSign || second.IsSign("(") || second.IsSign("{") || second.IsSign(":");
}

}  // namespace wrenfold::macro
