// HTTP requests for macros.
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/net/http_session_win.h"

long long Inet_OpenUrl(const char* url) noexcept { return wfinfo::IsText(url) ? wfinfo::OpenUrl(url) : 0; }
const char* Inet_Read() noexcept { return wfinfo::ReadBody(); }
const char* Inet_HttpQueryInfo(unsigned info_level) noexcept { return wfinfo::QueryHttpInfo(info_level); }
long long Inet_GetResponseCode() noexcept { return wfinfo::LastResponseCode(); }
int Inet_Close() noexcept {
  wfinfo::CloseThreadSession();
  return 0;
}
