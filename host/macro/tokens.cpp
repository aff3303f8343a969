#include "host/macro/tokens.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "host/base/ascii.h"
#include "host/base/shortened.h"
#include "host/base/utf8_mark.h"
#include "host/macro/advice.h"

namespace wrenfold::macro {
namespace {

// Letters and digits by their ASCII ranges: the locale must not change the language.
bool IsNameStart(char c) { return IsLetter(c) || c == '_'; }
bool IsNamePart(char c) { return IsNameStart(c) || IsDigit(c); }
bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

struct EscapeRow {
  char letter;
  char meaning;
};
constexpr EscapeRow kEscapes[] = {{'"', '"'}, {'\\', '\\'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};

// Length of the UTF-8 character at the start of `text`; 0 when it is not well formed.
std::size_t Utf8Length(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 0 || text.size() < length) return 0;
  const std::string_view tail = text.substr(1, length - 1);
  if (!std::all_of(tail.begin(), tail.end(), IsContinuation)) return 0;
  const auto second = length > 1 ? static_cast<unsigned char>(text[1]) : 0;
  // Over-long forms, surrogates, and what lies above U+10FFFF.
  const bool bad = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0) ||
                   (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90);
  return bad ? 0 : length;
}

}  // namespace

Tokens::Tokens(std::string_view source, const SyntaxOptions& options) : source_(source), options_(options) {
  source_ = WithoutUtf8Mark(source_);
}

Token Tokens::Next() {
  Token token;
  SkipBlanksAndComment();
  token.place = place_;
  if (problem_ || at_ >= source_.size()) return token;
  const char c = Peek();
  if (AtLineEnd()) return LineEnd(std::move(token));
  if (IsNameStart(c)) return Name(std::move(token));
  if (IsDigit(c)) return Number(std::move(token));
  if (c == '"') return QuotedText(std::move(token));
  return Sign(std::move(token));
}

Token Tokens::LineEnd(Token token) {
  token.kind = Token::Kind::kLineEnd;
  at_ += Peek() == '\r' && Peek(1) == '\n' ? 2 : 1;
  ++place_.line;
  place_.column = 1;
  return token;
}

Token Tokens::Name(Token token) {
  std::size_t length = 1;
  while (IsNamePart(Peek(length))) ++length;
  token.kind = Token::Kind::kName;
  token.text = source_.substr(at_, length);
  Advance(length);
  return token;
}

Token Tokens::Number(Token token) {
  std::size_t length = 1;
  while (IsNamePart(Peek(length))) ++length;
  std::string_view digits = source_.substr(at_, length);
  token.kind = Token::Kind::kNumber;
  token.text = digits;
  token.hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
  if (token.hexadecimal) digits.remove_prefix(2);
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), token.magnitude,
                                            token.hexadecimal ? 16 : 10);
  const Place place = place_;
  if (error == std::errc::result_out_of_range)
    return Fail(std::move(token), place, "this number has more than 64 bits");
  if (error != std::errc() || end != digits.data() + digits.size()) {
    const std::string written = token.text;
    return Fail(
        std::move(token), place,
        "'" + Shortened(written) + "' is no number; write 123 or 0x7B, and names begin with a letter");
  }
  Advance(length);
  return token;
}

Token Tokens::QuotedText(Token token) {
  token.kind = Token::Kind::kText;
  std::string utf8;  // not yet converted
  Advance(1);
  while (Peek() != '"') {
    if (AtLineEnd())
      return Fail(std::move(token), token.place,
                  "this text has no closing \" on its line; a \" inside a text is written \\\"");
    if (Peek() == '\\') {
      if (!TakeEscape(utf8, token.text))
        return Fail(
            std::move(token), place_,
            "unknown escape; there are \\\" \\\\ \\n \\r \\t and \\xNN (two hexadecimal digits, not 00)");
      continue;
    }
    const std::size_t length = Utf8Length(source_.substr(at_));
    if (length == 0)
      return Fail(std::move(token), place_,
                  "this is not UTF-8; save the macro as UTF-8, or write the byte as \\xNN");
    if (Peek() == '\0') return Fail(std::move(token), place_, "a text cannot hold a zero byte");
    utf8.append(source_.substr(at_, length));
    Advance(length);
  }
  Advance(1);
  token.text += options_.to_host(utf8);
  return token;
}

// \xNN is a byte of host text as it stands; the other escapes are characters.
bool Tokens::TakeEscape(std::string& utf8, std::string& host) {
  const char letter = Peek(1);
  if (letter == 'x') {
    const std::optional<unsigned> byte = HexByte();
    if (!byte) return false;
    host += options_.to_host(utf8);
    utf8.clear();
    host += static_cast<char>(*byte);
    Advance(4);
    return true;
  }
  const auto* row = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                 [letter](const EscapeRow& r) { return r.letter == letter; });
  if (row == std::end(kEscapes)) return false;
  utf8 += row->meaning;
  Advance(2);
  return true;
}

// The byte of the \xNN at hand, unless it is malformed or zero.
std::optional<unsigned> Tokens::HexByte() const {
  const std::string_view digits = source_.substr(at_).substr(2, 2);
  unsigned value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  const bool whole = error == std::errc() && digits.size() == 2 && end == digits.data() + 2;
  return whole && value != 0 ? std::optional(value) : std::nullopt;
}

Token Tokens::Sign(Token token) {
  const std::string_view rest = source_.substr(at_);
  const auto* sign = std::find_if(std::begin(kSigns), std::end(kSigns),
                                  [rest](std::string_view s) { return rest.starts_with(s); });
  if (sign == std::end(kSigns)) {
    std::size_t length = Utf8Length(rest);
    const bool shown = length > 1 || (Peek() > ' ' && Peek() < 0x7F);
    const std::string advice(AdviceForSign(rest, length));
    const std::string what = shown ? "'" + std::string(rest.substr(0, length)) + "'" : "this character";
    return Fail(std::move(token), place_, what + " does not belong here; " + advice);
  }
  token.kind = Token::Kind::kSign;
  token.text = *sign;
  Advance(sign->size());
  return token;
}

Token Tokens::Fail(Token token, Place place, std::string text) {
  problem_ = Problem{place, std::move(text), false};
  token.kind = Token::Kind::kEnd;
  return token;
}

void Tokens::SkipBlanksAndComment() {
  while (IsBlank(Peek())) Advance(1);
  if (Peek() != '#' && !(Peek() == '/' && Peek(1) == '/')) return;
  while (!AtLineEnd()) Advance(1);
}

void Tokens::Advance(std::size_t bytes) {
  for (; bytes > 0; --bytes, ++at_) {
    if (!IsContinuation(source_[at_])) ++place_.column;
  }
}

}  // namespace wrenfold::macro
