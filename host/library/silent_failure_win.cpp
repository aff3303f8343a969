#include "host/library/silent_failure_win.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <variant>

#include "host/base/system_errors.h"
#include "host/library/export_caller_win.h"
#include "host/library/failure_reason.h"
#include "host/terminal/shown_host_text.h"
#include "src/base/slot.h"

namespace wrenfold {
namespace {

using macro::Value;
using wfinfo::catalogue::Parameter;
using wfinfo::catalogue::Row;
using Values = std::span<const Value>;

// The result of an export that tells more of the last call.
Value Ask(const Library& library, const char* name, Values parameters = {}) {
  auto answer = CallExport(library, name, parameters);
  auto* const value = std::get_if<Value>(&answer);
  return value != nullptr ? std::move(*value) : Value();
}

// Of an export of dates: the first parameter that FormatDate makes nothing of.
std::string WrongDate(const Library& library, const Row& row, Values parameters, const Value& result) {
  for (auto at = NextDate(row, result, 0); at && *at < parameters.size();
       at = NextDate(row, result, *at + 1)) {
    const Value asked[] = {parameters[*at], Value(std::string("YYYY"))};
    const Value year = Ask(library, "FormatDate", asked);
    if (!year.IsNull() && !year.IsTrue()) {
      const Value& date = parameters[*at];
      return (date.IsText() ? QuotedHostText(date.Text()) : date.Printed()) + " is no date";
    }
  }
  return "";
}

// A status from 400 on is no failure to the library: the server's page that says so can be read.
std::string RefusedPage(const Library& library, const Row& row, const Value& result) {
  constexpr unsigned kStatusCode = 19;  // WinINet's HTTP_QUERY_STATUS_CODE, and HTTP_QUERY_STATUS_TEXT
  constexpr unsigned kStatusText = 20;
  if (row.name != "Inet_OpenUrl" || !result.IsNumber() || result.Number() <= 0) return "";
  const auto query = [&](unsigned level) {
    const Value asked[] = {Value(std::int64_t{level})};
    const Value answer = Ask(library, "Inet_HttpQueryInfo", asked);
    return answer.IsText() ? answer.Text() : std::string();
  };
  const std::string status = query(kStatusCode);
  if (status.size() != 3 || status < "400") return "";
  return "the server answered " + status + " " + ShownHostText(query(kStatusText));
}

bool IsWindowParameter(const Parameter& parameter) {
  if (parameter.type != "Handle") return false;
  return parameter.name == "window" || parameter.name == "parent" || parameter.name == "childAfter";
}

bool MayBeNone(const Parameter& parameter) {
  return parameter.doc.find("null") != std::string_view::npos || parameter.doc.starts_with("0 ");
}

// The first window among the parameters that is none.
std::string WrongWindow(const Row& row, Values parameters) {
  for (std::size_t i = 0; i < std::min(parameters.size(), row.parameters.size()); ++i) {
    const Value& given = parameters[i];
    if (!IsWindowParameter(row.parameters[i]) || given.IsText()) continue;
    const std::int64_t window = given.IsNumber() ? given.Number() : 0;
    if (IsWindow(wfinfo::FromSlot<HWND>(window)) || (window == 0 && MayBeNone(row.parameters[i]))) continue;
    return std::to_string(window) + " is no window";
  }
  return "";
}

// The first text among the parameters that is none; one that may be left out has type OptText.
std::string WrongText(const Row& row, Values parameters) {
  for (std::size_t i = 0; i < std::min(parameters.size(), row.parameters.size()); ++i) {
    const Parameter& parameter = row.parameters[i];
    const bool is_text = parameter.type == "Text" || parameter.type == "RawText";
    if (is_text && !parameters[i].IsText()) return std::string(parameter.name) + " is no text";
  }
  return "";
}

// Exports whose row sends the reader to one that tells the system's reason.
std::string FromTheSystem(const Library& library, const Row& row, const Value& result) {
  const unsigned long error = LastErrorOfCall();
  if (row.doc.find("Sock_WSAGetLastError") != std::string_view::npos) {
    const Value step = Ask(library, "Sock_GetErrorString");
    const Value number = Ask(library, "Sock_WSAGetLastError");
    const std::string reason = SystemReason(static_cast<unsigned long>(number.Number()));
    return (step.IsText() && step.IsTrue() ? ShownHostText(step.Text()) + ": " : "") + reason;
  }
  return SendsToLastError(row, result) && error != 0 ? SystemReason(error) : "";
}

bool MayBeFailure(const Value& result) {
  constexpr std::int64_t kAllBits = 0xFFFFFFFF;
  return !result.IsTrue() || (result.IsNumber() && (result.Number() == -1 || result.Number() == kAllBits));
}

}  // namespace

std::string WhySilent(const Library& library, const Row& row, Values parameters, const Value& result) {
  const UncountedCalls uncounted;
  if (!MayBeFailure(result)) return RefusedPage(library, row, result);
  if (ComesOfNothing(row, parameters, result)) return "";
  std::string reason = WrongDate(library, row, parameters, result);
  if (reason.empty()) reason = WrongWindow(row, parameters);
  if (reason.empty()) reason = WrongText(row, parameters);
  if (reason.empty()) reason = FromTheSystem(library, row, result);
  if (reason.empty()) reason = WhyByDocumentation(row, result);
  return reason;
}

}  // namespace wrenfold
