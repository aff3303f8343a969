// Handing the mails of other programs to the host.
#pragma once

#include "src/mapi/mapi_records.h"

namespace wfinfo::mapi {

// Starts the host if none runs and hands `message` over; null members, and ones that cannot be read, count
// as missing.
void SendMail(const MailRecord* message, unsigned flags);

// The same for a new mail with the files `paths`; nothing happens without any.
void SendDocuments(const char* delimiter, const char* paths);

}  // namespace wfinfo::mapi
