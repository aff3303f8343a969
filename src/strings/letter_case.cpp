#include "src/strings/letter_case.h"

#include <string_view>

#include "src/text/host_text.h"

namespace wfinfo {

namespace {

constexpr char kCaseBit = 0x20;

void ChangeLetters(std::span<char> text, char first, char last) {
  for (std::size_t at = 0; at < text.size();) {
    char& c = text[at];
    if (c >= first && c <= last) c = static_cast<char>(c ^ kCaseBit);
    at += UnitLength(std::string_view(text.data(), text.size()).substr(at));
  }
}

}  // namespace

void MakeUpperCase(std::span<char> text) { ChangeLetters(text, 'a', 'z'); }

void MakeLowerCase(std::span<char> text) { ChangeLetters(text, 'A', 'Z'); }

}  // namespace wfinfo
