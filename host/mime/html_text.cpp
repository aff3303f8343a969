#include "host/mime/html_text.h"

#include <cstdint>

#include "host/base/ascii.h"
#include "host/charset/japanese.h"

namespace wrenfold {
namespace {

struct Entity {
  std::string_view name;
  char16_t unit;
};

constexpr Entity kEntities[] = {
    {"amp", u'&'},     {"lt", u'<'},      {"gt", u'>'},      {"quot", u'"'},     {"apos", u'\''},
    {"nbsp", u' '},    {"copy", 0xA9},    {"reg", 0xAE},     {"yen", 0xA5},      {"middot", 0xB7},
    {"laquo", 0xAB},   {"raquo", 0xBB},   {"ndash", 0x2013}, {"mdash", 0x2014},  {"lsquo", 0x2018},
    {"rsquo", 0x2019}, {"ldquo", 0x201C}, {"rdquo", 0x201D}, {"hellip", 0x2026}, {"bull", 0x2022},
    {"euro", 0x20AC},
};

// Tags that begin a new line, and elements whose content is not shown.
constexpr std::string_view kLineTags[] = {"br", "p",  "div", "tr", "li", "ul",  "ol",    "h1",        "h2",
                                          "h3", "h4", "h5",  "h6", "hr", "pre", "table", "blockquote"};
constexpr std::string_view kHiddenElements[] = {"script", "style", "title"};

template <std::size_t N>
bool Contains(const std::string_view (&names)[N], std::string_view name) {
  for (const std::string_view each : names) {
    if (each == name) return true;
  }
  return false;
}

bool IsSpace(char16_t unit) { return unit == u' ' || (unit >= 9 && unit <= 13); }

std::string AsciiOf(std::u16string_view text) {
  std::string ascii;
  for (const char16_t unit : text) ascii += unit < 0x80 ? LowerAscii(static_cast<char>(unit)) : '?';
  return ascii;
}

// "#233", "#xE9" or a name to its character; 0 when it is none.
char32_t EntityValue(std::string_view entity) {
  if (!entity.starts_with('#')) {
    for (const Entity& row : kEntities) {
      if (row.name == entity) return row.unit;
    }
    return 0;
  }
  const bool hexadecimal = entity.size() > 1 && entity[1] == 'x';
  const char32_t base = hexadecimal ? 16 : 10;
  char32_t value = 0;
  for (const char c : entity.substr(hexadecimal ? 2 : 1)) {
    const int digit = HexValue(c);
    if (digit < 0 || static_cast<char32_t>(digit) >= base) return 0;
    value = value * base + static_cast<char32_t>(digit);
    if (value > 0x10FFFF) return kReplacement;
  }
  return value;
}

class HtmlWalk {
 public:
  explicit HtmlWalk(std::u16string_view html) : rest_(html) {}

  std::u16string Text() {
    while (!rest_.empty()) {
      if (rest_[0] == u'<' && Tag()) continue;
      if (rest_[0] == u'&' && Reference()) continue;
      Plain(rest_[0]);
      rest_.remove_prefix(1);
    }
    return std::move(text_);
  }

 private:
  // Drops the tag or comment that `rest_` begins with; false for a "<" that is text.
  bool Tag() {
    if (rest_.starts_with(u"<!--")) return Skip(rest_.find(u"-->", 4), 3);
    const std::size_t start = rest_.size() > 1 && rest_[1] == u'/' ? 2 : 1;
    std::size_t end = start;
    while (end < rest_.size() && end < start + 12 && rest_[end] < 0x80 && IsWord(rest_[end])) ++end;
    if (end == start && !rest_.starts_with(u"<!")) return false;
    const std::string name = AsciiOf(rest_.substr(start, end - start));
    Skip(rest_.find(u'>', end), 1);
    if (name == "pre") preformatted_ = start == 1;
    if (Contains(kLineTags, name)) NewLine(name == "br");
    if (start == 1 && Contains(kHiddenElements, name)) SkipElement(name);
    return true;
  }

  static bool IsWord(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || (unit >= u'0' && unit <= u'9');
  }

  // Goes on behind the `length` units found at `at`; to the end when they were not found.
  bool Skip(std::size_t at, std::size_t length) {
    rest_.remove_prefix(at == rest_.npos ? rest_.size() : at + length);
    return true;
  }

  void SkipElement(const std::string& name) {
    while (!rest_.empty()) {
      Skip(rest_.find(u"</"), 2);
      if (AsciiOf(rest_.substr(0, name.size())) != name) continue;
      Skip(rest_.find(u'>'), 1);
      return;
    }
  }

  bool Reference() {
    constexpr std::size_t kLongest = 12;
    const std::size_t end = rest_.substr(0, kLongest).find(u';');
    if (end == rest_.npos) return false;
    const char32_t value = EntityValue(AsciiOf(rest_.substr(1, end - 1)));
    if (value == 0) return false;
    AppendCodePoint(text_, value);
    rest_.remove_prefix(end + 1);
    return true;
  }

  void Plain(char16_t unit) {
    if (preformatted_ || !IsSpace(unit)) {
      text_ += unit;
    } else if (!text_.empty() && !IsSpace(text_.back())) {
      text_ += u' ';
    }
  }

  // Block tags add a line end only where a line is under way; <br> always does.
  void NewLine(bool always) {
    while (!preformatted_ && !text_.empty() && text_.back() == u' ') text_.pop_back();
    if (always || (!text_.empty() && text_.back() != u'\n')) text_ += u"\r\n";
  }

  std::u16string_view rest_;
  std::u16string text_;
  bool preformatted_ = false;
};

}  // namespace

std::u16string TextOfHtml(std::u16string_view html) { return HtmlWalk(html).Text(); }

}  // namespace wrenfold
