#include "host/mime/header_words.h"

#include <algorithm>
#include <vector>

#include "host/base/ascii.h"
#include "host/mime/transfer_encoding.h"

namespace wrenfold {
namespace {

// =?iso-2022-jp?B?GyRCN29MPhsoQg==?=      charset, "B" or "Q", text
// Blanks inside the text and words that touch each other are tolerated.

struct Token {
  enum Kind { kText, kFold, kWord } kind;
  std::string_view charset;  // of a word
  std::string bytes;         // raw text, the blanks of a fold, or a word's decoded bytes
};

class HeaderScanner {
 public:
  std::vector<Token> Scan(std::string_view value) {
    while (true) {
      const LineLength line = FirstLine(value);
      ScanLine(value.substr(0, line.text));
      value.remove_prefix(line.with_end);
      if (value.empty()) return std::move(tokens_);
      const std::size_t blanks = std::min(value.find_first_not_of(" \t"), value.size());
      tokens_.push_back({Token::kFold, {}, std::string(value.substr(0, blanks))});
      value.remove_prefix(blanks);
    }
  }

 private:
  void ScanLine(std::string_view line) {
    line_ = line;
    has_ends_ = true;
    std::size_t text_from = 0;
    std::size_t at = line.find("=?");
    while (at != line.npos) {
      const std::size_t used = ScanWord(at, text_from);
      if (used > 0) text_from = at + used;
      at = line.find("=?", at + std::max<std::size_t>(used, 1));
    }
    AddText(text_from, line.size());
  }

  // Bytes of the word at `at`, 0 for none. Adds the text before it and the word.
  std::size_t ScanWord(std::size_t at, std::size_t text_from) {
    constexpr std::size_t kLongestName = 64;
    const std::string_view rest = line_.substr(at + 2);
    const std::size_t name_end = rest.substr(0, kLongestName).find('?');
    if (name_end == rest.npos || name_end == 0 || rest.size() < name_end + 3 || rest[name_end + 2] != '?')
      return 0;
    const std::string_view charset = rest.substr(0, name_end);
    const char encoding = LowerAscii(rest[name_end + 1]);
    if ((encoding != 'b' && encoding != 'q') || charset.find_first_of(" \t") != charset.npos) return 0;
    const std::string_view text = rest.substr(name_end + 3);
    const std::size_t end = has_ends_ ? text.find("?=") : text.npos;
    has_ends_ = end != text.npos;  // a line is searched to its end in vain only once
    if (!has_ends_) return 0;
    AddText(text_from, at);
    const std::string_view coded = text.substr(0, end);
    tokens_.push_back({Token::kWord, charset.substr(0, charset.find('*')),
                       encoding == 'b' ? DecodeBase64(coded) : DecodeQuotedPrintable(coded, true)});
    return 2 + name_end + 3 + end + 2;
  }

  void AddText(std::size_t from, std::size_t to) {
    if (from < to) tokens_.push_back({Token::kText, {}, std::string(line_.substr(from, to - from))});
  }

  std::string_view line_;
  bool has_ends_ = true;
  std::vector<Token> tokens_;
};

bool IsBlankToken(const Token& token) {
  return token.kind != Token::kWord && token.bytes.find_first_not_of(" \t") == std::string::npos;
}

// Blanks and folds between two words vanish; words of one charset become one, so that a character split over
// two words is whole again.
std::vector<Token> JoinWords(std::vector<Token> tokens) {
  std::vector<Token> joined;
  std::size_t behind_word =
      0;  // length of `joined` right behind its last word; 0 when there is other text since
  for (Token& token : tokens) {
    if (token.kind != Token::kWord) {
      if (!IsBlankToken(token)) behind_word = 0;
      joined.push_back(std::move(token));
      continue;
    }
    if (behind_word > 0) joined.resize(behind_word, Token{});
    if (behind_word > 0 && EqualsIgnoringCase(joined.back().charset, token.charset)) {
      joined.back().bytes += token.bytes;
    } else {
      joined.push_back(std::move(token));
    }
    behind_word = joined.size();
  }
  return joined;
}

// Where a decoded word stands in an address list: "quoted", (comment) or free.
class AddressContext {
 public:
  void Step(char16_t unit) {
    if (escaped_) {
      escaped_ = false;
    } else if (unit == u'\\') {
      escaped_ = quoted_ || depth_ > 0;
    } else if (unit == u'"' && depth_ == 0) {
      quoted_ = !quoted_;
    } else if (!quoted_ && unit == u'(') {
      ++depth_;
    } else if (!quoted_ && unit == u')' && depth_ > 0) {
      --depth_;
    }
  }

  // The word as it must be written there to stay one word.
  std::u16string Protect(const std::u16string& word) const {
    const bool free = !quoted_ && depth_ == 0;
    if (free && word.find_first_of(u"()<>[]:;@\\,\"") == word.npos) return word;
    const std::u16string_view special = depth_ > 0 ? u"()\\" : u"\"\\";
    std::u16string safe;
    for (const char16_t unit : word) {
      if (special.find(unit) != special.npos) safe += u'\\';
      safe += unit;
    }
    return free ? u'"' + safe + u'"' : safe;
  }

 private:
  bool quoted_ = false;
  bool escaped_ = false;
  int depth_ = 0;
};

// Decoded text must not end a header.
std::u16string WithoutControls(std::u16string text) {
  std::replace_if(
      text.begin(), text.end(), [](char16_t c) { return c == 0 || c == u'\r' || c == u'\n'; }, u' ');
  return text;
}

}  // namespace

std::u16string DecodeHeaderValue(std::string_view value, std::string_view declared, bool is_address_list,
                                 const Charsets& charsets) {
  std::u16string decoded;
  AddressContext context;
  for (const Token& token : JoinWords(HeaderScanner().Scan(value))) {
    if (token.kind == Token::kWord) {
      const std::u16string word = WithoutControls(charsets.DecodeDeclared(token.charset, token.bytes));
      decoded += is_address_list ? context.Protect(word) : word;
      continue;
    }
    if (token.kind == Token::kFold) decoded += u"\r\n";
    const std::u16string text = WithoutControls(charsets.Guess(declared, token.bytes));
    for (const char16_t unit : text) context.Step(unit);
    decoded += text;
  }
  return decoded;
}

}  // namespace wrenfold
