// Telling the debug log what is wrong with an address list. No box is shown: macros read lists that others
// wrote, and a wrong one is an answer like any other.
#pragma once

#include "src/addresses/address_entry.h"

namespace wfinfo {

// A line "wfinfo.dll: EXPORT: DIAGNOSTIC"; `diagnostic` as ParseAddressEntry gives it, none for "".
void LogAddressDiagnostic(const char* export_name, const char* diagnostic);

// The same for what ended a walk through a list, in the language in use; none for kNone and kNoEntry.
void LogAddressError(const char* export_name, AddressError error);

}  // namespace wfinfo
