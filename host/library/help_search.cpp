#include "host/library/help_search.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "host/base/ascii.h"
#include "host/base/shortened.h"
#include "host/library/export_help.h"
#include "host/library/help_lines.h"
#include "host/library/help_ranking.h"
#include "host/library/language_help.h"
#include "host/macro/advice.h"
#include "src/bridge/host_protocol.h"
#include "src/catalogue/requests.h"
#include "src/catalogue/rows.h"

namespace wrenfold {
namespace {

using wfinfo::catalogue::Row;
using wfinfo::catalogue::Rows;

constexpr std::size_t kMostFound = 12;  // that a search shows

std::string FamiliesPage() {
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

std::string FunctionsPage(std::span<const HelpEntry> others) {
  std::string page = "Functions of the host, beside the exports\n";
  for (const HelpEntry& entry : others) {
    if (entry.kind == HelpEntry::Kind::kHostFunction) page += ColumnLine(entry.form, entry.doc);
  }
  return page + "help language lists those of the language, help families the exports by subject\n";
}

// How the examples behind the entries are read and run.
constexpr std::string_view kExamplesPage =
    "help NAME shows an example behind an export; RootHeader, say: help RootHeader.\n"
    "  # text        a comment: what the example is good for\n"
    "  #> text       a line that it prints, of a macro or a message; // and //> in a program in C\n"
    "  #< text       a line that the user types where the macro asks for one\n"
    "  FILE:6:24     FILE is the macro's own file, behind it line and column of the call\n"
    "  Run with: ... how the host is started for it; without such a line\n"
    "                wrenfold --mail samples/mails --macro FILE does\n"
    "  Needs: ...    what must be there beside that: a variable that is set before, a program, a server\n"
    "Messages of the library are those of --english. Examples change the mails that they are run on: take a\n"
    "copy of samples, or --read-only.\n";

bool IsNumber(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return IsDigit(c); });
}

// The digits of "44", "code 44", "command 40014", "menu command 40014"; "" of anything else.
std::string_view AskedCode(std::string_view lowered) {
  for (const std::string_view word : {"menu ", "code ", "command "}) {
    if (lowered.starts_with(word)) lowered = Trim(lowered.substr(word.size()));
  }
  return IsNumber(lowered) ? lowered : "";
}

bool Sends(const Row& row, std::string_view number) {
  const auto requests = wfinfo::catalogue::RequestsOf(row);
  return std::any_of(requests.begin(), requests.end(), [number](const auto& request) {
    const bool carries = request.code == 0 || wfinfo::CarriesCommand(request.code);
    return (request.code != 0 && std::to_string(request.code) == number) ||
           (carries && std::to_string(request.first_slot) == number);
  });
}

// The exports that send a code or menu command.
std::string SendersPage(std::string_view number) {
  std::string text;
  for (const Row& row : Rows()) {
    if (Sends(row, number)) text += FoundLine(CallForm(row), row.doc);
  }
  if (text.empty()) return "no export sends code or menu command " + Shortened(number) + "\n";
  return "Code or menu command " + std::string(number) + " is sent by\n" + text;
}

std::optional<std::string> PageFor(const std::string& lowered, std::span<const HelpEntry> others) {
  if (lowered == "exports") return HelpOverview();
  if (lowered == "families") return FamiliesPage();
  if (lowered == "language") return LanguagePage();
  if (lowered == "functions") return FunctionsPage(others);
  if (lowered == "examples") return std::string(kExamplesPage);
  if (const std::string_view code = AskedCode(lowered); !code.empty()) return SendersPage(code);
  return std::nullopt;
}

std::string Family(const std::string& lowered) {
  std::string text;
  for (const Row& row : Rows()) {
    if (Lower(row.family) == lowered) text += FoundLine(CallForm(row), row.doc);
  }
  return text;
}

// As "help families" shows it: "Folders" is a family, "folders" a word of the prompt.
bool IsFamilyTitle(std::string_view asked) {
  const auto rows = Rows();
  return wfinfo::catalogue::FindRow(asked) == nullptr &&
         std::any_of(rows.begin(), rows.end(), [asked](const Row& row) { return row.family == asked; });
}

std::string TextOf(const HelpEntry& entry) {
  return std::string(entry.form) + "\n" + std::string(entry.doc) + "\n";
}

std::vector<HelpItem> Items(std::span<const HelpEntry> entries) {
  std::vector<HelpItem> items;
  for (const Row& row : Rows()) {
    std::string more(row.family);
    for (const auto& parameter : row.parameters) more.append(" ").append(parameter.doc);
    items.push_back({row.name, CallForm(row), row.doc, std::move(more)});
  }
  for (const HelpEntry& entry : entries)
    items.push_back({entry.name, std::string(entry.form), entry.doc, ""});
  return items;
}

// "" when nothing is found; what is called `except` is known already.
std::string Search(std::string_view asked, std::span<const HelpEntry> entries, std::size_t most,
                   std::string_view except = "") {
  const Question question(asked);
  const std::vector<HelpItem> items = Items(entries);
  std::vector<std::size_t> found = Ranked(question, items);
  std::erase_if(found, [&](std::size_t i) { return items[i].name == except; });
  std::string text;
  for (std::size_t i = 0; i < std::min(found.size(), most); ++i)
    text += FoundLine(items[found[i]].form, items[found[i]].doc);
  if (found.size() > most) {
    text += "and " + std::to_string(found.size() - most) + " more: help all " + Shortened(asked) + "\n";
  }
  return text;
}

// "RootHeader" of "RootHeader(\"x\")".
std::string_view CalledName(std::string_view asked) {
  const std::size_t open = asked.find('(');
  return open == std::string_view::npos || open == 0 ? asked : Trim(asked.substr(0, open));
}

const Row* FindRow(std::string_view name) {
  const auto rows = Rows();
  const auto found = std::find_if(rows.begin(), rows.end(),
                                  [name](const Row& row) { return EqualsIgnoringCase(row.name, name); });
  return found == rows.end() ? nullptr : &*found;
}

const HelpEntry* FindEntry(std::string_view name, std::span<const HelpEntry> entries) {
  const auto found = std::find_if(entries.begin(), entries.end(), [name](const HelpEntry& entry) {
    return EqualsIgnoringCase(entry.name, name);
  });
  return found == entries.end() ? nullptr : &*found;
}

using Example = std::function<std::string(std::string_view)>;

std::string RowText(const Row& row, const Example& example) {
  const std::string shown = example == nullptr ? "" : example(row.name);
  return HelpText(row) + (shown.empty() ? "" : "\n" + shown);
}

// What bears the very name. A plain word may be meant otherwise: "delete", but not "Delete".
std::optional<std::string> Named(std::string_view name, std::span<const HelpEntry> entries,
                                 const Example& example) {
  if (const Row* exact = wfinfo::catalogue::FindRow(name)) return RowText(*exact, example);
  if (const HelpEntry* entry = FindEntry(name, entries)) {
    if (entry->kind != HelpEntry::Kind::kPrompt) return TextOf(*entry);
    const bool others = !Search(name, entries, 1, entry->name).empty();
    return TextOf(*entry) + (others ? "help all " + std::string(name) + " finds exports\n" : "");
  }
  const Row* row = FindRow(name);
  if (row == nullptr) return std::nullopt;
  const bool others = !Search(name, entries, 1, row->name).empty();
  return RowText(*row, example) + (others ? "help all " + std::string(name) + " finds more\n" : "");
}

std::optional<std::string> Sign(std::string_view asked, std::span<const HelpEntry> entries) {
  if (const std::string_view name = EntryOfSign(asked); !name.empty())
    return TextOf(*FindEntry(name, entries));
  if (asked.empty() || IsLetter(asked[0]) || IsDigit(asked[0]) ||
      static_cast<unsigned char>(asked[0]) >= 0x80)
    return std::nullopt;
  std::size_t length = 1;
  const std::string_view advice = macro::AdviceForSign(asked, length);
  if (length != asked.size()) return std::nullopt;
  return "there is no " + std::string(asked) + " in the language; " + std::string(advice) + "\n";
}

}  // namespace

std::optional<std::string> HelpFor(std::string_view asked, std::span<const HelpEntry> others,
                                   const Example& example) {
  std::vector<HelpEntry> entries(others.begin(), others.end());
  const std::vector<HelpEntry> language = LanguageHelp();
  entries.insert(entries.end(), language.begin(), language.end());
  const std::string lowered = Lower(asked);
  if (auto page = PageFor(lowered, others)) return page;
  if (IsFamilyTitle(asked)) return Family(lowered);
  if (auto named = Named(CalledName(asked), entries, example)) return named;
  if (auto sign = Sign(asked, entries)) return sign;
  if (std::string family = Family(lowered); !family.empty()) return family;
  const bool all = lowered.starts_with("all ");
  std::string found =
      Search(all ? Trim(asked.substr(4)) : asked, entries, all ? Rows().size() * 2 : kMostFound);
  return found.empty() ? std::nullopt : std::optional(std::move(found));
}

}  // namespace wrenfold
