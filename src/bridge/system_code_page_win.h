// Code page 932 of the system that the library runs on.
#pragma once

#include "src/text/code_page.h"

namespace wfinfo {

// Tables filled from MultiByteToWideChar and WideCharToMultiByte as they are used; the thread's last error
// is kept.
const CodePage& SystemCodePage();

}  // namespace wfinfo
