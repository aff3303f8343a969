// The mail list as it shows: the mails of a folder sorted, threaded and limited to an area, as
// HostState::list says.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/requests/host_state.h"

namespace wrenfold {

// The list of a folder: as it was made, until its mails or the way of listing change.
const FolderList& ListOf(HostState& state, std::size_t folder);

// All mails of a folder in the order of its list, those included that do not show.
std::vector<std::size_t> OrderedMails(HostState& state, std::size_t folder);
// Those that show.
std::vector<std::size_t> ShownMails(HostState& state, std::size_t folder);
bool IsShown(HostState& state, std::size_t mail);

// Place of a mail in one of these; nullopt when it is not in it.
std::optional<std::size_t> PlaceIn(const std::vector<std::size_t>& mails, std::size_t mail);

// The line of the current folder's list at `place`, of those that show; null when there is none.
const ThreadLine* LineAt(HostState& state, std::size_t place);

// Makes the lists anew: that of one folder, or all of them. Nothing is lost but what mails looked like then.
void RemakeList(HostState& state, std::size_t folder);
void RemakeLists(HostState& state);

// The selected mails, with the hidden answers of folded ones unless that is switched off.
std::vector<std::size_t> SelectedMails(HostState& state);

// A mail as the list shows it, host text: marks, date, sender, subject and bytes between tabs. The marks are
// U for unread, M for marked, A for attachments, F for found by the last search, "-" for none; answers in
// threads stand two blanks further in for each level.
std::string ListLineText(HostState& state, std::size_t mail, std::size_t level);

// Names of accounts, host text: the first one, "local" when there are none; and the first one to whose
// addresses a mail goes, else the first of all.
std::string FirstAccount(HostState& state);
std::string AccountOf(HostState& state, std::size_t mail);

}  // namespace wrenfold
