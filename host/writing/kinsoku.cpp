#include "host/writing/kinsoku.h"

#include <vector>

#include "host/charset/charsets.h"
#include "host/writing/quoting.h"

namespace wrenfold {
namespace {

// Closing brackets, commas, full stops, middle dots, question marks, iteration marks, the long vowel mark,
// small kana, units behind a number; ASCII and half-width forms too.
constexpr std::u16string_view kNotAtStart =
    u"\u3001\u3002\uFF0C\uFF0E\u30FB\uFF1A\uFF1B\uFF1F\uFF01\u309B\u309C\u00B4\uFF40\u00A8\u2010\u2015\u2026"
    u"\u2025"
    u"\u30FD\u30FE\u309D\u309E\u3005\u3006\u30FC\u2019\u201D\uFF09\u3015\uFF3D\uFF5D\u3009\u300B\u300D\u300F"
    u"\u3011"
    u"\u3041\u3043\u3045\u3047\u3049\u3063\u3083\u3085\u3087\u308E\u30A1\u30A3\u30A5\u30A7\u30A9\u30C3\u30E3"
    u"\u30E5"
    u"\u30E7\u30EE\u30F5\u30F6\u00B0\u2032\u2033\u2103\uFFE0\uFF05\u2030"
    u",.:;?!)]}%"
    u"\uFF61\uFF63\uFF64\uFF65\uFF67\uFF68\uFF69\uFF6A\uFF6B\uFF6C\uFF6D\uFF6E\uFF6F\uFF70\uFF9E\uFF9F";
// Opening brackets, and signs in front of a number.
constexpr std::u16string_view kNotAtEnd =
    u"\u2018\u201C\uFF08\u3014\uFF3B\uFF5B\u3008\u300A\u300C\u300E\u3010\uFFE5\uFF04\uFFE1\uFF03([{\uFF62";

// The sets as host text, whose characters have no order in common with these.
std::vector<std::string> CharactersOf(std::u16string_view set) {
  std::vector<std::string> characters;
  for (const char16_t unit : set) characters.push_back(SystemCharsets().ToHostText({&unit, 1}));
  return characters;
}

bool Holds(const std::vector<std::string>& set, std::string_view character) {
  for (const std::string& each : set) {
    if (each == character) return true;
  }
  return false;
}

std::vector<std::string_view> CharactersOf(std::string_view line) {
  std::vector<std::string_view> characters;
  while (!line.empty()) {
    characters.push_back(NextCharacter(line));
    line.remove_prefix(characters.back().size());
  }
  return characters;
}

bool MayBreak(std::string_view before, std::string_view behind) {
  return MayEndLine(before) && MayBeginLine(behind);
}

bool IsWord(std::string_view character) { return character.size() == 1 && character != " "; }

// How many of `characters` from `from` on go into a line: to the last place where the rules allow a break and
// no Latin word is torn; what fits when there is none.
std::size_t TakenByLine(const std::vector<std::string_view>& characters, std::size_t from,
                        std::size_t width) {
  std::size_t columns = 0;
  std::size_t fits = from;
  while (fits < characters.size()) {
    columns += CharacterColumns(characters[fits]);
    if (columns > width && fits > from) break;
    ++fits;
  }
  if (fits == characters.size()) return fits - from;
  for (std::size_t at = fits; at > from; --at) {
    const bool torn = IsWord(characters[at - 1]) && IsWord(characters[at]);
    if (!torn && MayBreak(characters[at - 1], characters[at])) return at - from;
  }
  return fits - from;
}

struct OwnLine {
  std::string text;
  std::string end;
};

void AddFolded(std::vector<OwnLine>& lines, const HostLine& line, std::size_t width) {
  const std::vector<std::string_view> characters = CharactersOf(line.text);
  for (std::size_t from = 0; from < characters.size();) {
    const std::size_t count = TakenByLine(characters, from, width);
    std::string piece;
    for (std::size_t i = 0; i < count; ++i) piece += characters[from + i];
    from += count;
    lines.push_back({std::move(piece), from < characters.size() ? "\r\n" : std::string(line.end)});
  }
  if (characters.empty()) lines.push_back({"", std::string(line.end)});
}

// A line may well begin with ".profile" or ":-)": only double-byte characters are moved.
void MendBreak(OwnLine& line, OwnLine& next) {
  if (line.text.empty() || next.text.empty() || line.end != "\r\n" || next.end == "\r\r\n") return;
  std::string_view first = NextCharacter(next.text);
  while (first.size() == 2 && !MayBeginLine(first) && first.size() < next.text.size()) {
    line.text += first;
    next.text.erase(0, first.size());
    first = NextCharacter(next.text);
  }
  std::vector<std::string_view> characters = CharactersOf(std::string_view(line.text));
  while (characters.size() > 1 && characters.back().size() == 2 && !MayEndLine(characters.back())) {
    next.text.insert(0, characters.back());
    line.text.resize(line.text.size() - 2);
    characters.pop_back();
  }
}

}  // namespace

bool MayBeginLine(std::string_view character) {
  static const std::vector<std::string> set = CharactersOf(kNotAtStart);
  return !Holds(set, character);
}

bool MayEndLine(std::string_view character) {
  static const std::vector<std::string> set = CharactersOf(kNotAtEnd);
  return !Holds(set, character);
}

std::string ApplyKinsoku(std::string_view text, std::size_t width) {
  std::vector<OwnLine> mended;
  while (!text.empty()) {
    const HostLine line = TakeLine(text);
    mended.push_back({std::string(line.text), std::string(line.end)});
    if (mended.size() > 1) MendBreak(mended[mended.size() - 2], mended.back());
  }
  std::vector<OwnLine> lines;
  for (const OwnLine& line : mended) {
    if (line.end == "\r\r\n") {
      lines.push_back(line);
    } else {
      AddFolded(lines, {line.text, line.end}, width);
    }
  }
  std::string whole;
  for (const OwnLine& line : lines) whole += line.text + line.end;
  return whole;
}

}  // namespace wrenfold
