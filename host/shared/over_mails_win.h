// Files that no macro has written over: mails that are read lie in them.
#pragma once

#include <string>

#include "host/folders/mail_exchange.h"
#include "host/requests/host_state.h"

namespace wrenfold {

// Why a file is not written as planned; "" when it may be.
std::string WhyOverOpenMails(HostState& state, const ExportPlan& plan);

}  // namespace wrenfold
