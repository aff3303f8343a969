#include "host/library/failure_reason.h"

#include <algorithm>
#include <string_view>

#include "host/terminal/shown_host_text.h"

namespace wrenfold {
namespace {

using wfinfo::catalogue::Parameter;
using wfinfo::catalogue::Row;

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

// --- What the documentation says of a value ---

// Behind the value: an aside, then what begins the clause. "on failure" would only say it again.
constexpr std::string_view kAsides[] = {", without a message,", " without a message", ", without a request,",
                                        ", without asking the host,"};
constexpr std::string_view kClauses[] = {" when ",        " for ",     " without ", " behind ",
                                         " in front of ", " outside ", " past ",    " after ",
                                         " before ",      " where ",   " while ",   " unless "};

bool IsOfAWord(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '-';
}

// "The same as X" sends the reader to the row of X.
std::string_view DocOf(const Row& row) {
  constexpr std::string_view kSame = "The same as ";
  if (!row.doc.starts_with(kSame)) return row.doc;
  const std::string_view rest = row.doc.substr(kSame.size());
  const auto end = std::find_if_not(rest.begin(), rest.end(), IsOfAWord);
  const Row* const other =
      wfinfo::catalogue::FindRow({rest.data(), static_cast<std::size_t>(end - rest.begin())});
  return other != nullptr ? other->doc : row.doc;
}

// Up to the end of the sentence or of its part, or of the bracket that it stands in.
std::string_view WholeClause(std::string_view text) {
  int depth = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '(') ++depth;
    if (text[i] == ')' && --depth < 0) return text.substr(0, i);
    const bool ends = text[i] == ';' || (text[i] == '.' && (i + 1 == text.size() || text[i + 1] == ' '));
    if (ends && depth == 0) return text.substr(0, i);
  }
  return text;
}

// What is wrong with the values that were given shows in them: it is not why a silent call gave its value.
bool IsSeenInValues(std::string_view clause) {
  const std::string_view first = clause.substr(0, clause.find(','));
  return first.find("no text") != first.npos || first.find("a text is unreadable") != first.npos;
}

// "when it is not installed" of the text behind a value; "" when that is no clause.
std::string_view ClauseBehind(std::string_view text) {
  for (const std::string_view aside : kAsides) {
    if (text.starts_with(aside)) text.remove_prefix(aside.size());
  }
  for (const std::string_view begin : kClauses) {
    if (!text.starts_with(begin)) continue;
    const std::string_view clause = WholeClause(text.substr(1));
    return IsSeenInValues(clause) ? "" : clause;
  }
  return "";
}

// "else 0", "Always 0", "Not 0 when ..." and "most give 0 for success" tell of no failure.
bool TellsOfFailure(std::string_view before) {
  if (!before.empty() && (IsOfAWord(before.back()) || before.back() == '.' || before.back() == 'x'))
    return false;
  for (const std::string_view word : {"else ", "lways ", "ot ", "give "}) {
    if (before.ends_with(word)) return false;
  }
  return true;
}

std::string_view ClauseOf(std::string_view doc, std::string_view value) {
  for (std::size_t at = doc.find(value); at != doc.npos; at = doc.find(value, at + 1)) {
    if (!TellsOfFailure(doc.substr(0, at))) continue;
    const std::string_view clause = ClauseBehind(doc.substr(at + value.size()));
    if (!clause.empty()) return clause;
  }
  return "";
}

// 0 is an answer: "1 when it is, else 0", and between equal dates.
bool IsAnswer(const Row& row, std::string_view doc) {
  if (row.family == "Dates") return true;
  for (const std::string_view yes : {"1 when ", "1 while ", "Not 0 when ", "Not 0 while ", "not 0 when "}) {
    if (doc.find(yes) != doc.npos) return true;
  }
  return false;
}

// A result that may be a failure as the documentation writes it (a handle of 0 may be null there); else "".
std::string FailureValue(const macro::Value& result) {
  constexpr std::int64_t kAllBits = 0xFFFFFFFF;
  if (result.IsText()) return result.Text().empty() ? "\"\"" : "";
  if (!result.IsNumber()) return "";
  const std::int64_t number = result.Number();
  return number == 0 || number == -1 || number == kAllBits ? std::to_string(number) : "";
}

// --- Words ---

// Parameters that take words and refuse others.
constexpr struct {
  std::string_view row;
  std::string_view parameter;
} kWordParameters[] = {
    {"NextPrevCustom", "target"},
    {"NextPrevCustom", "direction"},
    {"NextPrevCustom", "unit"},
    {"NextPrevCustom", "roll"},
    {"NextUnreadCustom", "roll"},
    {"PrevUnreadCustom", "roll"},
    {"MakeReply", "multi"},
    {"MakeReplyCustom", "kind"},
    {"MakeReplyCustom", "attach"},
    {"MakeReplyCustom", "multi"},
    {"MakeResentForward", "mode"},
    {"Import", "type"},
    {"Export", "type"},
    {"Export", "encode"},
    {"SetDuplicationCheckOption", "options"},
    {"GetMailFlag", "name"},
    {"SetMailFlag", "name"},
    {"SetCharSet", "charset"},
    {"GetTemplateName", "kind"},
    {"LoadTemplate", "kind"},
    {"GetTemplateAssociatedSign", "kind"},
    {"SetAutoPushTimer", "button"},
    {"SetAutoPushTimerMilli", "button"},
    {"SetAutoPushTimerEver", "button"},
};

bool TakesWords(const Row& row, const Parameter& parameter) {
  for (const auto& word : kWordParameters) {
    if (word.row == row.name && word.parameter == parameter.name) return true;
  }
  return false;
}

bool SameLetters(char a, char b) { return (a | 0x20) == (b | 0x20); }

// The documentation of a parameter lists all of its words (a test holds it to that): whether `word` is one of
// them, or begins with one that ends in a hyphen.
bool Lists(std::string_view doc, std::string_view word) {
  if (word.empty()) return doc.find("\"\"") != doc.npos || doc.find("empty") != doc.npos;
  for (std::size_t at = 0; at < doc.size();) {
    const std::string_view rest = doc.substr(at);
    const auto end = std::find_if_not(rest.begin(), rest.end(), IsOfAWord);
    const std::string_view listed = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    const bool may_go_on = listed.ends_with('-') && word.size() > listed.size();
    const std::string_view same = may_go_on ? word.substr(0, listed.size()) : word;
    if (!listed.empty() && std::ranges::equal(listed, same, SameLetters)) return true;
    at += std::max<std::size_t>(listed.size(), 1);
  }
  return false;
}

// "to whom: Single the sender, From ...": what the words mean, and the words. A lead of more than one
// sentence stays where it is.
struct Words {
  std::string_view lead;
  std::string_view list;
};
Words WordsOf(std::string_view doc) {
  const std::size_t colon = doc.find(": ");
  const std::string_view lead = doc.substr(0, colon);
  if (colon == doc.npos || lead.find_first_of("\",;(") != lead.npos || lead.find(". ") != lead.npos)
    return {"", doc};
  return {lead, doc.substr(colon + 2)};
}

}  // namespace

std::string WhyByDocumentation(const Row& row, const macro::Value& result) {
  const std::string value = FailureValue(result);
  const std::string_view doc = DocOf(row);
  if (value.empty() || row.result == "Void" || (value == "0" && IsAnswer(row, doc))) return "";
  std::string_view clause = ClauseOf(doc, value);
  if (clause.empty() && row.result == "Handle") clause = ClauseOf(doc, "null");
  return clause.empty() ? "" : std::string(row.name) + " gives " + value + " " + std::string(clause);
}

bool SendsToLastError(const Row& row, const macro::Value& result) {
  constexpr std::string_view kTeller = "reason in Bypass_GetLastError";
  const std::size_t teller = row.doc.find(kTeller);
  const std::string value = FailureValue(result);
  if (teller == row.doc.npos || value.empty()) return false;
  // What stands in front of it up to the part of the sentence that begins there.
  std::string_view part = row.doc.substr(0, teller);
  for (const std::string_view end : {"; ", ". "}) {
    if (const std::size_t at = part.rfind(end); at != part.npos) part.remove_prefix(at + end.size());
  }
  const bool is_handle = row.result == "Handle";
  const std::string_view written =
      is_handle && part.find("null") != part.npos ? "null" : std::string_view(value);
  const std::size_t at = part.find(written);
  return at != part.npos && (at == 0 || !IsOfAWord(part[at - 1]));
}

bool ComesOfNothing(const Row& row, std::span<const macro::Value> parameters, const macro::Value& result) {
  if (!row.requests.empty() || row.kind != wfinfo::catalogue::Kind::kHand || !result.IsText()) return false;
  return !parameters.empty() && parameters[0].IsText() && parameters[0].Text().empty();
}

std::string RefusedWord(const Row& row, std::span<const macro::Value> parameters) {
  for (std::size_t i = 0; i < std::min(parameters.size(), row.parameters.size()); ++i) {
    const Parameter& parameter = row.parameters[i];
    const macro::Value& given = parameters[i];
    if (!given.IsText() || !TakesWords(row, parameter) || Lists(parameter.doc, given.Text())) continue;
    const Words words = WordsOf(parameter.doc);
    return std::string(parameter.name) + " cannot be " + QuotedHostText(given.Text()) + "; it takes" +
           (words.lead.empty() ? "" : " (" + std::string(words.lead) + ")") + ": " + std::string(words.list);
  }
  return "";
}

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
