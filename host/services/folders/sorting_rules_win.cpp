// The user's sorting rules: mails filed by them, shown, and a new one made like the open mail.
#include <filesystem>
#include <iterator>
#include <map>
#include <optional>

#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/files/file_reasons.h"
#include "host/files/whole_file.h"
#include "host/folders/filter_rules.h"
#include "host/mail/missing_mail.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/selection_win.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"
#include "src/addresses/address_entry.h"

namespace wrenfold {
namespace {

std::filesystem::path RulesOf(Request& request, std::size_t tree) {
  return request.state.trees()[tree].root / "filters.txt";
}

using Rules = std::variant<std::vector<FilterRule>, std::string>;

Rules ReadRules(const std::filesystem::path& file) {
  const auto text = ReadWholeFile(file);
  if (!text) return CannotRead(file, "there are no sorting rules");
  Rules rules = ParseFilterRules(*text);
  if (auto* wrong = std::get_if<std::string>(&rules)) return PathToUtf8(file) + ", " + *wrong;
  return rules;
}

// Where each mail goes, by the number of the folder; folders that a rule names are made when they
// are missing.
std::map<std::size_t, std::vector<std::size_t>> Sorted(Request& request,
                                                       const std::vector<std::size_t>& mails,
                                                       std::string& failure) {
  HostState& state = request.state;
  std::map<std::size_t, Rules> rules;  // by tree
  std::map<std::size_t, std::vector<std::size_t>> sorted;
  for (const std::size_t mail : mails) {
    const std::size_t from = state.Mail(mail).folder;
    const std::size_t tree = state.folders()[from].tree;
    if (!rules.contains(tree)) rules[tree] = ReadRules(RulesOf(request, tree));
    if (const auto* reason = std::get_if<std::string>(&rules[tree])) {
      failure = *reason;
      continue;
    }
    const auto& tree_rules = std::get<std::vector<FilterRule>>(rules[tree]);
    const std::string* const name = FolderByRules(tree_rules, state.Message(mail).text);
    if (name == nullptr) continue;
    const auto found = state.tree().Find(*name, from);
    const auto made = found ? std::variant<std::size_t, std::string>(*found) : state.tree().Make(*name, from);
    if (const auto* reason = std::get_if<std::string>(&made)) {
      failure = *reason;
    } else if (std::get<std::size_t>(made) != from) {
      sorted[std::get<std::size_t>(made)].push_back(mail);
    }
  }
  return sorted;
}

Answer Sort(Request& request) {
  const std::vector<std::size_t> mails = SelectedMails(request);
  if (mails.empty()) return request.Fail(kNoMailSelected);
  std::string failure;
  Slot filed = 0;
  for (const auto& [folder, group] : Sorted(request, mails, failure)) {
    const std::string reason = request.state.MoveMails(group, folder);
    for (const std::size_t mail : group) filed += request.state.Mail(mail).folder == folder ? 1 : 0;
    if (failure.empty()) failure = reason;
  }
  if (failure.empty()) return Request::AnswerNumber(filed);
  const Answer failed = request.Fail(failure);
  return filed == 0 ? failed : Request::AnswerNumber(filed);
}

// The dialog of the rules is the terminal.
Answer ShowRules(Request& request) {
  if (request.state.folders().empty()) return request.Fail(kNoMailsOpen);
  const std::size_t tree = request.state.folders()[request.state.folder()].tree;
  const auto rules = ReadRules(RulesOf(request, tree));
  if (const auto* reason = std::get_if<std::string>(&rules)) return request.Fail(*reason);
  std::string shown = "sorting rules:\n";
  for (const FilterRule& rule : std::get<std::vector<FilterRule>>(rules)) {
    shown += "  " + Printable(SystemCharsets().HostToUtf8(rule.condition) + " => " + rule.folder) + "\n";
  }
  TheTerminal().Error(shown);
  return Request::Done(true);
}

// Sub-commands of code 10.
enum FilterCommand : Slot { kSort = 0, kShowRules = 1 };

Answer Filter(Request& request) {
  if (request.Number(0) == kSort) return Sort(request);
  return request.Number(0) == kShowRules ? ShowRules(request) : request.Fail("no such form of code 10");
}

// What of the open mail a new rule asks for.
constexpr const char* kRuleHeaders[] = {"From", "To", "Subject", "List-Id"};
constexpr Slot kAddressHeaders = 2;  // of these only the address counts

// The folder of a number in the order of GetNextFolder, which passes over those that were deleted.
std::optional<std::size_t> FolderOfNumber(const HostState& state, Slot number) {
  for (std::size_t i = 0; number >= 0 && i < state.folders().size(); ++i) {
    if (!state.folders()[i].removed && number-- == 0) return i;
  }
  return std::nullopt;
}

// header, number of the folder, 1 = the selected mails go there too, a number that is not looked at
Answer AddRule(Request& request) {
  HostState& state = request.state;
  const Slot header = request.Number(0);
  const auto folder = FolderOfNumber(state, request.Number(1));
  if (header < 0 || header >= static_cast<Slot>(std::size(kRuleHeaders))) {
    return request.Fail("no header of a rule is number " + std::to_string(header));
  }
  if (!folder) return request.Fail("no folder is number " + std::to_string(request.Number(1)));
  if (state.read_only()) return request.Fail("rules are not written with --read-only");
  const std::string name = kRuleHeaders[header];
  std::string value = state.Header(state.root(), name);
  wfinfo::AddressReader reader(value);
  if (header < kAddressHeaders) value = reader.Read() ? std::string(reader.entry().address) : "";
  if (value.empty()) return request.Fail("the mail has no " + name);
  const FilterRule rule{name + ": " + value, state.tree().PathInTree(*folder)};
  if (std::string failure = AddFilterRule(RulesOf(request, state.folders()[*folder].tree), rule);
      !failure.empty())
    return request.Fail(std::move(failure));
  if (request.Number(2) != 1) return Request::Done(true);
  std::string failure = state.MoveMails(SelectedMails(request), *folder);
  return failure.empty() ? Request::Done(true) : request.Fail(std::move(failure));
}

constexpr Service kServices[] = {
    {10, nullptr, Filter,
     "`DoFilter` moves the selected mails by the [sorting rules](#sorting-rules) and answers how many were "
     "filed; `FilterDlg` shows the rules on standard error"},
    {122, nullptr, WithRoot<AddRule>,
     "adds a [sorting rule](#sorting-rules) like the open mail: its From (0), To (1), Subject (2) or List-Id "
     "(3), the number of the folder in the order of `GetNextFolder` from 0, 1 to file the selected mails at "
     "once"},
};

}  // namespace

const ServiceFamily kSortingRulesServices = {kServices, {}};

}  // namespace wrenfold
