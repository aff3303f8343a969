#include "src/addresses/address_log_win.h"

#include <windows.h>

#include "src/addresses/address_messages_win.h"
#include "src/bridge/debug_log_win.h"
#include "src/bridge/host_protocol.h"

namespace wfinfo {

void LogAddressDiagnostic(const char* export_name, const char* diagnostic) {
  if (*diagnostic == '\0') return;
  char line[64 + kAddressErrorRoom];
  wsprintfA(line, "wfinfo.dll: %s: %s", export_name, diagnostic);
  WriteDebugLog(line, kLogGeneral);
}

void LogAddressError(const char* export_name, AddressError error) {
  LogAddressDiagnostic(export_name, Chosen(MessageOf(error)));
}

}  // namespace wfinfo
