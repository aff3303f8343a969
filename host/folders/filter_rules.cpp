#include "host/folders/filter_rules.h"

#include <system_error>

#include "host/base/ascii.h"
#include "host/base/utf8_mark.h"
#include "host/charset/charsets.h"
#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/whole_file.h"
#include "host/mail/find_pack.h"

namespace wrenfold {
namespace {

constexpr std::string_view kArrow = "=>";

}  // namespace

std::variant<std::vector<FilterRule>, std::string> ParseFilterRules(std::string_view utf8) {
  utf8 = WithoutUtf8Mark(utf8);
  std::vector<FilterRule> rules;
  for (std::size_t number = 1; !utf8.empty(); ++number) {
    const LineLength length = FirstLine(utf8);
    const std::string_view line = Trim(utf8.substr(0, length.text));
    utf8.remove_prefix(length.with_end);
    if (line.empty() || line.starts_with('#')) continue;
    const std::size_t arrow = line.rfind(kArrow);
    if (arrow == line.npos) return "line " + std::to_string(number) + ": \"=> folder\" is missing";
    const std::string_view condition = Trim(line.substr(0, arrow));
    const std::string_view folder = Trim(line.substr(arrow + kArrow.size()));
    if (condition.empty() || folder.empty()) {
      return "line " + std::to_string(number) + ": a rule is \"header: text => folder\"";
    }
    const std::string host = SystemCharsets().Utf8ToHost(condition);
    const std::string_view no_place = NoPlaceOf(host);
    if (!no_place.empty()) return "line " + std::to_string(number) + ": " + WhyNoPlace(no_place);
    rules.push_back({host, std::string(folder)});
  }
  return rules;
}

std::string AddFilterRule(const std::filesystem::path& file, const FilterRule& rule) {
  const std::string line = SystemCharsets().HostToUtf8(rule.condition) + " => " + rule.folder;
  // A line that would be read as something else is no rule.
  const auto parsed = ParseFilterRules(line);
  const auto* rules = std::get_if<std::vector<FilterRule>>(&parsed);
  const bool same = rules != nullptr && rules->size() == 1 && (*rules)[0].condition == rule.condition &&
                    (*rules)[0].folder == rule.folder;
  if (const std::string_view no_place = NoPlaceOf(rule.condition); !no_place.empty())
    return WhyNoPlace(no_place);
  if (!same) return "this can be no rule: " + line;
  const FileHold hold(file);
  if (hold.failure()) return *hold.failure();
  std::error_code error;
  const auto before = ReadWholeFile(file);
  if (!before && std::filesystem::exists(file, error)) return WhyUnreadable(file);
  std::string text = before.value_or("");
  if (!text.empty() && !text.ends_with('\n')) text += "\r\n";
  const WriteOutcome outcome = ReplaceFile(file, text + line + "\r\n");
  return outcome ? "" : WhyUnwritable(file, outcome.reason);
}

const std::string* FolderByRules(const std::vector<FilterRule>& rules, std::string_view mail) {
  for (const FilterRule& rule : rules) {
    if (Finds(rule.condition, mail)) return &rule.folder;
  }
  return nullptr;
}

}  // namespace wrenfold
