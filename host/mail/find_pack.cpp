#include "host/mail/find_pack.h"

#include "host/base/ascii.h"
#include "host/base/shortened.h"
#include "host/mail/header_edit.h"
#include "host/mail/headers.h"
#include "host/terminal/shown_host_text.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

bool BeginsWith(std::string_view text, std::string_view wanted) {
  while (!wanted.empty()) {
    const std::string_view unit = wfinfo::NextUnit(text);
    const std::string_view expected = wfinfo::NextUnit(wanted);
    const bool same = unit == expected || (unit.size() == 1 && EqualsIgnoringCase(unit, expected));
    if (!same) return false;
    text.remove_prefix(unit.size());
    wanted.remove_prefix(expected.size());
  }
  return true;
}

bool ConditionHolds(std::string_view line, std::string_view mail) {
  const std::size_t colon = line.find(':');
  const std::string_view place = colon == line.npos ? "Any" : Trim(line.substr(0, colon));
  const std::string_view wanted = colon == line.npos ? line : Trim(line.substr(colon + 1));
  if (EqualsIgnoringCase(place, "Any")) return HoldsText(mail, wanted);
  if (EqualsIgnoringCase(place, "Body")) return HoldsText(SplitMail(mail).body, wanted);
  for (std::size_t n = 0; const auto value = HeaderValue(mail, place, n); ++n) {
    if (HoldsText(*value, wanted)) return true;
  }
  return false;
}

}  // namespace

bool HoldsText(std::string_view text, std::string_view wanted) {
  for (;; text.remove_prefix(wfinfo::UnitLength(text))) {
    if (BeginsWith(text, wanted)) return true;
    if (text.empty()) return false;
  }
}

std::string_view NoPlaceOf(std::string_view pack) {
  while (!pack.empty()) {
    const LineLength length = FirstLine(pack);
    const std::string_view line = Trim(pack.substr(0, length.text));
    const std::size_t colon = line.find(':');
    if (colon != line.npos && !CanBeHeader(Trim(line.substr(0, colon)))) return line;
    pack.remove_prefix(length.with_end);
  }
  return "";
}

std::string WhyNoPlace(std::string_view line) {
  const std::string text = ShownHostText(line);
  return "'" + Shortened(text.substr(0, text.find(':'))) +
         "' is no name of a header; to look for the text anywhere, write Any: " + Shortened(text);
}

bool Finds(std::string_view pack, std::string_view mail) {
  while (!pack.empty()) {
    const LineLength length = FirstLine(pack);
    const std::string_view line = Trim(pack.substr(0, length.text));
    if (!line.empty() && !ConditionHolds(line, mail)) return false;
    pack.remove_prefix(length.with_end);
  }
  return true;
}

}  // namespace wrenfold
