#include "host/list/list_walk.h"

#include <iterator>

namespace wrenfold {
namespace {

enum class Others : std::uint8_t { kNone, kBehind, kRound };

struct RollRule {
  bool round_here;  // before any other folder
  Others others;
};

// By the number of the roll.
constexpr RollRule kRules[] = {
    {false, Others::kNone},  {false, Others::kBehind}, {false, Others::kNone},
    {true, Others::kNone},   {false, Others::kRound},  {false, Others::kRound},
    {false, Others::kRound}, {true, Others::kRound},   {true, Others::kRound},
};

RollRule RuleOf(Roll roll) {
  const auto number = static_cast<std::size_t>(roll);
  return number < std::size(kRules) ? kRules[number] : kRules[0];
}

}  // namespace

std::vector<std::size_t> MailsOnTheWay(std::span<const std::vector<std::size_t>> folders, ListPlace from,
                                       bool forwards, Roll roll) {
  std::vector<std::size_t> way;
  if (from.folder >= folders.size() || from.position >= folders[from.folder].size()) return way;
  const RollRule rule = RuleOf(roll);
  // Number `n` from the end that the walk begins at.
  const auto add = [&](const std::vector<std::size_t>& list, std::size_t first, std::size_t end) {
    for (std::size_t n = first; n < end; ++n) way.push_back(list[forwards ? n : list.size() - 1 - n]);
  };
  const std::vector<std::size_t>& here = folders[from.folder];
  const std::size_t passed = forwards ? from.position : here.size() - 1 - from.position;
  add(here, passed + 1, here.size());
  if (rule.round_here) add(here, 0, passed);
  const std::size_t behind = forwards ? folders.size() - 1 - from.folder : from.folder;
  const std::size_t others = rule.others == Others::kNone     ? 0
                             : rule.others == Others::kBehind ? behind
                                                              : folders.size() - 1;
  for (std::size_t n = 1; n <= others; ++n) {
    const std::size_t step = forwards ? n : folders.size() - n;
    const auto& list = folders[(from.folder + step) % folders.size()];
    add(list, 0, list.size());
  }
  // All the way round: what stands on the other side of the start.
  if (rule.others == Others::kRound && !rule.round_here) add(here, 0, passed);
  return way;
}

}  // namespace wrenfold
