#include "host/library/failure_reason.h"

#include <string_view>

namespace wrenfold {
namespace {

// "when there is none or it is empty" of "One header value. Null when there is none or it is empty."
std::string_view NullClause(std::string_view doc) {
  for (const std::string_view word : {"ull when ", "ull for ", "ull after "}) {
    const std::size_t at = doc.find(word);
    if (at == std::string_view::npos) continue;
    const std::string_view clause = doc.substr(at + 4);
    return clause.substr(0, clause.find_first_of(".;"));
  }
  return "";
}

}  // namespace

std::string WhyNull(const wfinfo::catalogue::Row& row, const std::string& reason) {
  const std::string name(row.name);
  if (row.result == "Void") return name + " gives no result";
  if (!reason.empty()) return name + " gave null: " + reason;
  const std::string_view clause = NullClause(row.doc);
  return name + " gave null" + (clause.empty() ? "" : "; it does so " + std::string(clause));
}

std::optional<std::size_t> NextDate(const wfinfo::catalogue::Row& row, const macro::Value& result,
                                    std::size_t from) {
  if (row.family != "Dates" || result.IsTrue()) return std::nullopt;
  for (std::size_t i = from; i < row.parameters.size(); ++i) {
    if (row.parameters[i].type == "Text" && row.parameters[i].name.starts_with("date")) return i;
  }
  return std::nullopt;
}

}  // namespace wrenfold
