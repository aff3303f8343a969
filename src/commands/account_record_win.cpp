#include "src/commands/account_record_win.h"

#include <cstring>

#include "src/bridge/host_request_win.h"
#include "src/bridge/results_win.h"
#include "src/commands/account_fields.h"

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
  char title[kTitleRoom];  // of the record when it was lent: the account's name, whatever is written there
                           // since
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

char* AddressOf(Slot record) { return FromSlot<char*>(record); }

// The title that a record begins with, cut to its room.
std::string_view TitleOf(Slot record) { return FieldText(AddressOf(record), 0, kTitleRoom - 1); }

void CopyTitle(Slot record, char* room) {
  const std::string_view title = TitleOf(record);
  std::memcpy(room, title.data(), title.size());
  room[title.size()] = '\0';
}

Slot Lend(const char* name) {
  Slot block[] = {ToSlot(name)};
  return SendHostRequest(kCodeLend, block);
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

char* AccountRecord() { return AddressOf(g_accountProp.record); }

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
  g_accountProp.record = Lend(name);
  if (!IsAccountLoaded()) return false;
  CopyTitle(g_accountProp.record, g_accountProp.title);
  for (std::size_t kind = 0; kind < kAccountTexts; ++kind) {
    g_accountProp.dirty[kind] = 0;
    KeepText(kind, nullptr);
  }
  return true;
}

std::optional<long long> NumberOfAccount(const char* name, const AccountKey& key) {
  if (IsAccountLoaded() && std::strcmp(name, g_accountProp.title) == 0) {
    return AccountNumber(key, AccountRecord());
  }
  Slot record = Lend(name);
  if (record == 0) return std::nullopt;
  // The host may know the loaded account by this name too. Its record tells what was set in it.
  const bool is_loaded =
      IsAccountLoaded() && (record == g_accountProp.record || TitleOf(record) == g_accountProp.title);
  const long long number = AccountNumber(key, is_loaded ? AccountRecord() : AddressOf(record));
  // A host that lends the same record twice would take our loan back.
  if (record != g_accountProp.record) SendHostRequest(kCodeRelease, &record);
  return number;
}

int SaveAccount() {
  // The record is the host's again after the request, the title is needed behind it.
  char title[kTitleRoom];
  CopyTitle(g_accountProp.record, title);

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
