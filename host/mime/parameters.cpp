#include "host/mime/parameters.h"

#include <algorithm>
#include <map>

#include "host/base/ascii.h"
#include "host/mime/header_words.h"
#include "host/mime/transfer_encoding.h"

namespace wrenfold {
namespace {

// attachment; filename="a b.txt"; filename*=utf-8''%e8%a6%8b.txt; filename*0*=utf-8''%e8; filename*1="x.txt"

class ParameterScanner {
 public:
  explicit ParameterScanner(std::string_view text) : text_(text) {}

  bool AtEnd() { return SkipBlanks(), at_ >= text_.size(); }

  // A token up to one of `stops`, quotes and comments resolved.
  std::string Word(std::string_view stops) {
    std::string word;
    SkipBlanks();
    while (at_ < text_.size() && stops.find(text_[at_]) == stops.npos) {
      if (text_[at_] == '"') {
        Quoted(word);
      } else if (text_[at_] == '(') {
        SkipComment();
      } else if (const char c = text_[at_++]; !IsLineEnd(c)) {
        word += c;
      }
    }
    return std::string(Trim(word));
  }

  bool Take(char c) {
    if (at_ >= text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

 private:
  void SkipBlanks() {
    while (at_ < text_.size() && (IsBlank(text_[at_]) || IsLineEnd(text_[at_]))) ++at_;
  }

  // A backslash counts only before a quote or a backslash: it also stands in paths and as a second byte.
  void Quoted(std::string& word) {
    for (++at_; at_ < text_.size() && text_[at_] != '"'; ++at_) {
      const bool escape =
          text_[at_] == '\\' && at_ + 1 < text_.size() && (text_[at_ + 1] == '"' || text_[at_ + 1] == '\\');
      if (escape) ++at_;
      if (!IsLineEnd(text_[at_])) word += text_[at_];
    }
    Take('"');
  }

  void SkipComment() {
    int depth = 0;
    do {
      if (text_[at_] == '(') ++depth;
      if (text_[at_] == ')') --depth;
      if (text_[at_] == '\\') ++at_;
      ++at_;
    } while (at_ < text_.size() && depth > 0);
    at_ = std::min(at_, text_.size());
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

struct Segment {
  std::string bytes;
  bool extended = false;  // percent-encoded, the first one with charset and language
};

constexpr int kPlain = -1;  // the number of a parameter without a star
constexpr std::size_t kMostDigits = 4;

// The segments of one parameter by their numbers.
using Segments = std::map<int, Segment>;

std::string DecodePercent(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool encoded =
        text[i] == '%' && i + 2 < text.size() && HexValue(text[i + 1]) >= 0 && HexValue(text[i + 2]) >= 0;
    bytes += encoded ? static_cast<char>(HexValue(text[i + 1]) << 4 | HexValue(text[i + 2])) : text[i];
    if (encoded) i += 2;
  }
  return bytes;
}

// "filename*12*" is name, number and extended; "filename*" has the number 0.
struct ParameterName {
  std::string base;
  int number = kPlain;
  bool extended = false;
};

ParameterName ParseName(std::string_view name) {
  const std::size_t star = name.find('*');
  ParameterName parsed{Lower(Trim(name.substr(0, star)))};
  if (star == name.npos) return parsed;
  std::string_view rest = name.substr(star + 1);
  parsed.extended = rest.empty() || rest.ends_with('*');
  parsed.number = 0;
  for (const char c : rest.substr(0, kMostDigits)) {
    if (!IsDigit(c)) break;
    parsed.number = parsed.number * 10 + (c - '0');
  }
  return parsed;
}

// Cuts "charset'language'" off the first extended segment.
void TakeCharset(std::string& bytes, std::string& charset) {
  const std::size_t first = bytes.find('\'');
  const std::size_t second = first == bytes.npos ? first : bytes.find('\'', first + 1);
  if (second == bytes.npos) return;
  charset = bytes.substr(0, first);
  bytes.erase(0, second + 1);
}

// Numbered segments win over the plain form, which senders add for old readers. A missing number ends
// the value.
std::u16string DecodeSegments(Segments segments, const Charsets& charsets) {
  if (!segments.contains(0)) {
    const auto plain = segments.find(kPlain);
    return plain == segments.end() ? u"" : DecodeHeaderValue(plain->second.bytes, {}, false, charsets);
  }
  std::string charset;
  std::string bytes;
  bool extended = false;
  for (int number = 0; segments.contains(number); ++number) {
    Segment& segment = segments[number];
    extended |= segment.extended;
    if (number == 0 && segment.extended) TakeCharset(segment.bytes, charset);
    bytes += segment.extended ? DecodePercent(segment.bytes) : segment.bytes;
  }
  return extended ? charsets.DecodeDeclared(charset, bytes) : DecodeHeaderValue(bytes, {}, false, charsets);
}

}  // namespace

ParameterizedValue ParseParameters(std::string_view text, const Charsets& charsets) {
  ParameterScanner scanner(text);
  ParameterizedValue parsed;
  parsed.value = Lower(scanner.Word(";"));
  for (char& c : parsed.value) c = c >= ' ' && c <= '~' ? c : '?';
  std::map<std::string, Segments> all;
  while (scanner.Take(';')) {
    const ParameterName name = ParseName(scanner.Word("=;"));
    if (!scanner.Take('=')) continue;
    all[name.base].try_emplace(name.number, Segment{scanner.Word(";"), name.extended});
  }
  for (auto& [name, segments] : all) {
    if (!name.empty()) parsed.parameters.emplace_back(name, DecodeSegments(std::move(segments), charsets));
  }
  return parsed;
}

const std::u16string* FindParameter(const ParameterizedValue& parsed, std::string_view name) {
  for (const auto& parameter : parsed.parameters) {
    if (parameter.first == name) return &parameter.second;
  }
  return nullptr;
}

}  // namespace wrenfold
