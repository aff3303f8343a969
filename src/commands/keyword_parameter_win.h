// A word that a macro passes: checked, looked up, and reported when it is no word of its table.
#pragma once

#include <optional>

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/commands/keyword_table.h"

namespace wfinfo {

// `text`, or "" after the report of the check when it is not readable.
inline const char* TextOrEmpty(const char* text) { return IsText(text) ? text : kNoText; }

// An omitted text, and after the report an unreadable one, counts as "".
inline const char* OptionalText(const char* text) { return text == nullptr ? kNoText : TextOrEmpty(text); }

// The code of `text`, or nothing after reporting `unknown`.
inline std::optional<Slot> CodeOrReport(const KeywordTable& table, const char* text, const Message& unknown) {
  const Keyword* const row = FindKeyword(table, text);
  if (row != nullptr) return row->code;
  ReportError(unknown);
  return std::nullopt;
}

}  // namespace wfinfo
