#include "host/library/language_help.h"

#include <cstddef>

#include "host/library/help_lines.h"
#include "host/macro/functions.h"

namespace wrenfold {
namespace {

constexpr auto kLanguage = HelpEntry::Kind::kLanguage;

constexpr HelpEntry kStatements[] = {
    {"assignment", "name = expression",
     "Gives a variable a value. Names are letters, digits and _, and letter case counts; to compare, write "
     "==.",
     kLanguage},
    {"print", "print expression, ...", "Prints the values with nothing between them, and ends the line.",
     kLanguage},
    {"calls", "Name(a, b)",
     "Calls an export or a function; calls nest. Optional parameters at the end may be left out, the "
     "parentheses not. In expressions ( and ) say what is worked out first.",
     kLanguage},
    {"if", "if expression ... else if expression ... else ... end",
     "Runs the first part whose expression is true. 0, \"\", null, [] and {} are false.", kLanguage},
    {"else", "if expression ... else if expression ... else ... end",
     "What is done when nothing before it is true.", kLanguage},
    {"while", "while expression ... end", "Repeats while the expression is true; break leaves it.",
     kLanguage},
    {"for", "for name in expression ... end",
     "Goes through the values of a list, the names of a table, or the numbers from 0 below a number.",
     kLanguage},
    {"in", "for name in expression ... end", "Belongs to for.", kLanguage},
    {"break", "break", "Leaves the while or for around it.", kLanguage},
    {"continue", "continue", "Begins the next round of the while or for around it.", kLanguage},
    {"function", "function name(a, b) ... return expression ... end",
     "A function of one's own; what it assigns is its own, all else is the macro's.", kLanguage},
    {"return", "return expression", "Leaves a function with this value; without one it gives null.",
     kLanguage},
    {"end", "end", "Closes if, while, for and function; one end closes a whole chain of else if.", kLanguage},
    {"comments", "# text    // text", "A comment goes from # or // to the end of its line.", kLanguage},
};

constexpr HelpEntry kValues[] = {
    {"numbers", "42  -7  0x1F", "Whole numbers of 64 bits with a sign.", kLanguage},
    {"texts", "\"a \\\"text\\\"\\n\"",
     "A text stands in double quotes on one line. Escapes: \\\" \\\\ \\n \\r \\t and \\xNN for a byte; "
     "\\r\\n is a "
     "line end in a mail, and + joins texts.",
     kLanguage},
    {"true", "1 and 0",
     "There is no true or false: a comparison gives 1 or 0. 0, \"\", null, [] and {} are false, all else is "
     "true.",
     kLanguage},
    {"null", "null", "The null pointer, for parameters that may be left out. Equal to nothing but null.",
     kLanguage},
    {"lists", "[1, \"a\"]  list[0]  list[0] = 2",
     "Values in a row, counted from 0; [] is empty. See help append, help sort, help for.", kLanguage},
    {"tables", "{\"a\": 1}  table[\"a\"]  table[\"a\"] = 2",
     "A value for each name, which is a text. See help get, help has, help keys.", kLanguage},
};

constexpr HelpEntry kOperators[] = {
    {"operators", "or  and  == != < <= > >=  + -  * / %  - not",
     "From weak to strong. + joins when a side is a text; / drops the fraction, % is the rest.", kLanguage},
    {"or", "a or b", "1 when one of them is true, else 0; b is worked out only when a is false.", kLanguage},
    {"and", "a and b", "1 when both are true, else 0; b is worked out only when a is true.", kLanguage},
    {"not", "not a", "1 when a is false, else 0; denies a whole comparison: not a == b.", kLanguage},
};

// Of the reference, not of the language.
constexpr HelpEntry kTerms[] = {
    {"terms", "root mail, current mail, the host's result, short result, long result",
     "Root mail, open mail: the one that shows, or that the mail being written answers or forwards. Current "
     "mail: the one being written, else the open mail. The host's result: the number that a host answers; in "
     "brackets stands what this one, the small host, answers. A short or long result: a text that other "
     "programs than macros copy before the next one. In an example #> is what it prints, #< what the user "
     "types: help examples.",
     kLanguage},
};

constexpr std::string_view kExample =
    "# How many mails of each sender?\n"
    "count = {}\n"
    "for i in MailCount()\n"
    "  SetMailIndex(i)\n"
    "  who = SetEmailOnly(From())\n"
    "  count[who] = get(count, who, 0) + 1\n"
    "end\n"
    "print count\n";

struct SignRow {
  std::string_view signs;  // with blanks around each
  std::string_view entry;
};
constexpr SignRow kSigns[] = {
    {" == != < <= > >= + - * / % ", "operators"},
    {" = += -= *= /= ++ -- := ", "assignment"},
    {" ( ) () , ", "calls"},
    {" [ ] [] ", "lists"},
    {" { } {} : ", "tables"},
    {" # // /* ", "comments"},
    {" \" ' \\ \\n \\r \\t \\\" \\\\ \\x ", "texts"},
};

template <class Entries>
void AddSection(std::string& page, std::string_view title, const Entries& entries) {
  page.append(title).append("\n");
  for (const HelpEntry& entry : entries) page += ColumnLine(entry.form, entry.doc);
}

std::vector<HelpEntry> Functions() {
  std::vector<HelpEntry> entries;
  for (const auto& function : macro::OwnFunctions())
    entries.push_back({function.name, function.form, function.doc, kLanguage});
  return entries;
}

}  // namespace

std::vector<HelpEntry> LanguageHelp() {
  std::vector<HelpEntry> entries = Functions();
  entries.insert(entries.end(), std::begin(kStatements), std::end(kStatements));
  entries.insert(entries.end(), std::begin(kValues), std::end(kValues));
  entries.insert(entries.end(), std::begin(kOperators), std::end(kOperators));
  entries.insert(entries.end(), std::begin(kTerms), std::end(kTerms));
  return entries;
}

std::string_view EntryOfSign(std::string_view sign) {
  const std::string wanted = " " + std::string(sign) + " ";
  for (const SignRow& row : kSigns) {
    if (row.signs.find(wanted) != row.signs.npos) return row.entry;
  }
  return "";
}

std::string LanguagePage() {
  std::string page;
  AddSection(page, "Statements, each on a line of its own", kStatements);
  AddSection(page, "Values", kValues);
  AddSection(page, "Operators", kOperators);
  AddSection(page, "Functions for lists, tables and texts", Functions());
  AddSection(page, "Terms of the reference", kTerms);
  return page.append("A macro\n").append(kExample);
}

std::string_view LanguageExample() { return kExample; }

}  // namespace wrenfold
