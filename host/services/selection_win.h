// Which mails are selected.
#pragma once

#include <cstddef>
#include <vector>

#include "host/requests/request_server_win.h"

namespace wrenfold {

// All mails of the list, those found, or the root mail alone; none without a root mail.
std::vector<std::size_t> SelectedMails(Request& request);

}  // namespace wrenfold
