#include "tests/monkey/arguments_win.h"

#include <cstring>

namespace monkey {
namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kHuge = 1024 * 1024;

// Words of the keyword parameters, and texts that look like what a parameter takes.
constexpr const char* kWords[] = {
    "",
    "a",
    "text",
    "unread",
    "mark",
    "replied",
    "attach",
    "mbox",
    "eml",
    "auto",
    "noencode",
    "encode",
    "append",
    "recv",
    "batch",
    "checkdate",
    "reply",
    "forward",
    "new",
    "sign",
    "up",
    "down",
    "Mail",
    "Page",
    "Roll",
    "Query",
    "All",
    "bcc",
    "open",
    "log",
    "sendnow",
    "direct",
    "decode",
    "utf-8",
    "japanese",
    "euro",
    "findflag",
    "QueryMultiReply",
    "CopyAttach",
    "szTitle",
    "szSignature",
    "szMailAddress",
    "nAccountIcon",
    "fImapSync",
    "Subject",
    "From",
    "X-Priority",
    "no time",
    "1 day",
    "-3 months",
    "hour",
    "72",
    "-1",
    "0x10",
    "99999999999999999999",
    "Tue, 5 Mar 2024 09:07:03 +0900",
    "Mon, 32 Foo 99999 99:99:99 +9999",
    "Alice <a@example.com>, \"B, C\" <b@example.com>",
    "a@b, c@d; e@f (g)",
    "\"never closed <x@y",
    "<<<>>>",
    "a:b, c@d;",
    "one,\"two\r\nlines\",three",
    "\"\"\"",
    ",,,\r\n,,",
    "*",
    "?:\\no such place",
    "NUL",
    "no\\such\\folder\\file.txt",
    "http://",
    "file.csv",
    "%s%n%d",
    "\\",
    "\r\n",
    "\r\r\n",
    "MainWnd()",
    "x = 1",
    "yes",
    "&Yes",
    "#32770",
};

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

}  // namespace

Arguments::Arguments() {
  page_ = Pages(2 * kPage, PAGE_READWRITE);
  DWORD before;
  VirtualProtect(page_ + kPage, kPage, PAGE_NOACCESS, &before);
  unreadable_ = static_cast<char*>(VirtualAlloc(nullptr, kPage, MEM_RESERVE, PAGE_NOACCESS));
  freed_ = Pages(kPage, PAGE_READWRITE);
  VirtualFree(freed_, kPage, MEM_DECOMMIT);
  huge_ = Pages(kHuge + kPage, PAGE_READWRITE);
  std::memset(huge_, 'h', kHuge);
  std::memset(room_, 0, sizeof room_);
}

Arguments::~Arguments() {
  for (char* pages : {page_, unreadable_, freed_, huge_}) VirtualFree(pages, 0, MEM_RELEASE);
}

// The bytes so that what follows them cannot be read.
const char* Arguments::AtPageEnd(const char* bytes, std::size_t size) {
  char* const start = page_ + kPage - size;
  std::memcpy(start, bytes, size);
  return start;
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
      const std::size_t size = 1 + dice.Below(64);
      std::memset(page_ + kPage - size, 'u', size);
      return shown = "unterminated", Address(page_ + kPage - size);
    }
  }
}

Slot Arguments::ReadableText(Dice& dice, std::string& shown) {
  switch (dice.Below(8)) {
    case 0: {
      const char* const cut = dice.Of(kCutTexts);
      shown = Shortened(cut) + " at a page end";
      return Address(AtPageEnd(cut, std::strlen(cut) + 1));
    }
    case 1: {
      const char* const word = dice.Of(kWords);
      shown = Shortened(word) + " at a page end";
      return Address(AtPageEnd(word, std::strlen(word) + 1));
    }
    case 2:
      if (!dice.OneIn(32)) break;
      return shown = "1 MiB", Address(huge_);
    case 3: {
      static const std::size_t kLengths[] = {126,  127,  128,  255,  256,  511,  1023,
                                             1024, 4094, 8189, 8190, 8191, 8192, 9000};
      const std::size_t length = dice.Of(kLengths);
      return shown = std::to_string(length) + " bytes", Address(huge_ + kHuge - length);
    }
    case 4:
      if (const char* result = results_[dice.Below(kResults)];
          result != nullptr && !IsBadStringPtrA(result, 1 << 28)) {
        return shown = "an earlier result", Address(result);
      }
      break;
  }
  const char* const word = dice.Of(kWords);
  return shown = Shortened(word), Address(word);
}

Slot Arguments::Text(Dice& dice, std::string& shown) {
  return dice.OneIn(4) ? NoText(dice, shown) : ReadableText(dice, shown);
}

Slot Arguments::For(const wfinfo::catalogue::Parameter& parameter, Dice& dice, std::string& shown) {
  const auto& type = TypeOf(parameter);
  // Not checked: whatever is no text there may crash. The first page of a record's room is all that is promised.
  if (type.shape == 'T') return type.checked ? Text(dice, shown) : ReadableText(dice, shown);
  if (type.shape == 'W') return shown = "L\"text\"", Address(L"text");
  if (parameter.type == "Bytes" || parameter.type == "Record") return shown = "a record", Address(room_);
  if (parameter.type == "Value" || parameter.type == "Rest") {
    if (dice.OneIn(2)) return ReadableText(dice, shown);
  }
  const Slot number = dice.OneIn(8) ? static_cast<Slot>(dice.Next()) : dice.Of(kNumbers);
  return shown = std::to_string(number), number;
}

}  // namespace monkey
