// The Simple MAPI entry points. They run in the process of whatever program sends mail; each writes its name
// to the debug log.
#include <windows.h>

#include <cstring>
#include <string_view>

#include "src/addresses/address_entry.h"
#include "src/bridge/language_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/mapi/host_launch_win.h"
#include "src/mapi/mapi_log_win.h"
#include "src/mapi/read_mail_win.h"
#include "src/mapi/send_mail_win.h"

namespace wfinfo::mapi {
namespace {

constexpr unsigned kForceDownloadFlag = 0x1000;
constexpr unsigned kFirstInFirstOutFlag = 0x100;
constexpr WPARAM kReceiveAllCommand = 40143;

// Whether MAPILogon had to start the host, which MAPILogoff then closes.
bool g_startedByLogon = false;

// One resolved recipient, in one block that the caller frees.
struct ResolvedRecipient {
  Recipient recipient;
  char name[kAddressRoom];
  char address[kAddressRoom];
};
static_assert(sizeof(ResolvedRecipient) == 1064);

ResolvedRecipient* Resolve(const char* text) {
  auto* const resolved = static_cast<ResolvedRecipient*>(LocalAlloc(LPTR, sizeof(ResolvedRecipient)));
  if (resolved == nullptr) return nullptr;
  AddressParts parts;
  if (SplitAddressEntry(text, &parts).error != AddressError::kNone) {
    LocalFree(resolved);
    return nullptr;
  }
  // The texts alone: what this stack holds behind them is nobody else's business.
  std::strcpy(resolved->name, parts.name);
  std::strcpy(resolved->address, parts.address);
  resolved->recipient.recipient_class = kTo;
  resolved->recipient.name = resolved->name;
  resolved->recipient.address = resolved->address;
  resolved->recipient.entry_size = static_cast<std::uint32_t>(std::strlen(resolved->address));
  resolved->recipient.entry = resolved->address;
  return resolved;
}

// Tells the user and reports success, so that the calling program goes on.
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

}  // namespace
}  // namespace wfinfo::mapi

using namespace wfinfo::mapi;

unsigned MAPILogon(void*, const char*, const char*, unsigned flags, unsigned, void* session) noexcept {
  LogNumber("MapiLogon64 flFlags=%u", flags);
  g_startedByLogon = false;
  HWND frame = FindHostFrame();
  if (frame == nullptr) {
    frame = ExecWrenfold();
    if (frame == nullptr) return kFailure;
    g_startedByLogon = true;
  }
  if (wfinfo::IsWritable(session, sizeof(ULONG_PTR))) {
    *static_cast<ULONG_PTR*>(session) = reinterpret_cast<ULONG_PTR>(frame);
  }
  if ((flags & kForceDownloadFlag) != 0) {
    Log("MapiLogon: receive all");
    SendMessageA(frame, WM_COMMAND, kReceiveAllCommand, 0);
    Log("MapiLogon: receive all done");
  }
  Log("MapiLogon ret");
  return kSuccess;
}

unsigned MAPILogoff(void*, void*, unsigned, unsigned) noexcept {
  Log("MAPILogoff64");
  if (!g_startedByLogon) return kSuccess;
  const HWND frame = FindHostFrame();
  if (frame != nullptr && !HasPopup(frame)) PostMessageA(frame, WM_CLOSE, 0, 0);
  return kSuccess;
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
  if (!wfinfo::IsReadableText(name) || !wfinfo::IsWritable(recipient, sizeof(Recipient*)))
    return kUnknownRecipient;
  ResolvedRecipient* const resolved = Resolve(name);
  if (resolved == nullptr) return kUnknownRecipient;
  *static_cast<Recipient**>(recipient) = &resolved->recipient;
  return kSuccess;
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
