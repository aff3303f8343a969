#include "host/library/help_search.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "host/base/ascii.h"
#include "host/library/export_help.h"
#include "host/macro/functions.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

using wfinfo::catalogue::Row;
using wfinfo::catalogue::Rows;

constexpr std::size_t kMostFound = 40;  // lines

constexpr HelpEntry kLanguage[] = {
    {"if", "if expression ... else if expression ... else ... end",
     "Runs the first part whose expression is true. 0, \"\", null, [] and {} are false."},
    {"else", "if expression ... else if expression ... else ... end",
     "What is done when nothing before it is true."},
    {"end", "end", "Closes if, while, for and function; one end closes a whole chain of else if."},
    {"while", "while expression ... end", "Repeats while the expression is true; break leaves it."},
    {"for", "for name in expression ... end",
     "Goes through the values of a list, the names of a table, or the numbers from 0 below a number."},
    {"in", "for name in expression ... end", "Belongs to for."},
    {"break", "break", "Leaves the while or for around it."},
    {"continue", "continue", "Begins the next round of the while or for around it."},
    {"function", "function name(a, b) ... return expression ... end",
     "A function of one's own; what it assigns is its own, all else is the macro's."},
    {"return", "return expression", "Leaves a function with this value; without one it gives null."},
    {"print", "print expression, ...", "Prints the values with nothing between them, and ends the line."},
    {"null", "null", "The null pointer, for parameters that may be left out. Equal to nothing but null."},
    {"and", "a and b", "1 when both are true, else 0; b is worked out only when a is true."},
    {"or", "a or b", "1 when one of them is true, else 0; b is worked out only when a is false."},
    {"not", "not a", "1 when a is false, else 0; denies a whole comparison: not a == b."},
    {"operators", "or  and  == != < <= > >=  + -  * / %  - not",
     "From weak to strong. + joins when a side is a text; / drops the fraction, % is the rest."},
    {"lists", "[1, \"a\"]  list[0]  list[0] = 2  append(list, 3)",
     "Values in a row, counted from 0; [] is empty. See help append, help sort, help for."},
    {"terms", "root mail, current mail, the host's result, short result, long result",
     "Root mail, open mail: the one that shows, or that the mail being written answers or forwards. Current "
     "mail: the one "
     "being written, else the open mail. The host's result: the number that a host answers; in brackets "
     "stands what this "
     "one, the small host, answers. A short or long result: a text that other programs than macros copy "
     "before the next "
     "one."},
    {"tables", "{\"a\": 1}  table[\"a\"]  table[\"a\"] = 2",
     "A value for each name, which is a text. See help get, help has, help keys."},
};

// Words that macro authors have for what the exports name otherwise.
struct Topic {
  std::string_view word;
  std::string_view exports;  // with blanks between them
};
constexpr Topic kTopics[] = {
    {"newsletter", "RootHeader CountRootHeader SelectFolder SetMailFlag"},
    {"web", "Inet_OpenUrl Inet_Read Inet_HttpQueryInfo Inet_Close"},
    {"page", "Inet_OpenUrl Inet_Read Inet_HttpQueryInfo Inet_Close"},
    {"answer", "MakeReply MakeReplyCustom SwitchTemplate SendLater"},
};

std::string_view FirstSentence(std::string_view doc) {
  const std::size_t end = doc.find(". ");
  return end == std::string_view::npos ? doc : doc.substr(0, end + 1);
}

std::string Line(std::string_view form, std::string_view doc) {
  return std::string(form) + "\n    " + std::string(FirstSentence(doc)) + "\n";
}
std::string Line(const Row& row) { return Line(CallForm(row), row.doc); }

bool Contains(std::string_view text, std::string_view lowered) {
  return Lower(text).find(lowered) != std::string::npos;
}

bool Mentions(const Row& row, std::string_view lowered) {
  return Contains(row.doc, lowered) || Contains(row.family, lowered) ||
         std::any_of(row.parameters.begin(), row.parameters.end(),
                     [&](const auto& parameter) { return Contains(parameter.doc, lowered); });
}

bool IsTopicOf(std::string_view lowered, std::string_view name) {
  for (const Topic& topic : kTopics) {
    if (lowered == topic.word &&
        (" " + std::string(topic.exports) + " ").find(" " + std::string(name) + " ") != std::string::npos) {
      return true;
    }
  }
  return false;
}

std::vector<HelpEntry> Others(std::span<const HelpEntry> host) {
  std::vector<HelpEntry> entries(host.begin(), host.end());
  for (const auto& function : macro::OwnFunctions())
    entries.push_back({function.name, function.form, function.doc});
  entries.insert(entries.end(), std::begin(kLanguage), std::end(kLanguage));
  return entries;
}

std::string Family(std::string_view lowered) {
  std::string text;
  for (const Row& row : Rows()) {
    if (Lower(row.family) == lowered) text += Line(row);
  }
  return text;
}

// Those with the word in their names first.
std::optional<std::string> Search(std::string_view lowered, std::span<const HelpEntry> others) {
  std::vector<std::string> found;
  for (const bool by_name : {true, false}) {
    for (const Row& row : Rows()) {
      const bool named = Contains(row.name, lowered) || IsTopicOf(lowered, row.name);
      if (named == by_name && (named || Mentions(row, lowered))) found.push_back(Line(row));
    }
    for (const HelpEntry& entry : others) {
      const bool named = Contains(entry.name, lowered);
      if (named == by_name && (named || Contains(entry.doc, lowered)))
        found.push_back(Line(entry.form, entry.doc));
    }
  }
  if (found.empty()) return std::nullopt;
  std::string text;
  for (std::size_t i = 0; i < std::min(found.size(), kMostFound); ++i) text += found[i];
  if (found.size() > kMostFound) {
    text += "... and " + std::to_string(found.size() - kMostFound) +
            " more; help families lists them by subject\n";
  }
  return text;
}

}  // namespace

std::string HelpFamilies() {
  std::vector<std::pair<std::string_view, std::size_t>> families;
  for (const Row& row : Rows()) {
    if (families.empty() || families.back().first != row.family) families.emplace_back(row.family, 0);
    ++families.back().second;
  }
  std::string text;
  for (const auto& [family, count] : families) {
    text.append(family).append(" (").append(std::to_string(count)).append(")\n");
  }
  return text;
}

std::optional<std::string> HelpFor(std::string_view asked, std::span<const HelpEntry> host) {
  if (const Row* row = wfinfo::catalogue::FindRow(asked)) return HelpText(*row);
  const std::vector<HelpEntry> others = Others(host);
  const auto known =
      std::find_if(others.begin(), others.end(), [&](const HelpEntry& entry) { return entry.name == asked; });
  if (known != others.end()) return std::string(known->form) + "\n" + std::string(known->doc) + "\n";
  const std::string lowered = Lower(asked);
  for (const HelpEntry& entry : kLanguage) {
    // A sign of an operator, as it stands in the list of them.
    if (entry.name == "operators" && !lowered.empty() && !IsLetter(lowered[0]) &&
        (" " + std::string(entry.form) + " ").find(" " + lowered + " ") != std::string::npos) {
      return std::string(entry.form) + "\n" + std::string(entry.doc) + "\n";
    }
  }
  if (const std::string family = Family(lowered); !family.empty()) return family;
  return Search(lowered, others);
}

}  // namespace wrenfold
