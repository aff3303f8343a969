#include "host/mail/mail_order.h"

#include <algorithm>
#include <numeric>

#include "host/base/ascii.h"
#include "src/dates/date_parse.h"
#include "src/text/host_text.h"

namespace wrenfold {
namespace {

// Length of "re:", "re[2]:", "fw:" or "fwd:" and the blanks behind it, 0 for anything else.
std::size_t AnswerMark(std::string_view subject) {
  for (const std::string_view word : {"re", "fwd", "fw"}) {
    if (!subject.starts_with(word)) continue;
    std::size_t at = word.size();
    if (at < subject.size() && subject[at] == '[') {
      at = std::min(subject.find_first_not_of("0123456789", at + 1), subject.size());
      if (at >= subject.size() || subject[at++] != ']') continue;
    }
    if (at >= subject.size() || subject[at] != ':') continue;
    return std::min(subject.find_first_not_of(' ', at + 1), subject.size());
  }
  return 0;
}

}  // namespace

std::optional<SortMethod> SortMethodOf(std::int64_t number) {
  const bool backwards = number >= kBackwards;
  if (backwards) number -= kBackwards;
  if (number < 0 || number > kLastSortKey) return std::nullopt;
  return SortMethod{static_cast<SortKey>(number), backwards};
}

std::vector<std::size_t> SortedPlaces(std::span<const OrderKey> keys, bool backwards) {
  std::vector<std::size_t> places(keys.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::stable_sort(places.begin(), places.end(), [&](std::size_t a, std::size_t b) {
    return backwards ? keys[b] < keys[a] : keys[a] < keys[b];
  });
  return places;
}

std::string TextToSortBy(std::string_view value) {
  std::string text;
  for (; !value.empty(); value.remove_prefix(wfinfo::UnitLength(value))) {
    const std::string_view unit = wfinfo::NextUnit(value);
    const char c = unit[0];
    if (unit.size() > 1) {
      text += unit;
    } else if (IsBlank(c) || IsLineEnd(c)) {
      if (!text.empty() && text.back() != ' ') text += ' ';
    } else if (c != '"') {
      text += LowerAscii(c);
    }
  }
  while (text.ends_with(' ')) text.pop_back();
  return text;
}

std::string SubjectToSortBy(std::string_view subject) {
  const std::string text = TextToSortBy(subject);
  std::string_view rest = text;
  while (const std::size_t mark = AnswerMark(rest)) rest.remove_prefix(mark);
  return std::string(rest);
}

std::int64_t MomentOf(std::string_view date) {
  const auto read = wfinfo::ReadHeaderDate(date);
  return read ? wfinfo::OnMachineClock(*read, 0) : -1;
}

}  // namespace wrenfold
