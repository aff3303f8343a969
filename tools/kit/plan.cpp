#include "tools/kit/plan.h"

#include <algorithm>

namespace kit {
namespace {

constexpr int kUsualSeconds = 120;

std::vector<std::string> Texts(const Json& list) {
  std::vector<std::string> texts;
  for (const Json& item : list.items) texts.push_back(item.text);
  return texts;
}

std::vector<std::pair<std::string, std::string>> Pairs(const Json& object) {
  std::vector<std::pair<std::string, std::string>> pairs;
  for (const auto& [name, value] : object.members) pairs.emplace_back(name, value.text);
  return pairs;
}

std::vector<LeftOut> Reasons(const Json& list, const char* name) {
  std::vector<LeftOut> reasons;
  for (const Json& item : list.items) reasons.push_back({item[name].text, item["reason"].text});
  return reasons;
}

Suite SuiteOf(const Json& from) {
  return {from["name"].text,     from["program"].text, from["folder"].text,
          from["desktop"].truth, from["first"].truth,  from["seconds"].Int(kUsualSeconds)};
}

MacroRun MacroRunOf(const Json& from) {
  return {from["name"].text,        Pairs(from["copies"]),
          Pairs(from["files"]),     Texts(from["folders"]),
          Texts(from["arguments"]), from["input"].text,
          from["output"].text,      from["errors"].text,
          from["joined"].truth,     from["seconds"].Int(kUsualSeconds)};
}

bool MatchesOne(std::string_view pattern, std::string_view name) {
  std::size_t p = 0, n = 0, star = pattern.npos, behind = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      behind = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
      ++p, ++n;
    } else if (star != pattern.npos) {
      p = star + 1;
      n = ++behind;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == pattern.npos;
}

}  // namespace

std::optional<Plan> ReadPlan(std::string_view text) {
  const std::optional<Json> json = ReadJson(text);
  if (!json || (*json)["suites"].kind != Json::Kind::kList) return std::nullopt;
  Plan plan;
  plan.version = (*json)["version"].text;
  plan.commit = (*json)["commit"].text;
  for (const Json& item : (*json)["suites"].items) plan.suites.push_back(SuiteOf(item));
  for (const Json& item : (*json)["macros"].items) plan.macros.push_back(MacroRunOf(item));
  plan.left_out = Reasons((*json)["left_out"], "pattern");
  plan.absent = Reasons((*json)["absent"], "name");
  plan.key_containers = Texts((*json)["key_containers"]);
  return plan;
}

Record::Record(std::string_view text) {
  const std::optional<Json> json = ReadJson(text);
  if (!json) return;
  system_ = (*json)["system"].text;
  for (const auto& [name, value] : (*json)["tests"].members) {
    tests_.emplace_back(name, Recorded{value["outcome"].text, value["why"].text});
  }
  std::sort(tests_.begin(), tests_.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
}

Recorded Record::Of(std::string_view test) const {
  const auto found =
      std::lower_bound(tests_.begin(), tests_.end(), test,
                       [](const auto& entry, std::string_view name) { return entry.first < name; });
  return found != tests_.end() && found->first == test ? found->second : Recorded{};
}

bool Matches(std::string_view patterns, std::string_view name) {
  while (true) {
    const std::size_t end = patterns.find(':');
    if (MatchesOne(patterns.substr(0, end), name)) return true;
    if (end == patterns.npos) return false;
    patterns.remove_prefix(end + 1);
  }
}

}  // namespace kit
