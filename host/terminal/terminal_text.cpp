#include "host/terminal/terminal_text.h"

#include <cstddef>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The control character at the start of `text`, or -1: U+0000 to U+001F, U+007F, U+0080 to U+009F.
int ControlAt(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x20 || first == 0x7F) return first;
  if (first != 0xC2 || text.size() < 2) return -1;
  const auto second = static_cast<unsigned char>(text[1]);
  return second >= 0x80 && second < 0xA0 ? second : -1;
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
      at += control >= 0x80 ? 2 : 1;
      continue;
    }
    if (escaped.find(utf8[at]) != escaped.npos) text += '\\';
    do text += utf8[at++];
    while (at < utf8.size() && IsContinuation(utf8[at]));
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
      text += utf8[at++];
    } else {
      text += Visible(control);
      at += control >= 0x80 ? 2 : 1;
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
