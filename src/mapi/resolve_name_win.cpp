#include "src/mapi/resolve_name_win.h"

#include <windows.h>

#include <cstring>

#include "src/addresses/address_entry.h"
#include "src/bridge/report_win.h"
#include "src/mapi/read_mail_win.h"

namespace wfinfo::mapi {
namespace {

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

}  // namespace

unsigned ResolveName(const char* name, Recipient** recipient) {
  if (!IsReadableText(name) || !IsWritable(recipient, sizeof(Recipient*))) return kUnknownRecipient;
  ResolvedRecipient* const resolved = Resolve(name);
  if (resolved == nullptr) return kUnknownRecipient;
  *recipient = &resolved->recipient;
  return kSuccess;
}

}  // namespace wfinfo::mapi
