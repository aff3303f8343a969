#include "bridge/host_request_win.h"
#include "catalogue/declarations.h"
const char* RootHeader(const char*) noexcept { return wfinfo::SendHostRequestStr(1); }
