#include "host/requests/shown_list.h"

#include <algorithm>
#include <utility>

#include "host/base/ascii.h"
#include "host/mail/mail_order.h"
#include "src/addresses/address_entry.h"
#include "src/dates/date_format.h"
#include "src/dates/date_parse.h"

namespace wrenfold {
namespace {

// --- Making a list ---

OrderKey KeyOf(HostState& state, std::size_t mail, SortKey key) {
  const auto first_when = [&](std::uint32_t bit) {
    return OrderKey{(state.StateWord(mail) & bit) != 0 ? 0 : 1, ""};
  };
  switch (key) {
    case SortKey::kArrival:
      return {static_cast<std::int64_t>(mail), ""};
    case SortKey::kDate:
      return {MomentOf(state.Header(mail, "Date")), ""};
    case SortKey::kSubject:
      return {0, SubjectToSortBy(state.Header(mail, "Subject"))};
    case SortKey::kFrom:
      return {0, TextToSortBy(state.Header(mail, "From"))};
    case SortKey::kTo:
      return {0, TextToSortBy(state.Header(mail, "To"))};
    case SortKey::kSize:
      return {static_cast<std::int64_t>(state.Mail(mail).raw.size()), ""};
    case SortKey::kUnread:
      return first_when(kStateUnread);
    case SortKey::kMarked:
      return first_when(kStateMarked);
    case SortKey::kColour:
      return {state.colour(mail), ""};
    case SortKey::kAttachments:
      return first_when(kStateAttachment);
  }
  return {};
}

// Places in `mails`, sorted.
std::vector<std::size_t> OrderOf(HostState& state, const std::vector<std::size_t>& mails) {
  const SortMethod method = SortMethodOf(state.list.sort).value_or(SortMethod{});
  std::vector<OrderKey> keys;
  for (const std::size_t mail : mails) keys.push_back(KeyOf(state, mail, method.key));
  return SortedPlaces(keys, method.backwards);
}

std::vector<ThreadLine> LinesOf(HostState& state, const std::vector<std::size_t>& mails) {
  std::vector<std::size_t> parents(mails.size(), kNoParent);
  if (state.list.threads != ThreadView::kOff) {
    std::vector<ThreadedMail> threaded;
    for (const std::size_t mail : mails) {
      const std::vector<std::string> ids = MessageIds(state.Header(mail, "Message-ID"));
      threaded.push_back({ids.empty() ? "" : ids[0],
                          Ancestors(state.Header(mail, "References"), state.Header(mail, "In-Reply-To"))});
    }
    parents = ThreadParents(threaded);
  }
  std::vector<ThreadLine> lines = ThreadLines(OrderOf(state, mails), parents);
  for (ThreadLine& line : lines) line.mail = mails[line.mail];
  return lines;
}

bool IsFound(HostState& state, std::size_t mail) {
  const std::vector<std::size_t>& found = state.commands.found;
  return std::ranges::find(found, mail) != found.end();
}

bool IsInArea(HostState& state, std::size_t mail) {
  if (state.list.found_only && !IsFound(state, mail)) return false;
  const auto has = [&](std::uint32_t bit) { return (state.StateWord(mail) & bit) != 0; };
  switch (state.list.area) {
    case ViewArea::kAll:
      return true;
    case ViewArea::kUnread:
      return has(kStateUnread);
    case ViewArea::kMarked:
      return has(kStateMarked);
    case ViewArea::kAttachments:
      return has(kStateAttachment);
    case ViewArea::kHighPriority:
      return has(kStateHighPriority);
    case ViewArea::kHot:
      return has(kStateHot);
    case ViewArea::kUnanswered:
      return !has(kStateReplied);
  }
  return true;
}

// The places of the lines that show: in the area, and below nothing that is folded.
std::vector<std::size_t> ShownLines(HostState& state, const std::vector<ThreadLine>& lines) {
  std::vector<std::size_t> shown;
  std::optional<std::size_t> folded_level;  // of the folded mail that the lines stand below
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (folded_level && lines[i].level > *folded_level) continue;
    folded_level.reset();
    if (!IsInArea(state, lines[i].mail)) continue;
    shown.push_back(i);
    if (state.list.IsFolded(lines[i].mail)) folded_level = lines[i].level;
  }
  return shown;
}

// "2025/03/03 09:15" on the sender's clock; "" without a date.
std::string ShownDate(std::string_view header) {
  const auto date = wfinfo::ReadHeaderDate(header);
  const auto time = date ? wfinfo::CivilFromTicks(date->wall_clock) : std::nullopt;
  if (!time) return "";
  char text[32];
  return {text, wfinfo::FormatDateText("YYYY/MM/DD hh:mm", *time, text, sizeof text)};
}

// A header on one line, with no tab.
std::string OneLine(std::string_view value) {
  std::string line;
  for (const char c : value) {
    if (IsLineEnd(c)) continue;
    line += c == '\t' ? ' ' : c;
  }
  return line;
}

bool NamesAnyOf(std::string_view header, std::string_view addresses) {
  for (wfinfo::AddressReader own(addresses); own.Read();) {
    for (wfinfo::AddressReader given(header); given.Read();) {
      if (EqualsIgnoringCase(given.entry().address, own.entry().address)) return true;
    }
  }
  return false;
}

bool IsAddressedTo(HostState& state, std::size_t mail, const std::string& addresses) {
  return NamesAnyOf(state.Header(mail, "To"), addresses) || NamesAnyOf(state.Header(mail, "Cc"), addresses) ||
         NamesAnyOf(state.Header(mail, "Delivered-To"), addresses);
}

}  // namespace

const FolderList& ListOf(HostState& state, std::size_t folder) {
  FolderList& list = state.list.folders[folder];
  std::vector<std::size_t> mails = state.MailsOf(folder);
  if (mails == list.mails) return list;
  list.lines = LinesOf(state, mails);
  list.shown = ShownLines(state, list.lines);
  list.mails = std::move(mails);
  return list;
}

std::vector<std::size_t> OrderedMails(HostState& state, std::size_t folder) {
  std::vector<std::size_t> mails;
  for (const ThreadLine& line : ListOf(state, folder).lines) mails.push_back(line.mail);
  return mails;
}

std::vector<std::size_t> ShownMails(HostState& state, std::size_t folder) {
  const FolderList& list = ListOf(state, folder);
  std::vector<std::size_t> mails;
  for (const std::size_t line : list.shown) mails.push_back(list.lines[line].mail);
  return mails;
}

bool IsShown(HostState& state, std::size_t mail) {
  return PlaceIn(ShownMails(state, state.Mail(mail).folder), mail).has_value();
}

std::optional<std::size_t> PlaceIn(const std::vector<std::size_t>& mails, std::size_t mail) {
  const auto found = std::ranges::find(mails, mail);
  return found == mails.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - mails.begin()));
}

const ThreadLine* LineAt(HostState& state, std::size_t place) {
  if (!state.HasRoot()) return nullptr;
  const FolderList& list = ListOf(state, state.folder());
  return place < list.shown.size() ? &list.lines[list.shown[place]] : nullptr;
}

void RemakeList(HostState& state, std::size_t folder) { state.list.folders.erase(folder); }
void RemakeLists(HostState& state) { state.list.folders.clear(); }

std::vector<std::size_t> SelectedMails(HostState& state) {
  const std::vector<std::size_t> selected = state.selection.Mails(state.root());
  if (!state.list.whole_threads || state.list.threads == ThreadView::kOff) return selected;
  std::vector<std::size_t> mails;
  for (const std::size_t mail : selected) {
    if (!PlaceIn(mails, mail)) mails.push_back(mail);
    if (!state.list.IsFolded(mail)) continue;
    const std::vector<ThreadLine>& lines = ListOf(state, state.Mail(mail).folder).lines;
    auto line = std::ranges::find(lines, mail, &ThreadLine::mail);
    if (line == lines.end()) continue;
    for (const std::size_t level = line++->level; line != lines.end() && line->level > level; ++line) {
      if (!PlaceIn(mails, line->mail)) mails.push_back(line->mail);
    }
  }
  return mails;
}

std::string ListLineText(HostState& state, std::size_t mail, std::size_t level) {
  const std::uint32_t word = state.StateWord(mail);
  std::string line;
  if ((word & kStateUnread) != 0) line += 'U';
  if ((word & kStateMarked) != 0) line += 'M';
  if ((word & kStateAttachment) != 0) line += 'A';
  if (state.list.highlights_found && IsFound(state, mail)) line += 'F';
  if (line.empty()) line = "-";
  line += '\t' + ShownDate(state.Header(mail, "Date"));
  line += '\t' + OneLine(state.Header(mail, "From"));
  line += '\t' + std::string(2 * level, ' ') + OneLine(state.Header(mail, "Subject"));
  return line + '\t' + std::to_string(state.Mail(mail).raw.size());
}

std::string FirstAccount(HostState& state) {
  const std::vector<std::string> names = state.commands.accounts.Names();
  return names.empty() ? "local" : names[0];
}

std::string AccountOf(HostState& state, std::size_t mail) {
  const AccountStore& accounts = state.commands.accounts;
  for (const std::string& name : accounts.Names()) {
    for (const char* key : {"szMailFromSpecify", "szEmailAlias"}) {
      if (IsAddressedTo(state, mail, accounts.Value(name, key))) return name;
    }
  }
  return FirstAccount(state);
}

}  // namespace wrenfold
