// HTML, of mails and of signatures: any of it is shown, within bounds, without what is not to be seen; text
// made HTML is shown as that text; quoted HTML holds what is quoted.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "host/charset/charsets.h"
#include "host/mime/html_text.h"
#include "host/mime/html_write.h"
#include "host/mime/sections.h"

namespace {

// Small enough that inputs of a few kilobytes reach them.
wrenfold::HtmlLimits SmallLimits() {
  wrenfold::HtmlLimits limits;
  limits.html_bytes = 3000;
  limits.memory_bytes = std::size_t{8} << 20;
  limits.depth = 200;
  return limits;
}

void CheckShown(std::u16string_view html) {
  constexpr std::size_t kToldOfLimits = 100;
  const std::u16string text = wrenfold::TextOfHtml(html, SmallLimits());
  Demand(text.find_first_of(std::u16string_view(u"\0\u00AD\u034F\u200B\u2060\uFEFF\u00A0\u2007\u202F", 9)) ==
         text.npos);
  // A line end of two units for an element of three.
  Demand(text.size() <= 2 * html.size() + kToldOfLimits);
  Demand(wrenfold::TextOfHtml(html, SmallLimits()) == text);
}

// Text as it is shown: one kind of line end, no blank in front of it, nothing that controls.
std::u16string Plain(std::u16string_view wide) {
  constexpr std::u16string_view kUnseen = u"\u00AD\u034F\u200B\u2060\uFEFF\u00A0\u2007\u202F";
  std::u16string plain;
  for (const char16_t unit : wide) {
    if (unit == u'\n') {
      while (!plain.empty() && plain.back() == u' ') plain.pop_back();
      plain += u"\r\n";
    } else {
      plain += unit < 0x20 || kUnseen.find(unit) != kUnseen.npos ? u'x' : unit;
    }
  }
  while (!plain.empty() && plain.back() == u' ') plain.pop_back();
  return plain;
}

void CheckMade(std::u16string_view wide) {
  const std::u16string text = Plain(wide);
  std::u16string shown = wrenfold::TextOfHtml(wrenfold::HtmlOfText(text));
  while (!shown.empty() && shown.back() == u' ') shown.pop_back();
  Demand(shown == text);
}

// Without `piece`, where that gives `wanted`; false when it does so nowhere.
bool GivesWithout(const std::u16string& text, std::u16string_view piece, std::u16string_view wanted) {
  for (std::size_t at = text.find(piece); at != text.npos; at = text.find(piece, at + 1)) {
    if (std::u16string(text).erase(at, piece.size()) == wanted) return true;
  }
  return false;
}

// The quoted HTML is the HTML with a begin and an end put in.
void CheckQuoted(std::u16string_view html) {
  constexpr char16_t kMark = u'\u65E5';
  const std::u16string around = wrenfold::QuotedHtml(std::u16string_view(&kMark, 1));
  const std::u16string begin = around.substr(0, around.find(kMark));
  const std::u16string end = around.substr(begin.size() + 1);
  const std::u16string quoted = wrenfold::QuotedHtml(html);
  Demand(quoted.size() == begin.size() + html.size() + end.size());
  bool holds = false;
  for (std::size_t at = quoted.find(begin); at != quoted.npos && !holds; at = quoted.find(begin, at + 1))
    holds = GivesWithout(std::u16string(quoted).erase(at, begin.size()), end, html);
  Demand(holds);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::u16string wide = wrenfold::Utf8ToWide(bytes);
  CheckShown(wide);
  CheckMade(wide);
  CheckQuoted(wide);
  wrenfold::HtmlOfMail(wrenfold::SplitMessage(bytes));
  return 0;
}
