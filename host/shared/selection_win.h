// Which mails are selected.
#pragma once

#include <cstddef>
#include <vector>

#include "host/requests/request_server_win.h"
#include "host/requests/shown_list.h"

namespace wrenfold {

// Those of the list; none without a root mail.
inline std::vector<std::size_t> SelectedMails(Request& request) {
  return request.state.HasRoot() ? SelectedMails(request.state) : std::vector<std::size_t>{};
}

}  // namespace wrenfold
