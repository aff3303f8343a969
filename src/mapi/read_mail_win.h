// Find, read and delete as requests to the host's store.
#pragma once

#include <windows.h>

#include "src/mapi/mapi_records.h"

namespace wfinfo::mapi {

inline constexpr unsigned kSuccess = 0;
inline constexpr unsigned kFailure = 2;
inline constexpr unsigned kUnknownRecipient = 14;

// Each returns the host's code, or kFailure when it could not be asked. Texts that cannot be read count as
// empty; a result is passed by where nothing can be written.
unsigned FindNext(HWND parent, const char* seed, unsigned flags, char* identifier);
unsigned ReadMail(HWND parent, const char* identifier, unsigned flags, MailRecord** message);
unsigned DeleteMail(HWND parent, const char* identifier);

}  // namespace wfinfo::mapi
