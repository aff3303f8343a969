// Parts of host text: they lie inside the text, begin and end at its units, and are as long as was asked for
// up to three bytes; escaping quotes fits its room and can be undone; searches agree with a plain walk.
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/demand.h"
#include "src/strings/letter_case.h"
#include "src/strings/randomness.h"
#include "src/strings/slicing.h"

namespace {

void CheckPart(std::string_view text, std::string_view part, const std::vector<bool>& border) {
  if (part.empty()) return;
  Demand(part.data() >= text.data() && part.data() + part.size() <= text.data() + text.size());
  const auto begin = static_cast<std::size_t>(part.data() - text.data());
  Demand(border[begin] && border[begin + part.size()]);
}

void CheckEscaping(std::string_view text) {
  std::string escaped(wfinfo::kEscapedRoom, '#');
  escaped.resize(wfinfo::EscapeQuotes(text, escaped.data()));
  std::string undone;
  for (std::string_view rest = escaped; !rest.empty();) {
    if (rest[0] == '\\' && rest.size() > 1) rest.remove_prefix(1);
    const std::string_view unit = wfinfo::NextUnit(rest);
    undone += unit;
    rest.remove_prefix(unit.size());
  }
  Demand(undone == text.substr(0, undone.size()));
  Demand(undone.size() == text.size() || escaped.size() >= wfinfo::kEscapedLimit);
}

void CheckSearch(std::string_view text, std::string_view part, const std::vector<bool>& border) {
  bool found = false;
  for (std::size_t at = 0; at <= text.size(); ++at)
    found = found || (border[at] && text.substr(at, part.size()) == part);
  Demand(wfinfo::Includes(text, part) == found);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const int start = data[0], count = data[1];
  const std::string_view text(reinterpret_cast<const char*>(data + 2), size - 2);
  std::vector<bool> border(text.size() + 1);
  border[0] = true;
  for (std::size_t at = 0; at < text.size(); border[at] = true) at += wfinfo::UnitLength(text.substr(at));

  const std::string_view left = wfinfo::LeftPart(text, count);
  const std::string_view right = wfinfo::RightPart(text, count);
  CheckPart(text, left, border);
  CheckPart(text, right, border);
  CheckPart(text, wfinfo::MiddlePart(text, start, count), border);
  CheckPart(text, wfinfo::BaseName(text), border);
  Demand(left.size() <= static_cast<std::size_t>(count));
  Demand(right.size() <= static_cast<std::size_t>(count) + 4);
  CheckEscaping(text);
  CheckSearch(text, text.substr(text.size() / 2, static_cast<std::size_t>(count % 4)), border);

  std::string upper(text);
  wfinfo::MakeUpperCase(upper);
  std::string again = upper;
  wfinfo::MakeUpperCase(again);
  Demand(upper == again && upper.size() == text.size());
  for (std::size_t i = 0; i < text.size(); ++i)
    Demand(upper[i] == text[i] || (text[i] >= 'a' && text[i] <= 'z'));
  wfinfo::MakeLowerCase(again);

  const int random = wfinfo::RandomnessScore(text) + 2 * wfinfo::DomainRandomness(text);
  Demand(random >= 0 && random <= 3);
  return 0;
}
