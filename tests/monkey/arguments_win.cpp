#include "tests/monkey/arguments_win.h"

#include <cstring>
#include <string_view>

#include "tests/monkey/exclusions.h"
#include "tests/monkey/words.h"

namespace monkey {
namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kHuge = 1024 * 1024;
constexpr std::size_t kLongest = 9000;  // where there are no huge ones

// What ends in the middle of a character or an escape of host text.
constexpr const char* kCutTexts[] = {"\x82",
                                     "abc\x93",
                                     "\x1A",
                                     "\x1A\x81",
                                     "\x1A\x81\x81",
                                     "\x1A\xFF\xFF\xFF",
                                     "\x93\xFA\x96",
                                     "\xFC\xFC\xFC",
                                     "\x80\xA0\xFD\xFE\xFF",
                                     "a\x1A\x80\x80\x80z"};

constexpr Slot kNumbers[] = {0,
                             1,
                             -1,
                             2,
                             3,
                             7,
                             10,
                             31,
                             32,
                             100,
                             255,
                             256,
                             8190,
                             8191,
                             8192,
                             65535,
                             65536,
                             0x7FFFFFFF,
                             static_cast<Slot>(0x80000000),
                             0xFFFFFFFF,
                             0x7FFFFFFFFFFFFFFF,
                             static_cast<Slot>(1) << 63,
                             -2,
                             -100,
                             40002};

Slot Address(const void* address) { return static_cast<Slot>(reinterpret_cast<INT_PTR>(address)); }

char* Pages(std::size_t size, DWORD protection) {
  return static_cast<char*>(VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, protection));
}

std::string Shortened(std::string_view text) {
  std::string shown = "\"";
  for (const char c : text.substr(0, 24)) {
    if (c >= ' ' && c <= '~') {
      shown += c;
    } else {
      char code[8];
      wsprintfA(code, "\\x%02X", static_cast<unsigned char>(c));
      shown += code;
    }
  }
  return shown + (text.size() > 24 ? "...\"" : "\"");
}

// `count` pieces of memory of `size` bytes, each with a page behind it that cannot be touched.
char* GuardedPieces(std::size_t count, std::size_t size) {
  char* const pieces = Pages(count * (size + kPage), PAGE_READWRITE);
  for (std::size_t i = 0; i < count; ++i) {
    DWORD before;
    VirtualProtect(pieces + i * (size + kPage) + size, kPage, PAGE_NOACCESS, &before);
  }
  return pieces;
}

// What 1 MiB is made of: one piece over and over.
constexpr std::string_view kFillings[] = {"h",     "\x93\xFA",   "\x1A\x81\x82\x84", "a@b.c, ",
                                          "\r\n",  "\"",         "Subject: x\r\n ",  "> word word\r\n",
                                          "<(\"[", "1,\"2\"\r\n"};
constexpr std::size_t kFillingCount = std::size(kFillings);
constexpr std::size_t kHugeStride = kHuge + 2 * kPage;

}  // namespace

Arguments::Arguments() {
  pages_ = GuardedPieces(kPlaces, kPage);
  unreadable_ = static_cast<char*>(VirtualAlloc(nullptr, kPage, MEM_RESERVE, PAGE_NOACCESS));
  freed_ = Pages(kPage, PAGE_READWRITE);
  VirtualFree(freed_, kPage, MEM_DECOMMIT);
  // The terminator is the last byte that can be read.
  huge_ = GuardedPieces(kFillingCount, kHuge + kPage);
  for (std::size_t i = 0; i < kFillingCount; ++i) {
    char* const text = huge_ + i * kHugeStride;
    for (std::size_t at = 0; at < kHuge + kPage - 1; ++at) text[at] = kFillings[i][at % kFillings[i].size()];
  }
  room_ = GuardedPieces(1, kPage);
}

Arguments::~Arguments() {
  for (char* pages : {pages_, unreadable_, freed_, huge_, room_}) VirtualFree(pages, 0, MEM_RELEASE);
}

// The bytes so that what follows them cannot be read. Several of them live at once.
char* Arguments::AtPageEnd(const void* bytes, std::size_t size) {
  char* const page = pages_ + next_place_++ % kPlaces * 2 * kPage;
  return static_cast<char*>(std::memcpy(page + kPage - size, bytes, size));
}

Slot Arguments::NoText(Dice& dice, std::string& shown) {
  switch (dice.Below(5)) {
    case 0:
      return shown = "null", 0;
    case 1: {
      const Slot number = static_cast<Slot>(dice.Below(0x10000));
      return shown = std::to_string(number), number;
    }
    case 2:
      return shown = "unreadable", Address(unreadable_ + dice.Below(kPage));
    case 3:
      return shown = "freed", Address(freed_ + dice.Below(kPage));
    default: {
      char bytes[64];
      std::memset(bytes, dice.Next() & 1 ? 'u' : '\x82', sizeof bytes);
      return shown = "unterminated", Address(AtPageEnd(bytes, 1 + dice.Below(sizeof bytes)));
    }
  }
}

// `length` bytes of a filling, which end at a page end and begin anywhere: also inside a character.
Slot Arguments::LongText(Dice& dice, std::size_t length, std::string& shown) {
  const std::size_t filling = dice.Below(kFillingCount);
  shown = std::to_string(length) + " bytes of " + Shortened(kFillings[filling]);
  return Address(huge_ + filling * kHugeStride + kHuge + kPage - 1 - length);
}

Slot Arguments::ReadableText(Dice& dice, std::string& shown) {
  switch (dice.Below(8)) {
    case 0: {
      const char* const cut = dice.Of(kCutTexts);
      shown = Shortened(cut) + " at a page end";
      return Address(AtPageEnd(cut, std::strlen(cut) + 1));
    }
    case 1:
      if (!dice.OneIn(32) || !huge_texts_) break;
      return LongText(dice, kHuge - 2 + dice.Below(4), shown);
    case 2: {
      static const std::size_t kLengths[] = {126,  127,  128,  255,  256,  495,  496,  511,
                                             1023, 1024, 4094, 8189, 8190, 8191, 8192, 9000};
      return LongText(dice, dice.Of(kLengths), shown);
    }
    case 3:
      if (const char* result = results_[dice.Below(kResults)];
          result != nullptr && !IsBadStringPtrA(result, 1 << 28) &&
          (huge_texts_ || std::strlen(result) <= kLongest)) {
        return shown = "an earlier result", Address(result);
      }
      break;
  }
  const char* const word = Words()[dice.Below(Words().size())];
  shown = Shortened(word) + " at a page end";
  return Address(AtPageEnd(word, std::strlen(word) + 1));
}

Slot Arguments::Text(Dice& dice, std::string& shown) {
  return dice.OneIn(4) ? NoText(dice, shown) : ReadableText(dice, shown);
}

// Not checked by the library: what is no text there may crash.
Slot Arguments::WideText(Dice& dice, std::string& shown) {
  static const std::wstring_view kWide[] = {L"",    L"text", L"\xD83D", L"\xDE00\xD83D", L"\x65E5\x672C\r\n",
                                            L"%s%n"};
  const std::wstring_view text = dice.Of(kWide);
  shown = "wide " + std::to_string(text.size());
  return Address(AtPageEnd(text.data(), (text.size() + 1) * sizeof(wchar_t)));
}

Slot Arguments::Window(Dice& dice, std::string& shown) {
  const std::size_t which = dice.Below(windows.size() + 2);
  if (which < windows.size()) return shown = "a window", Address(windows[which]);
  const Slot number = dice.Of(kNumbers);
  return shown = std::to_string(number), number;
}

Slot Arguments::NoWindow(std::string& shown) {
  shown.assign(1, '0');
  return 0;
}

Slot Arguments::Number(Dice& dice, std::string& shown) {
  const Slot number = dice.OneIn(8) ? static_cast<Slot>(dice.Next()) : dice.Of(kNumbers);
  return shown = std::to_string(number), number;
}

Slot Arguments::For(const wfinfo::catalogue::Row& row, const wfinfo::catalogue::Parameter& parameter,
                    Dice& dice, std::string& shown) {
  const auto& type = TypeOf(parameter);
  huge_texts_ = !ShowsItsTexts(row.name);
  if (const OwnTexts* const own = OwnTextsOf(row.name, parameter.name); own != nullptr && !dice.OneIn(8)) {
    const char* const text = own->texts[dice.Below(own->texts.size())];
    return shown = Shortened(text), Address(AtPageEnd(text, std::strlen(text) + 1));
  }
  if (const OwnNumbers* const own = OwnNumbersOf(row.name, parameter.name); own != nullptr) {
    const Slot number = own->numbers[dice.Below(own->numbers.size())];
    return shown = std::to_string(number), number;
  }
  if (type.shape == 'T') {
    if (OwnTextsOf(row.name, parameter.name) != nullptr) return NoText(dice, shown);
    return type.checked ? Text(dice, shown) : ReadableText(dice, shown);
  }
  if (type.shape == 'W') return WideText(dice, shown);
  if (parameter.type == "Bytes" || parameter.type == "Record") {
    for (std::size_t at = 0; at < kPage; ++at) room_[at] = static_cast<char>(dice.Next());
    return shown = "a record", Address(room_);
  }
  if (parameter.type == "Handle") {
    const Slot window = Window(dice, shown);
    const bool names_all = static_cast<unsigned short>(window) == 0xFFFF;
    return names_all && MustNameOneWindow(row.name, parameter.name) ? NoWindow(shown) : window;
  }
  if (parameter.type == "Value" || parameter.type == "Rest") {
    if (dice.OneIn(2)) return Text(dice, shown);
    if (dice.OneIn(4)) return shown = "an earlier number", numbers_[dice.Below(kResults)];
  }
  const Slot number = Number(dice, shown);
  if (!IsMessage(row.name, parameter.name)) return number;
  return shown = std::to_string(number & kMessages), number & kMessages;
}

}  // namespace monkey
