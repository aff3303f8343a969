#include "src/mapi/unsupported_win.h"

#include <windows.h>

#include "src/bridge/language_win.h"
#include "src/mapi/mapi_log_win.h"
#include "src/mapi/read_mail_win.h"

namespace wfinfo::mapi {

unsigned TellUnsupported(const char* name) {
  char text[256];
  wsprintfA(text,
            Chosen({"TamarinMail: %s called but this MAPI api is not supported by TamarinMail.",
                    "タマリンメール: %s が呼び出されましたが、このMAPI "
                    "APIはタマリンメールではサポートされていません。"}),
            name);
  MessageBoxA(nullptr, text, nullptr, MB_ICONHAND | MB_SYSTEMMODAL);
  Log(text);
  return kSuccess;
}

}  // namespace wfinfo::mapi
