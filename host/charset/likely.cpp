#include "host/charset/likely.h"

#include <algorithm>

#include "host/charset/unicode.h"

namespace wrenfold {
namespace {

bool IsLetter(char16_t unit) { return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z'); }

bool IsKana(char16_t unit) { return unit >= 0x3041 && unit <= 0x30FE; }

// What no Japanese text holds: undefined codes, C1 controls, characters for private use.
bool IsBad(char16_t unit) {
  return unit == kReplacement || (unit >= 0x80 && unit < 0xA0) || (unit >= 0xE000 && unit < 0xF900);
}

// Japanese holds kana or common kanji, whose codes in Shift-JIS begin with 0x81 to 0x9F; those of accented
// letters are higher.
bool IsNoKatakana(char16_t unit) { return unit >= 0x80 && (unit < 0xFF61 || unit > 0xFF9F); }

// What speaks for and against Japanese in a text read as such.
struct JapaneseCount {
  std::size_t runs = 0;    // kana, and characters that stand beside others of their kind
  std::size_t lonely = 0;  // single kanji that touch a Latin letter: a misread accent
  std::size_t bad = 0;
};

JapaneseCount CountJapanese(std::u16string_view text, bool (*is_bad)(char16_t)) {
  JapaneseCount count;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    while (end < text.size() && text[end] >= 0x80 && !is_bad(text[end])) ++end;
    const std::size_t length = end - at;
    const bool touches = (at > 0 && IsLetter(text[at - 1])) || (end < text.size() && IsLetter(text[end]));
    const bool kana = length == 1 && IsKana(text[at]);
    if (length > 1 || kana) count.runs += length;
    if (length == 1 && touches && !kana) ++count.lonely;
    if (end < text.size() && is_bad(text[end])) ++count.bad;
    at = end + 1;
  }
  return count;
}

JapaneseCount CountShiftJis(std::string_view bytes, const JisTables& tables) {
  const bool has_common = std::any_of(bytes.begin(), bytes.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte > 0x80 && byte < 0xA0;
  });
  return CountJapanese(DecodeShiftJis(bytes, tables), has_common ? IsBad : IsNoKatakana);
}

// True for a byte that Windows-1252 leaves free.
bool HasHole(std::string_view bytes) { return bytes.find_first_of("\x81\x8D\x8F\x90\x9D") != bytes.npos; }

// C4 E4, "A" and "a" with dots in Windows-1252, is a whole character of EUC-JP too: kana, or a run of
// characters, must show that Japanese is meant.
bool IsEucJp(std::u16string_view euc, const JapaneseCount& as_shift_jis, bool japanese) {
  constexpr std::size_t kLongRun = 3;
  const JapaneseCount count = CountJapanese(euc, IsBad);
  if (count.bad > 0) return false;
  if (std::any_of(euc.begin(), euc.end(), IsKana)) return true;
  return as_shift_jis.bad > 0 && (japanese || count.runs >= kLongRun);
}

}  // namespace

bool IsLikelyUtf8(std::string_view bytes, std::size_t ratio) {
  const Utf8Count count = CountUtf8(bytes);
  return count.characters > 0 && count.characters >= ratio * count.broken;
}

Likely LikelyCharset(std::string_view bytes, bool japanese, const JisTables& tables) {
  const JapaneseCount count = CountShiftJis(bytes, tables);
  if (IsEucJp(DecodeEucJp(bytes, tables), count, japanese)) return Likely::kEucJp;
  const std::size_t against = count.bad + (HasHole(bytes) ? 0 : count.lonely);
  return japanese || against == 0 || count.runs > against ? Likely::kShiftJis : Likely::kWindows1252;
}

}  // namespace wrenfold
