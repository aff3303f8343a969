#include "src/strings/letter_case.h"

#include <string_view>

#include "src/text/ascii.h"
#include "src/text/host_text.h"

namespace wfinfo {

namespace {

void ChangeLetters(std::span<char> text, char (*changed)(char)) {
  for (std::size_t at = 0; at < text.size();) {
    text[at] = changed(text[at]);
    at += UnitLength(std::string_view(text.data(), text.size()).substr(at));
  }
}

}  // namespace

void MakeUpperCase(std::span<char> text) { ChangeLetters(text, UpperAscii); }

void MakeLowerCase(std::span<char> text) { ChangeLetters(text, LowerAscii); }

}  // namespace wfinfo
