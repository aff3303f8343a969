// The mails that a command about "the selected mails" means.
#pragma once

#include <vector>

#include "host/requests/host_state.h"

namespace wrenfold {

// The locked selection, else what is selected, else the open mail; none without a mail.
inline std::vector<std::size_t> SelectedMails(HostState& state) {
  if (!state.HasRoot()) return {};
  if (!state.locked_selection().empty()) return state.locked_selection();
  if (state.all_selected) return state.MailsOf(state.folder());
  if (state.found_selected) return state.commands.found;
  return {state.root()};
}

}  // namespace wrenfold
