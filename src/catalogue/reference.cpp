#include "src/catalogue/reference.h"

#include <algorithm>

#include "src/bridge/host_protocol.h"
#include "src/catalogue/codes.h"

namespace wfinfo::catalogue {
namespace {

constexpr std::string_view kSeeAlso = "See also ";
constexpr std::size_t kMostOfACode = 6;
// One of several requests may be an aside, such as a look at the mail's state.
constexpr std::size_t kMostRequests = 2;
constexpr std::ptrdiff_t kNeighbours = 2;  // on each side
constexpr std::size_t kMostNames = 8;      // beyond those that the row's own "See also" names
constexpr std::size_t kAlike = 6;          // letters that the names of neighbours begin with alike

// "A", "A and B", "A, B and C".
std::string Joined(const std::vector<std::string>& parts) {
  std::string text;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    text += i == 0 ? "" : i + 1 == parts.size() ? " and " : ", ";
    text += parts[i];
  }
  return text;
}

// "code 1", "codes 1 and 86", "menu command 40031", "codes 1 and 86 and menu command 40031".
std::string Titles(const std::vector<SentRequest>& requests) {
  std::vector<std::string> codes, commands;
  for (const SentRequest& request : requests) {
    const bool command = request.way == 'M' || CarriesCommand(request.code);
    (command ? commands : codes).push_back(std::to_string(command ? request.first_slot : request.code));
  }
  std::vector<std::string> titles;
  if (!codes.empty()) titles.push_back((codes.size() == 1 ? "code " : "codes ") + Joined(codes));
  if (!commands.empty()) {
    titles.push_back((commands.size() == 1 ? "menu command " : "menu commands ") + Joined(commands));
  }
  return Joined(titles);
}

bool IsSame(const SentRequest& a, const SentRequest& b) {
  const bool by_command = a.way == 'M' || CarriesCommand(a.code);
  if (by_command != (b.way == 'M' || CarriesCommand(b.code))) return false;
  return by_command ? a.first_slot == b.first_slot : a.code == b.code;
}

// The exports that send `request` and hardly more, in the order of the catalogue.
std::vector<std::string_view> Senders(const SentRequest& request) {
  std::vector<std::string_view> senders;
  for (const Row& row : Rows()) {
    const std::vector<SentRequest> requests = RequestsOf(row);
    const auto is_it = [&](const SentRequest& own) { return IsSame(own, request); };
    if (requests.size() > kMostRequests || std::none_of(requests.begin(), requests.end(), is_it)) continue;
    senders.push_back(row.name);
  }
  return senders;
}

// The names in a row's "See also A, B and C."
std::vector<std::string_view> NamedIn(std::string_view doc) {
  std::vector<std::string_view> names;
  const std::size_t at = doc.find(kSeeAlso);
  if (at == std::string_view::npos) return names;
  std::string_view list = doc.substr(at + kSeeAlso.size());
  list = list.substr(0, list.find('.'));
  while (!list.empty()) {
    const std::size_t end = std::min(list.find_first_of(", "), list.size());
    if (const Row* row = FindRow(list.substr(0, end))) names.push_back(row->name);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return names;
}

bool IsOfAName(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// True for a name that is a word of every day too: "Move", "From".
bool IsPlainWord(std::string_view name) {
  return std::none_of(name.begin() + 1, name.end(), [](char c) { return c < 'a' || c > 'z'; });
}

// The rows in the order of their names.
std::vector<const Row*> RowsByName() {
  std::vector<const Row*> rows;
  for (const Row& row : Rows()) rows.push_back(&row);
  std::sort(rows.begin(), rows.end(), [](const Row* a, const Row* b) { return a->name < b->name; });
  return rows;
}

// Adds the exports that a text names. A plain word is a name only as a call, or behind "See also".
void AddNamed(const std::vector<const Row*>& by_name, std::string_view text, std::vector<const Row*>& named) {
  const std::size_t list = text.find(kSeeAlso);
  for (std::size_t at = 0, end = 0; at < text.size(); at = end + 1) {
    end = at;
    while (end < text.size() && IsOfAName(text[end])) ++end;
    const std::string_view word = text.substr(at, end - at);
    const auto found =
        std::lower_bound(by_name.begin(), by_name.end(), word,
                         [](const Row* row, std::string_view name) { return row->name < name; });
    if (found == by_name.end() || (*found)->name != word) continue;
    const bool is_call = end < text.size() && text[end] == '(';
    if (!IsPlainWord(word) || is_call || at > list) named.push_back(*found);
  }
}

// The exports that a row speaks of.
std::vector<const Row*> NamedBy(const Row& row) {
  static const std::vector<const Row*> kByName = RowsByName();
  std::vector<const Row*> named;
  AddNamed(kByName, row.doc, named);
  for (const Parameter& parameter : row.parameters) AddNamed(kByName, parameter.doc, named);
  return named;
}

// Those of each row of the catalogue, by its place. Worked out once.
const std::vector<std::vector<const Row*>>& Named() {
  static const std::vector<std::vector<const Row*>> kNamed = [] {
    std::vector<std::vector<const Row*>> named;
    for (const Row& row : Rows()) named.push_back(NamedBy(row));
    return named;
  }();
  return kNamed;
}

std::size_t PlaceOf(const Row& row) { return static_cast<std::size_t>(FindRow(row.name) - Rows().data()); }

std::vector<std::string_view> SpokenOf(const Row& row) {
  std::vector<std::string_view> names;
  for (const Row* other : NamedBy(row)) names.push_back(other->name);
  return names;
}

std::vector<std::string_view> ThatSpeakOf(const Row& row) {
  std::vector<std::string_view> names;
  const Row* const own = Rows().data() + PlaceOf(row);
  for (const Row& other : Rows()) {
    const std::vector<const Row*>& named = Named()[static_cast<std::size_t>(&other - Rows().data())];
    if (std::find(named.begin(), named.end(), own) != named.end()) names.push_back(other.name);
  }
  return names;
}

// What comes behind the family's mark, such as Bypass_.
std::string_view OwnName(std::string_view name) {
  const std::size_t mark = name.find('_');
  return mark == std::string_view::npos || mark >= kAlike + 1 ? name : name.substr(mark + 1);
}

bool AreAlike(std::string_view a, std::string_view b) {
  return OwnName(a).substr(0, kAlike) == OwnName(b).substr(0, kAlike);
}

// Neighbours in the family that are called alike.
std::vector<std::string_view> NeighboursOf(const Row& row) {
  std::vector<std::string_view> names;
  const Row* const first = Rows().data();
  const auto place = static_cast<std::ptrdiff_t>(PlaceOf(row));
  const auto count = static_cast<std::ptrdiff_t>(Rows().size());
  for (std::ptrdiff_t i = std::max<std::ptrdiff_t>(0, place - kNeighbours);
       i < std::min(count, place + kNeighbours + 1); ++i) {
    if (first[i].family == row.family && AreAlike(first[i].name, row.name)) names.push_back(first[i].name);
  }
  return names;
}

}  // namespace

std::string TitleOf(const SentRequest& request) { return Titles({request}); }

bool IsRefusedDuringDialog(const SentRequest& request) {
  return request.way == 'M' || !IsAllowedDuringDialog(request.code);
}

std::string DialogSentence(const Row& row) {
  if (row.requests == kAnyRequest) return "What the called export asks may be refused while a dialog shows.";
  std::vector<SentRequest> refused, passing;
  for (const SentRequest& request : RequestsOf(row)) {
    if (IsLookUp(row, request.code)) continue;
    (IsRefusedDuringDialog(request) ? refused : passing).push_back(request);
  }
  if (refused.empty()) return "";
  if (passing.empty()) return "Refused while a dialog shows.";
  return "While a dialog shows, " + Titles(refused) + (refused.size() == 1 ? " is" : " are") + " refused; " +
         Titles(passing) + (passing.size() == 1 ? " goes" : " go") + " through.";
}

std::string DocOf(const Row& row) {
  std::string text(row.doc);
  const std::size_t at = text.find(kSeeAlso);
  if (at == std::string::npos) return text;
  const std::size_t end = std::min(text.find('.', at), text.size() - 1) + 1;
  text.erase(at, std::min(end + 1, text.size()) - at);
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::vector<std::string_view> SeeAlso(const Row& row) {
  std::vector<std::string_view> names = NamedIn(row.doc);
  const std::size_t most = names.size() + kMostNames;
  const auto add = [&](const std::vector<std::string_view>& more) {
    for (const std::string_view name : more) {
      const bool known = name == row.name || std::find(names.begin(), names.end(), name) != names.end();
      if (!known && names.size() < most) names.push_back(name);
    }
  };
  add(SpokenOf(row));
  const std::vector<SentRequest> requests = RequestsOf(row);
  for (const SentRequest& request : requests) {
    if (requests.size() > kMostRequests) break;
    const auto senders = Senders(request);
    if (senders.size() <= kMostOfACode) add(senders);
  }
  add(NeighboursOf(row));
  add(ThatSpeakOf(row));
  return names;
}

}  // namespace wfinfo::catalogue
