// The bits of a mail's state under the small host's own names.
#pragma once

#include "src/bridge/host_protocol.h"

namespace wrenfold {

using wfinfo::MailState;
using enum wfinfo::MailState;

}  // namespace wrenfold
