#include "tools/kit/json_text.h"

#include <charconv>
#include <cmath>

namespace kit {
namespace {

constexpr int kDeepest = 64;
constexpr int kLevelsOfLines = 2;

void AppendUtf8(std::string& text, unsigned point) {
  const auto put = [&text](unsigned byte) { text += static_cast<char>(byte); };
  if (point < 0x80) return put(point);
  if (point < 0x800) return put(0xC0 | point >> 6), put(0x80 | (point & 0x3F));
  if (point < 0x10000) {
    return put(0xE0 | point >> 12), put(0x80 | (point >> 6 & 0x3F)), put(0x80 | (point & 0x3F));
  }
  put(0xF0 | point >> 18), put(0x80 | (point >> 12 & 0x3F)), put(0x80 | (point >> 6 & 0x3F));
  put(0x80 | (point & 0x3F));
}

class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  std::optional<Json> Whole() {
    std::optional<Json> value = Value(0);
    SkipBlanks();
    return rest_.empty() ? value : std::nullopt;
  }

 private:
  void SkipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size())); }
  bool Take(std::string_view word) {
    if (!rest_.starts_with(word)) return false;
    rest_.remove_prefix(word.size());
    return true;
  }
  bool TakeMark(char mark) {
    SkipBlanks();
    return Take({&mark, 1});
  }

  std::optional<Json> Value(int depth) {
    SkipBlanks();
    if (depth > kDeepest || rest_.empty()) return std::nullopt;
    if (rest_[0] == '{') return Members(depth);
    if (rest_[0] == '[') return Items(depth);
    if (rest_[0] == '"') {
      std::optional<std::string> text = Text();
      return text ? std::optional<Json>(std::move(*text)) : std::nullopt;
    }
    if (Take("true")) return Json(true);
    if (Take("false")) return Json(false);
    if (Take("null")) return Json();
    return Number();
  }

  std::optional<Json> Number() {
    double value = 0;
    const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    if (error != std::errc()) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return Json(value);
  }

  std::optional<Json> Items(int depth) {
    rest_.remove_prefix(1);
    Json list = Json::List();
    if (TakeMark(']')) return list;
    do {
      std::optional<Json> item = Value(depth + 1);
      if (!item) return std::nullopt;
      list.items.push_back(std::move(*item));
    } while (TakeMark(','));
    return TakeMark(']') ? std::optional(std::move(list)) : std::nullopt;
  }

  std::optional<Json> Members(int depth) {
    rest_.remove_prefix(1);
    Json object = Json::Object();
    if (TakeMark('}')) return object;
    do {
      SkipBlanks();
      std::optional<std::string> name = Text();
      if (!name || !TakeMark(':')) return std::nullopt;
      std::optional<Json> value = Value(depth + 1);
      if (!value) return std::nullopt;
      object.With(std::move(*name), std::move(*value));
    } while (TakeMark(','));
    return TakeMark('}') ? std::optional(std::move(object)) : std::nullopt;
  }

  std::optional<std::string> Text() {
    if (!Take("\"")) return std::nullopt;
    std::string text;
    while (!rest_.empty()) {
      const char unit = rest_[0];
      rest_.remove_prefix(1);
      if (unit == '"') return text;
      if (unit != '\\') {
        text += unit;
      } else if (!Escape(text)) {
        return std::nullopt;
      }
    }
    return std::nullopt;
  }

  bool Escape(std::string& text) {
    static constexpr std::string_view kMarks = "\"\\/bfnrt", kMeant = "\"\\/\b\f\n\r\t";
    if (rest_.empty()) return false;
    const char mark = rest_[0];
    rest_.remove_prefix(1);
    if (const std::size_t at = kMarks.find(mark); at != kMarks.npos) return text += kMeant[at], true;
    std::optional<unsigned> unit = mark == 'u' ? HexUnit() : std::nullopt;
    if (!unit) return false;
    if (*unit >= 0xD800 && *unit < 0xDC00) {
      const std::optional<unsigned> second = Take("\\u") ? HexUnit() : std::nullopt;
      if (!second || *second < 0xDC00 || *second > 0xDFFF) return false;
      unit = 0x10000 + ((*unit - 0xD800) << 10) + (*second - 0xDC00);
    }
    AppendUtf8(text, *unit);
    return true;
  }

  std::optional<unsigned> HexUnit() {
    unsigned unit = 0;
    const auto [end, error] =
        std::from_chars(rest_.data(), rest_.data() + std::min<std::size_t>(4, rest_.size()), unit, 16);
    if (error != std::errc() || end != rest_.data() + 4) return std::nullopt;
    rest_.remove_prefix(4);
    return unit;
  }

  std::string_view rest_;
};

void WriteText(std::string& out, std::string_view text) {
  static constexpr char kDigits[] = "0123456789abcdef";
  out += '"';
  for (const char unit : text) {
    const auto byte = static_cast<unsigned char>(unit);
    if (unit == '"' || unit == '\\') {
      (out += '\\') += unit;
    } else if (unit == '\n') {
      out += "\\n";
    } else if (byte < 0x20 || byte == 0x7F) {
      ((out += "\\u00") += kDigits[byte >> 4]) += kDigits[byte & 15];
    } else {
      out += unit;
    }
  }
  out += '"';
}

void WriteNumber(std::string& out, double number) {
  char room[32];
  // Seconds have milliseconds; all else is whole.
  const double rounded = std::round(number * 1000) / 1000;
  out.append(room, std::to_chars(room, room + sizeof room, rounded).ptr);
}

void Write(std::string& out, const Json& value, int level) {
  const bool in_lines = level < kLevelsOfLines;
  const auto line = [&out, in_lines](int depth) {
    if (in_lines) (out += '\n').append(static_cast<std::size_t>(depth) * 2, ' ');
  };
  const bool is_list = value.kind == Json::Kind::kList;
  switch (value.kind) {
    case Json::Kind::kNull:
      out += "null";
      return;
    case Json::Kind::kTruth:
      out += value.truth ? "true" : "false";
      return;
    case Json::Kind::kNumber:
      WriteNumber(out, value.number);
      return;
    case Json::Kind::kText:
      WriteText(out, value.text);
      return;
    case Json::Kind::kList:
    case Json::Kind::kObject:
      break;
  }
  out += is_list ? '[' : '{';
  const std::size_t count = is_list ? value.items.size() : value.members.size();
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) out += in_lines ? "," : ", ";
    line(level + 1);
    if (!is_list) WriteText(out, value.members[i].first), out += ": ";
    Write(out, is_list ? value.items[i] : value.members[i].second, level + 1);
  }
  if (count > 0) line(level);
  out += is_list ? ']' : '}';
}

}  // namespace

Json Json::OfKind(Kind kind) {
  Json value;
  value.kind = kind;
  return value;
}

const Json& Json::operator[](std::string_view name) const {
  static const Json kNothing;
  for (const auto& [own, value] : members) {
    if (own == name) return value;
  }
  return kNothing;
}

Json& Json::With(std::string name, Json value) {
  members.emplace_back(std::move(name), std::move(value));
  return *this;
}

int Json::Int(int otherwise) const { return kind == Kind::kNumber ? static_cast<int>(number) : otherwise; }

std::optional<Json> ReadJson(std::string_view text) { return Reader(text).Whole(); }

std::string WriteJson(const Json& value) {
  std::string out;
  Write(out, value, 0);
  return out += '\n';
}

}  // namespace kit
