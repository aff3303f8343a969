#include "host/macro/functions.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "src/text/host_text.h"
#include "src/text/wide_text.h"

namespace wrenfold::macro {
namespace {

using Given = std::span<const Value>;
using Result = std::variant<Value, Complaint>;

Result Wrong(std::string_view name, std::string_view needs, const Value& given) {
  return Complaint{std::string(name) + " needs " + std::string(needs) + ", and this is " +
                   std::string(given.Kind())};
}

Result Len(Given given, std::size_t) {
  if (given[0].IsText()) return Value(static_cast<std::int64_t>(given[0].Text().size()));
  if (given[0].IsList()) return Value(static_cast<std::int64_t>(given[0].List().size()));
  if (given[0].IsTable()) return Value(static_cast<std::int64_t>(given[0].Table().size()));
  return Wrong("len", "a text, a list or a table", given[0]);
}

// Decimal digits with or without a sign, or 0x and hexadecimal ones; blanks around it do not count.
std::optional<std::int64_t> ParsedNumber(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  text = text.substr(0, text.find_last_not_of(kBlanks) + 1);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  std::uint64_t magnitude = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), magnitude, hexadecimal ? 16 : 10);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  const std::uint64_t largest = std::uint64_t{std::numeric_limits<std::int64_t>::max()} + (negative ? 1 : 0);
  if (!hexadecimal && magnitude > largest) return std::nullopt;
  return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

// A text of plain ASCII as it stands in a message; host text with other characters would have to
// be converted.
std::string Named(std::string_view text) {
  constexpr std::size_t kLongest = 40;
  const bool plain = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F; }) &&
                     text.size() <= kLongest;
  return plain ? "'" + std::string(text) + "'" : "the text given to number";
}

Result Number(Given given, std::size_t) {
  if (given[0].IsNumber()) return given[0];
  if (!given[0].IsText() && given.size() < 2) return Wrong("number", "a text", given[0]);
  const auto number = given[0].IsText() ? ParsedNumber(given[0].Text()) : std::nullopt;
  if (number) return Value(*number);
  if (given.size() > 1) return given[1];
  return Complaint{Named(given[0].Text()) +
                   " is no number of 64 bits; with number(text, otherwise) the macro goes on"};
}

Result Text(Given given, std::size_t most_bytes) {
  std::string text = given[0].Printed();
  if (text.size() > most_bytes) return Complaint{TooLarge("text", most_bytes)};
  return Value(std::move(text));
}

// Where `separator` stands in `text` at or behind `from`, beginning at a character; npos when nowhere.
std::size_t FindWhole(std::string_view text, std::string_view separator, std::size_t from) {
  for (std::size_t at = from; at < text.size(); at += wfinfo::UnitLength(text.substr(at))) {
    if (text.substr(at).starts_with(separator)) return at;
  }
  return std::string_view::npos;
}

bool IsSurrogate(std::string_view unit, char16_t first) {
  return unit.size() == wfinfo::kEscapeLength && (wfinfo::EscapedUnit(unit.data()) & 0xFC00) == first;
}

// Length of the character that `text` begins with: one above U+FFFF is two escapes.
std::size_t CharacterLength(std::string_view text) {
  const std::string_view first = wfinfo::NextUnit(text);
  if (!IsSurrogate(first, 0xD800)) return first.size();
  const std::string_view second = wfinfo::NextUnit(text.substr(first.size()));
  return first.size() + (IsSurrogate(second, 0xDC00) ? second.size() : 0);
}

Result Split(Given given, std::size_t most_bytes) {
  if (!given[0].IsText()) return Wrong("split", "a text", given[0]);
  if (!given[1].IsText()) return Wrong("split", "a text as its separator", given[1]);
  const std::string_view text = given[0].Text();
  const std::string& separator = given[1].Text();
  Value::Items pieces;
  std::size_t bytes = 0;
  for (std::size_t at = 0; at <= text.size();) {
    const bool by_character = separator.empty();
    if (by_character && at == text.size()) break;
    const std::size_t end = by_character ? at + CharacterLength(text.substr(at))
                                         : std::min(FindWhole(text, separator, at), text.size());
    pieces.emplace_back(std::string(text.substr(at, end - at)));
    bytes += Value::ItemBytes(pieces.back());
    if (bytes > most_bytes) return Complaint{TooLarge("list", most_bytes)};
    at = by_character ? end : end == text.size() ? text.size() + 1 : end + separator.size();
  }
  return Value(std::move(pieces));
}

Result Join(Given given, std::size_t most_bytes) {
  if (!given[0].IsList()) return Wrong("join", "a list", given[0]);
  if (!given[1].IsText()) return Wrong("join", "a text as its separator", given[1]);
  std::string text;
  for (const Value& item : given[0].List()) {
    if (&item != given[0].List().data()) text += given[1].Text();
    if (!item.IsText() && !item.IsNumber()) return Wrong("join", "a list of texts and numbers", item);
    text += item.Printed();
    if (text.size() > most_bytes) return Complaint{TooLarge("text", most_bytes)};
  }
  return Value(std::move(text));
}

Result Sort(Given given, std::size_t) {
  if (!given[0].IsList()) return Wrong("sort", "a list", given[0]);
  Value::Items items = given[0].List();
  std::stable_sort(items.begin(), items.end(),
                   [](const Value& a, const Value& b) { return Value::Order(a, b) < 0; });
  return Value(std::move(items));
}

Result Reverse(Given given, std::size_t) {
  if (!given[0].IsList()) return Wrong("reverse", "a list", given[0]);
  return Value(Value::Items(given[0].List().rbegin(), given[0].List().rend()));
}

Result Keys(Given given, std::size_t) {
  if (!given[0].IsTable()) return Wrong("keys", "a table", given[0]);
  Value::Items names;
  for (const auto& entry : given[0].Table()) names.emplace_back(entry.first);
  return Value(std::move(names));
}

Result Has(Given given, std::size_t) {
  if (given[0].IsList()) {
    const Value::Items& items = given[0].List();
    return Value(std::int64_t{std::find(items.begin(), items.end(), given[1]) != items.end()});
  }
  if (!given[0].IsTable()) return Wrong("has", "a list or a table", given[0]);
  if (!given[1].IsText()) return Wrong("has", "a text as the name in a table", given[1]);
  return Value(std::int64_t{given[0].Table().contains(given[1].Text())});
}

Result Get(Given given, std::size_t) {
  if (!given[0].IsTable()) return Wrong("get", "a table", given[0]);
  if (!given[1].IsText()) return Wrong("get", "a text as the name in a table", given[1]);
  const auto found = given[0].Table().find(given[1].Text());
  return found != given[0].Table().end() ? found->second : given[2];
}

constexpr OwnFunction kFunctions[] = {
    {"append", 2, 2, "append(list, value)",
     "Puts a value behind the last one of the list in a variable, and gives the new length.", nullptr},
    {"get", 3, 3, "get(table, name, otherwise)",
     "The value of the name in the table, or `otherwise` when it has none.", Get},
    {"has", 2, 2, "has(table, name)", "1 when the table has the name, or when a list holds the value.", Has},
    {"join", 2, 2, "join(list, separator)", "One text of the texts and numbers of a list.", Join},
    {"keys", 1, 1, "keys(table)", "The names of a table as a list, in the order of their bytes.", Keys},
    {"len", 1, 1, "len(text)",
     "The bytes of a text, as LeftStr and MidStr count them; the values in a list or table.", Len},
    {"number", 1, 2, "number(text [, otherwise])",
     "The number that a text writes: 42, -7, 0x1F. Of any other text `otherwise`; without it the macro "
     "stops.",
     Number},
    {"reverse", 1, 1, "reverse(list)", "The values of a list from the last to the first.", Reverse},
    {"sort", 1, 1, "sort(list)",
     "The values of a list in order: numbers, then texts by their bytes, then lists by their first values.",
     Sort},
    {"split", 2, 2, "split(text, separator)",
     "The parts of a text between the separators, as a list; its characters when the separator is \"\".",
     Split},
    {"text", 1, 1, "text(value)", "A value as print writes it.", Text},
};

}  // namespace

std::span<const OwnFunction> OwnFunctions() { return kFunctions; }

const OwnFunction* FindOwnFunction(std::string_view name) {
  for (const OwnFunction& function : kFunctions) {
    if (function.name == name) return &function;
  }
  return nullptr;
}

std::optional<std::string> CheckOwnFunction(const OwnFunction& function, std::size_t parameters) {
  if (parameters >= function.least && parameters <= function.most) return std::nullopt;
  std::string count = std::to_string(function.least);
  if (function.most > function.least) count += " or " + std::to_string(function.most);
  count += function.most == 1 ? " parameter, " : " parameters, ";
  return std::string(function.name) + " takes " + count + std::to_string(parameters) +
         " given: " + std::string(function.form);
}

std::string TooLarge(std::string_view kind, std::size_t most_bytes) {
  return "this " + std::string(kind) + " would be longer than " + std::to_string(most_bytes) + " bytes";
}

}  // namespace wrenfold::macro
