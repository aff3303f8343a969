// The Simple MAPI entry points. They run in the process of whatever program sends mail; each writes its name
// to the debug log.
#include <windows.h>

#include "src/catalogue/declarations.h"
#include "src/mapi/mapi_log_win.h"
#include "src/mapi/read_mail_win.h"
#include "src/mapi/resolve_name_win.h"
#include "src/mapi/send_mail_win.h"
#include "src/mapi/session_win.h"
#include "src/mapi/unsupported_win.h"

using namespace wfinfo::mapi;

namespace {

constexpr unsigned kFirstInFirstOutFlag = 0x100;

}  // namespace

unsigned MAPILogon(void*, const char*, const char*, unsigned flags, unsigned, void* session) noexcept {
  LogNumber("MapiLogon64 flFlags=%u", flags);
  return LogOn(flags, session);
}

unsigned MAPILogoff(void*, void*, unsigned, unsigned) noexcept {
  Log("MAPILogoff64");
  return LogOff();
}

unsigned MAPISendMail(void*, void*, void* message, unsigned flags, unsigned) noexcept {
  Log("MAPISendMail64");
  SendMail(static_cast<const MailRecord*>(message), flags);
  return kSuccess;
}

unsigned MAPISendDocuments(void*, const char* delimiter, const char* paths, const char*, unsigned) noexcept {
  Log("MAPISendDocuments64");
  SendDocuments(delimiter, paths);
  return kSuccess;
}

unsigned MAPIFindNext(void*, void* ui_param, const char*, const char* seed, unsigned flags, unsigned,
                      void* identifier) noexcept {
  Log("MAPIFindNext64");
  if ((flags & kFirstInFirstOutFlag) != 0) Log("MAPI_GUARANTEE_FIFO");
  return FindNext(static_cast<HWND>(ui_param), seed, flags, static_cast<char*>(identifier));
}

unsigned MAPIReadMail(void*, void* ui_param, const char* identifier, unsigned flags, unsigned,
                      void* message) noexcept {
  Log("MAPIReadMail64");
  return ReadMail(static_cast<HWND>(ui_param), identifier, flags, static_cast<MailRecord**>(message));
}

unsigned MAPIDeleteMail(void*, void* ui_param, const char* identifier, unsigned, unsigned) noexcept {
  Log("MAPIDeleteMail64");
  return DeleteMail(static_cast<HWND>(ui_param), identifier);
}

unsigned MAPIResolveName(void*, void*, const char* name, unsigned, unsigned, void* recipient) noexcept {
  Log("MAPIResolveName64");
  return ResolveName(name, static_cast<Recipient**>(recipient));
}

unsigned MAPIFreeBuffer(void* buffer) noexcept {
  Log("MAPIFreeBuffer64");
  LocalFree(buffer);
  Log("ret");
  return kSuccess;
}

unsigned MAPIAddress(void*, void*, const char*, unsigned, const char*, unsigned, void*, unsigned, unsigned,
                     void*, void*) noexcept {
  Log("MAPIAddress64");
  return TellUnsupported("MAPIAddress");
}

unsigned MAPIDetails(void*, void*, void*, unsigned, unsigned) noexcept {
  Log("MAPIDetails64");
  return TellUnsupported("MAPIDetails");
}

unsigned MAPISaveMail(void*, void*, void*, unsigned, unsigned, void*) noexcept {
  Log("MAPISaveMail64");
  return TellUnsupported("MAPISaveMail");
}
