// The user's sorting rules, a text file in UTF-8: on each line a condition as in a find pack (find_pack.h)
// and the folder of the mails for which it holds; the first rule that fits counts.
//
//   # newsletters
//   List-Id: news.example.jp => newsletters
//   From: alice@example.com  => people/alice
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace wrenfold {

struct FilterRule {
  std::string condition;  // host text
  std::string folder;     // UTF-8
};

// The rules, or what is wrong: "line 3: ...".
std::variant<std::vector<FilterRule>, std::string> ParseFilterRules(std::string_view utf8);

// Adds a rule behind those of a file, which is made when missing. Why that is not possible, "" when it
// was done.
std::string AddFilterRule(const std::filesystem::path& file, const FilterRule& rule);

// The folder for a mail (host text); nullptr when no rule fits.
const std::string* FolderByRules(const std::vector<FilterRule>& rules, std::string_view mail);

}  // namespace wrenfold
