#include "host/library/export_help.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "host/base/nearest_names.h"
#include "src/bridge/host_protocol.h"

namespace wrenfold {
namespace {

using wfinfo::catalogue::Kind;
using wfinfo::catalogue::kNoFirstSlot;
using wfinfo::catalogue::Parameter;
using wfinfo::catalogue::Row;

// What a macro may pass for a parameter of a catalogue type.
struct TypeRow {
  std::string_view type;
  std::string_view meaning;
  bool takes_text;
  bool takes_number;  // other than 0
};

constexpr TypeRow kTypes[] = {
    {"Text", "text", true, true},  // the library reports a number
    {"OptText", "text or null", true, true},
    {"RawText", "text", true, false},
    {"WideText", "text", true, false},
    {"Value", "number or text", true, true},
    {"Int64", "number or text", true, true},
    {"Int32", "number", false, true},
    {"UInt32", "number", false, true},
    {"Handle", "handle", false, true},
    {"Bytes", "text, or the address of bytes", true, true},
    {"Record", "address of a record", true, true},
    {"Rest", "further numbers or texts", true, true},
};

struct ResultRow {
  std::string_view type;
  std::string_view meaning;
};

constexpr ResultRow kResults[] = {
    {"Int", "a number, 0 on failure"},
    {"Int32", "a number, 0 on failure"},
    {"UInt32", "a number, 0 on failure"},
    {"Str", "a text, \"\" on failure"},
    {"OptStr", "a text, or 0"},
    {"Handle", "a handle, 0 on failure"},
    {"Void", "nothing"},
};

// The host's own side of the hand-over: a macro that called them would pull the ground from under
// the library.
constexpr std::string_view kHostOnly[] = {"NotifyWrenfoldInfo", "GetWFInfoVersion"};

template <class List, class Value>
bool Holds(const List& list, const Value& value) {
  return std::find(std::begin(list), std::end(list), value) != std::end(list);
}

const TypeRow& TypeOf(const Parameter& parameter) {
  const auto* row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                 [&](const TypeRow& r) { return r.type == parameter.type; });
  return row == std::end(kTypes) ? kTypes[4] : *row;
}

bool IsRest(const Parameter& parameter) { return parameter.type == "Rest"; }
bool IsOptional(const Parameter& parameter) { return parameter.type == "OptText" || IsRest(parameter); }

// Parameters that cannot be left out: those before the optional ones at the end.
std::size_t Needed(const Row& row) {
  std::size_t needed = row.parameters.size();
  while (needed > 0 && IsOptional(row.parameters[needed - 1])) --needed;
  return needed;
}

std::size_t Most(const Row& row) {
  const bool open = !row.parameters.empty() && IsRest(row.parameters.back());
  return open ? kMostParameters : row.parameters.size();
}

// "F71 F12:40024" as "code 71 (Frame), code 12 (Frame) with command 40024".
std::string RequestsText(std::string_view requests) {
  std::string text;
  for (std::size_t at = 0; at < requests.size();) {
    const std::size_t end = std::min(requests.find(' ', at), requests.size());
    const std::string_view word = requests.substr(at, end - at);
    at = end + 1;
    if (word.size() < 2) continue;
    const std::size_t colon = std::min(word.find(':'), word.size());
    const std::string_view dispatcher = word[0] == 'H' ? "Host" : word[0] == 'F' ? "Frame" : "View";
    if (!text.empty()) text += ", ";
    text.append(word[0] == 'M' ? "menu command " : "code ").append(word.substr(1, colon - 1));
    if (word[0] != 'M') text.append(" (").append(dispatcher).append(")");
    if (colon < word.size()) text.append(" with command ").append(word.substr(colon + 1));
  }
  return text;
}

std::string SentText(const Row& row) {
  const std::string code = std::to_string(row.code);
  if (row.kind == Kind::kMenu) return "menu command " + code;
  if (row.kind == Kind::kHand) return RequestsText(row.requests);
  std::string text = "code " + code + " (" + std::string(row.dispatcher) + ")";
  if (row.first_slot == kNoFirstSlot) return text;
  return text + (row.kind == Kind::kThin ? ", sub-command " : ", command ") + std::to_string(row.first_slot);
}

std::string DialogText(const Row& row) {
  if (row.kind == Kind::kHand) return "";
  const bool allowed = row.kind != Kind::kMenu && wfinfo::IsAllowedDuringDialog(row.code);
  return allowed ? "; goes through while a dialog shows" : "; refused while a dialog shows";
}

std::string CountText(const Row& row) {
  const std::size_t least = Needed(row);
  const std::size_t most = Most(row);
  std::string text = std::to_string(least);
  if (most > least) text += " to " + std::to_string(most);
  text += most == 1 ? " parameter" : " parameters";
  if (row.parameters.empty()) return "no parameters";
  text += " (";
  for (std::size_t i = 0; i < row.parameters.size(); ++i) {
    if (i > 0) text += ", ";
    text += IsRest(row.parameters[i]) ? "..." : std::string(row.parameters[i].name);
  }
  return text + ")";
}

std::string Parameters(const Row& row) {
  std::string text;
  for (const Parameter& parameter : row.parameters) {
    text.append("  ")
        .append(IsRest(parameter) ? "..." : parameter.name)
        .append(": ")
        .append(TypeOf(parameter).meaning);
    if (!parameter.doc.empty()) text.append("; ").append(parameter.doc);
    text += "\n";
  }
  return text;
}

}  // namespace

std::string CallForm(const Row& row) {
  std::string text(row.name);
  text += "(";
  const std::size_t needed = Needed(row);
  for (std::size_t i = 0; i < row.parameters.size(); ++i) {
    const std::string name = IsRest(row.parameters[i]) ? "..." : std::string(row.parameters[i].name);
    const std::string comma = i > 0 ? ", " : "";
    text += i < needed ? comma + name : (i > 0 ? " " : "") + ("[" + comma + name + "]");
  }
  return text + ")";
}

std::string HelpText(const Row& row) {
  std::string text = CallForm(row) + "\n" + std::string(row.doc) + "\n" + Parameters(row);
  const auto* result = std::find_if(std::begin(kResults), std::end(kResults),
                                    [&](const ResultRow& r) { return r.type == row.result; });
  if (result != std::end(kResults)) text.append("Result: ").append(result->meaning).append("\n");
  const std::string sent = SentText(row);
  if (!sent.empty()) text += "Sends: " + sent + DialogText(row) + "\n";
  if (row.inferred) text += "The parameter list is inferred from the family and the name.\n";
  return text;
}

std::string HelpOverview() {
  constexpr std::size_t kColumns = 100;
  std::string text;
  std::string_view family;
  std::size_t column = 0;
  for (const Row& row : wfinfo::catalogue::Rows()) {
    if (row.family != family) {
      text.append(family.empty() ? "" : "\n").append(row.family).append("\n");
      family = row.family;
      column = 0;
    }
    const bool wraps = column + row.name.size() + 2 > kColumns;
    text.append(column == 0 ? "  " : wraps ? "\n  " : " ").append(row.name);
    column = (column == 0 || wraps ? 2 : column + 1) + row.name.size();
  }
  return text + "\n";
}

std::string UnknownExport(std::string_view name) {
  std::vector<std::string_view> names;
  for (const Row& row : wfinfo::catalogue::Rows()) names.push_back(row.name);
  return "no export '" + std::string(name) + "'" + DidYouMean(name, names);
}

std::optional<std::string> CheckCallForm(const std::string& name, std::size_t parameters) {
  const Row* row = wfinfo::catalogue::FindRow(name);
  if (row == nullptr) return UnknownExport(name);
  if (Holds(kHostOnly, name)) return name + " is called by the host itself, once, after loading";
  if (parameters >= Needed(*row) && parameters <= Most(*row)) return std::nullopt;
  return name + " takes " + CountText(*row) + ", " + std::to_string(parameters) + " given; see help " + name;
}

std::optional<std::string> CheckCall(const Row& row, std::span<const macro::Value> parameters) {
  const std::string name(row.name);
  if (auto wrong = CheckCallForm(name, parameters.size())) return wrong;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const Parameter& parameter = row.parameters[std::min(i, row.parameters.size() - 1)];
    const TypeRow& type = TypeOf(parameter);
    const macro::Value& value = parameters[i];
    const bool fits = value.IsText() ? type.takes_text : type.takes_number || value.Number() == 0;
    if (fits) continue;
    return "parameter " + std::to_string(i + 1) + " (" + std::string(parameter.name) + ") of " + name +
           " is a " + std::string(type.meaning) + ", and " + std::string(value.Kind()) +
           " was given; see help " + name;
  }
  return std::nullopt;
}

}  // namespace wrenfold
