#include "host/terminal/terminal_text.h"

#include <algorithm>
#include <cstddef>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The control character at the start of `text`, or -1: U+0000 to U+001F, U+007F, U+0080 to U+009F; also a
// byte of the last ones that belongs to no character, since a terminal may take bytes for characters.
int ControlAt(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x20 || (first >= 0x7F && first < 0xA0)) return first;
  if (first != 0xC2 || text.size() < 2) return -1;
  const auto second = static_cast<unsigned char>(text[1]);
  return second >= 0x80 && second < 0xA0 ? second : -1;
}

// Bytes of the control character at the start of `text`.
std::size_t ControlLength(std::string_view text) { return text.starts_with('\xC2') ? 2 : 1; }

// Bytes of the character at the start of `text`, which is no control character.
std::size_t CharacterLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  const std::size_t most = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
  std::size_t length = 1;
  while (length < std::min(most, text.size()) && IsContinuation(text[length])) ++length;
  return length;
}

std::string Visible(int control) {
  if (control == '\r') return "\\r";
  if (control == '\n') return "\\n";
  if (control == '\t') return "\\t";
  return "\\x" + HexOf(static_cast<char>(control));
}

// `utf8` without control characters, cut behind `most` characters; those of `escaped` get a backslash. True
// when something was cut.
bool AddOnOneLine(std::string& text, std::string_view utf8, std::size_t most, std::string_view escaped) {
  std::size_t characters = 0;
  for (std::size_t at = 0; at < utf8.size();) {
    if (++characters > most) return true;
    const int control = ControlAt(utf8.substr(at));
    if (control >= 0) {
      text += Visible(control);
      at += ControlLength(utf8.substr(at));
      continue;
    }
    if (escaped.find(utf8[at]) != escaped.npos) text += '\\';
    const std::size_t length = CharacterLength(utf8.substr(at));
    text += utf8.substr(at, length);
    at += length;
  }
  return false;
}

}  // namespace

std::string Printable(std::string_view utf8) {
  std::string text;
  for (std::size_t at = 0; at < utf8.size();) {
    const int control = ControlAt(utf8.substr(at));
    if (utf8.substr(at).starts_with("\r\n")) {
      text += '\n';
      at += 2;
    } else if (control < 0 || control == '\n' || control == '\t') {
      const std::size_t length = CharacterLength(utf8.substr(at));
      text += utf8.substr(at, length);
      at += length;
    } else {
      text += Visible(control);
      at += ControlLength(utf8.substr(at));
    }
  }
  return text;
}

std::string Quoted(std::string_view utf8, std::size_t most) {
  std::string text = "\"";
  const bool cut = AddOnOneLine(text, utf8, most, "\"\\");
  return text + (cut ? "\"..." : "\"");
}

std::string OnOneLine(std::string_view utf8, std::size_t most) {
  std::string text;
  const bool cut = AddOnOneLine(text, utf8, most, "");
  return text + (cut ? "..." : "");
}

}  // namespace wrenfold
