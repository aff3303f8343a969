#include "commands/account_record_win.h"

#include <cstring>

#include "bridge/host_request_win.h"
#include "bridge/results_win.h"
#include "commands/account_fields.h"

namespace wfinfo {
namespace {

constexpr int kCodeLend = 75;
constexpr int kCodeSave = 76;
constexpr int kCodeRelease = 77;
constexpr int kCodeFetchText = 111;
constexpr int kCodeStoreText = 112;

// Bytes from the title to the next field whose place is the host's own.
constexpr std::size_t kTitleRoom = 560;

struct AccountPropState {
  Slot record;  // address of the lent record, 0 when none is; the host is given the address of this slot
  unsigned char dirty[kAccountTexts];
  char* texts[kAccountTexts];  // LocalAlloc blocks, null when not cached
};

constinit AccountPropState g_accountProp = {};

// A zero-terminated copy in a block of its own, or null.
char* NewCopy(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  char* const block = NewResultBlock(size);
  if (block != nullptr) std::memcpy(block, text, size);
  return block;
}

void KeepText(std::size_t kind, char* block) {
  LocalFree(g_accountProp.texts[kind]);
  g_accountProp.texts[kind] = block;
}

void StoreChangedText(std::size_t kind, const char* title) {
  if (g_accountProp.dirty[kind] == 0 || g_accountProp.texts[kind] == nullptr) return;
  Slot block[] = {ToSlot(static_cast<int>(kind)), ToSlot(title), 0, ToSlot(kNoText),
                  ToSlot(g_accountProp.texts[kind])};
  SendHostRequest(kCodeStoreText, block);
}

}  // namespace

bool IsAccountLoaded() { return g_accountProp.record != 0; }

char* AccountRecord() { return reinterpret_cast<char*>(static_cast<INT_PTR>(g_accountProp.record)); }

bool IsOfAccount(const char* address) {
  if (!IsAccountLoaded()) return false;
  const char* const record = AccountRecord();
  if (address >= record && address < record + kAccountRecordSize) return true;
  for (const char* const text : g_accountProp.texts) {
    if (text != nullptr && text == address) return true;
  }
  return false;
}

void ReleaseAccount() {
  if (!IsAccountLoaded()) return;
  SendHostRequest(kCodeRelease, &g_accountProp.record);
  g_accountProp.record = 0;
}

bool BorrowAccount(const char* name) {
  Slot block[] = {ToSlot(name)};
  g_accountProp.record = SendHostRequest(kCodeLend, block);
  if (!IsAccountLoaded()) return false;
  for (std::size_t kind = 0; kind < kAccountTexts; ++kind) {
    g_accountProp.dirty[kind] = 0;
    KeepText(kind, nullptr);
  }
  return true;
}

int SaveAccount() {
  // The record is the host's again after the request, the title is needed behind it.
  char title[kTitleRoom];
  const std::string_view record_title = FieldText(AccountRecord(), 0, kTitleRoom - 1);
  std::memcpy(title, record_title.data(), record_title.size());
  title[record_title.size()] = '\0';

  const int saved = static_cast<int>(SendHostRequest(kCodeSave, &g_accountProp.record));
  for (std::size_t kind = 0; saved != 0 && kind < kAccountTexts; ++kind) {
    StoreChangedText(kind, title);
    KeepText(kind, nullptr);
  }
  g_accountProp.record = 0;
  return saved;
}

const char* AccountText(int kind) {
  const auto index = static_cast<std::size_t>(kind);
  if (g_accountProp.texts[index] == nullptr) {
    Slot block[] = {kind, g_accountProp.record, 0, ToSlot(kNoText)};
    g_accountProp.texts[index] = NewCopy(SendHostRequestStr(kCodeFetchText, block));
  }
  return g_accountProp.texts[index];
}

bool SetAccountText(int kind, const char* value) {
  const auto index = static_cast<std::size_t>(kind);
  char* const copy = NewCopy(value);
  if (copy == nullptr) return false;
  KeepText(index, copy);
  g_accountProp.dirty[index] = 1;
  return true;
}

}  // namespace wfinfo
