#include "host/library/export_help.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <vector>

#include "host/base/nearest_names.h"
#include "host/base/shortened.h"
#include "src/bridge/host_protocol.h"
#include "src/catalogue/reference.h"
#include "src/catalogue/requests.h"

namespace wrenfold {
namespace {

using wfinfo::catalogue::DispatcherOf;
using wfinfo::catalogue::IsVariadic;
using wfinfo::catalogue::kAnyRequest;
using wfinfo::catalogue::Kind;
using wfinfo::catalogue::kNoFirstSlot;
using wfinfo::catalogue::Parameter;
using wfinfo::catalogue::ParameterType;
using wfinfo::catalogue::RequestsOf;
using wfinfo::catalogue::ResultTypeOf;
using wfinfo::catalogue::Row;
using wfinfo::catalogue::SentRequest;
using wfinfo::catalogue::TypeOf;

// The host's own side of the hand-over: a macro that called them would pull the ground from under
// the library.
constexpr std::string_view kHostOnly[] = {"NotifyWrenfoldInfo", "GetWFInfoVersion"};

template <class List, class Value>
bool Holds(const List& list, const Value& value) {
  return std::find(std::begin(list), std::end(list), value) != std::end(list);
}

bool IsRest(const Parameter& parameter) { return parameter.type == "Rest"; }

// Parameters that cannot be left out: those before the optional ones at the end.
std::size_t Needed(const Row& row) {
  std::size_t needed = row.parameters.size();
  while (needed > 0 && TypeOf(row.parameters[needed - 1]).optional) --needed;
  return needed;
}

std::size_t Most(const Row& row) { return IsVariadic(row) ? kMostParameters : row.parameters.size(); }

// "F71 F12:40024" as "code 71 (Frame), code 12 (Frame) with command 40024".
std::string RequestsText(const Row& row) {
  std::string text;
  for (const SentRequest& request : RequestsOf(row)) {
    if (!text.empty()) text += ", ";
    if (request.way == 'M') {
      text += "menu command " + std::to_string(request.first_slot);
      continue;
    }
    text += "code " + std::to_string(request.code);
    text.append(" (").append(DispatcherOf(request)).append(")");
    if (request.first_slot != kNoFirstSlot) text += " with command " + std::to_string(request.first_slot);
  }
  return text;
}

std::string SentText(const Row& row) {
  const std::string code = std::to_string(row.code);
  if (row.kind == Kind::kMenu) return "menu command " + code;
  if (row.kind == Kind::kHand) {
    return row.requests == kAnyRequest ? "what the called export sends" : RequestsText(row);
  }
  std::string text = "code " + code + " (" + std::string(row.dispatcher) + ")";
  if (row.first_slot == kNoFirstSlot) return text;
  return text + (row.kind == Kind::kThin ? ", sub-command " : ", command ") + std::to_string(row.first_slot);
}

// What a dialog refuses; of an export that only looks something up by itself nothing is said.
std::string DialogText(const Row& row) {
  const std::string refused = wfinfo::catalogue::DialogSentence(row);
  if (!refused.empty()) return refused + "\n";
  return row.kind == Kind::kHand ? "" : "Goes through while a dialog shows.\n";
}

std::string SeeAlsoText(const Row& row) {
  std::string names;
  for (const std::string_view name : wfinfo::catalogue::SeeAlso(row))
    names.append(names.empty() ? "See also: " : ", ").append(name);
  return names.empty() ? "" : names + "\n";
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
        .append(TypeOf(parameter).call_meaning);
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
  std::string text = CallForm(row) + "\n" + wfinfo::catalogue::DocOf(row) + "\n" + Parameters(row);
  text.append("Result: ").append(ResultTypeOf(row).call_meaning).append("\n");
  const std::string sent = SentText(row);
  if (!sent.empty()) text += "Sends: " + sent + "\n" + DialogText(row);
  if (row.inferred) text += "The parameter list is inferred from the family and the name.\n";
  return text + SeeAlsoText(row);
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

std::string UnknownExport(std::string_view name, std::span<const std::string_view> others) {
  std::vector<std::string_view> names(others.begin(), others.end());
  for (const Row& row : wfinfo::catalogue::Rows()) names.push_back(row.name);
  return "no export '" + Shortened(name) + "'" + DidYouMean(name, names);
}

std::optional<std::string> CheckCallForm(const std::string& name, std::size_t parameters,
                                         std::span<const std::string_view> others) {
  const Row* row = wfinfo::catalogue::FindRow(name);
  if (row == nullptr) return UnknownExport(name, others);
  if (Holds(kHostOnly, name)) return name + " is called by the host itself, once, after loading";
  if (parameters >= Needed(*row) && parameters <= Most(*row)) return std::nullopt;
  return name + " takes " + CountText(*row) + ", " + std::to_string(parameters) + " given: " + CallForm(*row);
}

namespace {

// The library takes the lower half of a number for 32 bits, which is another one then.
std::optional<std::string> WhyTooLong(const Parameter& parameter, const macro::Value& value) {
  constexpr std::int64_t kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kMost = std::numeric_limits<std::uint32_t>::max();
  const bool is_narrow = parameter.type == "Int32" || parameter.type == "UInt32";
  if (!is_narrow || !value.IsNumber() || (value.Number() >= kLeast && value.Number() <= kMost))
    return std::nullopt;
  return "is a number of 32 bits, and " + std::to_string(value.Number()) + " was given, which needs more";
}

}  // namespace

std::optional<std::string> CheckCall(const Row& row, std::span<const macro::Value> parameters) {
  const std::string name(row.name);
  if (auto wrong = CheckCallForm(name, parameters.size())) return wrong;
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const Parameter& parameter = row.parameters[std::min(i, row.parameters.size() - 1)];
    const ParameterType& type = TypeOf(parameter);
    const macro::Value& value = parameters[i];
    const bool fits = value.IsText()                       ? type.takes_text
                      : value.IsNumber() || value.IsNull() ? type.takes_number || value.Number() == 0
                                                           : false;
    const auto too_long = WhyTooLong(parameter, value);
    if (fits && !too_long) continue;
    const std::string which =
        "parameter " + std::to_string(i + 1) + " (" + std::string(parameter.name) + ") of " + name + " ";
    if (fits) return which + *too_long;
    return which + "is a " + std::string(type.call_meaning) + ", and " + std::string(value.Kind()) +
           " was given: " + CallForm(row);
  }
  return std::nullopt;
}

}  // namespace wrenfold
