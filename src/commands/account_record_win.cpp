#include "src/commands/account_record_win.h"

#include <cstring>
#include <utility>

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

// The texts of an account that do not lie in its record.
struct CachedTexts {
  unsigned char dirty[kAccountTexts];
  char* texts[kAccountTexts];  // LocalAlloc blocks, null when not cached
};

struct AccountPropState {
  Slot record;             // address of the lent record, 0 when none is
  char title[kTitleRoom];  // of the record when it was lent: the account's name, whatever is written there
                           // since
  CachedTexts cached;
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
  LocalFree(std::exchange(g_accountProp.cached.texts[kind], block));
}

void ForgetTexts(const CachedTexts& cached) {
  for (char* const text : cached.texts) LocalFree(text);
}

void GiveBack(Slot record) { SendHostRequest(kCodeRelease, &record); }

void StoreChangedText(const CachedTexts& cached, std::size_t kind, const char* title) {
  if (cached.dirty[kind] == 0 || cached.texts[kind] == nullptr) return;
  Slot block[] = {ToSlot(static_cast<int>(kind)), ToSlot(title), 0, ToSlot(kNoText),
                  ToSlot(cached.texts[kind])};
  SendHostRequest(kCodeStoreText, block);
}

}  // namespace

bool IsAccountLoaded() { return g_accountProp.record != 0; }

char* AccountRecord() { return AddressOf(g_accountProp.record); }

bool IsOfAccount(const char* address) {
  if (!IsAccountLoaded()) return false;
  const char* const record = AccountRecord();
  if (address >= record && address < record + kAccountRecordSize) return true;
  for (const char* const text : g_accountProp.cached.texts) {
    if (text != nullptr && text == address) return true;
  }
  return false;
}

void ReleaseAccount() {
  // None is lent from here on: a macro that the host runs meanwhile must not give it back again.
  if (IsAccountLoaded()) GiveBack(std::exchange(g_accountProp.record, 0));
}

bool BorrowAccount(const char* name) {
  const Slot record = Lend(name);
  // A macro that ran meanwhile may have borrowed one and not given it back.
  const Slot borrowed_meanwhile = std::exchange(g_accountProp.record, record);
  if (record != 0) {
    CopyTitle(record, g_accountProp.title);
    ForgetTexts(std::exchange(g_accountProp.cached, {}));
  }
  if (borrowed_meanwhile != 0 && borrowed_meanwhile != record) GiveBack(borrowed_meanwhile);
  return record != 0;
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
  if (record != g_accountProp.record) GiveBack(record);
  return number;
}

int SaveAccount() {
  // The record is the host's again after the request, the title is needed behind it.
  char title[kTitleRoom];
  CopyTitle(g_accountProp.record, title);

  // The loan ends here: a macro that the host runs meanwhile may begin one of its own, with texts of its own.
  Slot record = std::exchange(g_accountProp.record, 0);
  const CachedTexts cached = std::exchange(g_accountProp.cached, {});
  const int saved = static_cast<int>(SendHostRequest(kCodeSave, &record));
  for (std::size_t kind = 0; saved != 0 && kind < kAccountTexts; ++kind)
    StoreChangedText(cached, kind, title);
  // After a failure the texts stay for who still reads them, until the next loan.
  const bool stay = saved == 0 && !IsAccountLoaded();
  ForgetTexts(stay ? std::exchange(g_accountProp.cached, cached) : cached);
  return saved;
}

const char* AccountText(int kind) {
  char*& cached = g_accountProp.cached.texts[kind];
  if (cached != nullptr) return cached;
  const Slot asked = g_accountProp.record;
  Slot block[] = {kind, asked, 0, ToSlot(kNoText)};
  char* const text = NewCopy(SendHostRequestStr(kCodeFetchText, block));
  if (g_accountProp.record == asked && cached == nullptr) return cached = text;
  // A macro that the host ran meanwhile has fetched it too, or has another account loaded by now.
  const char* const answer = text != nullptr ? ReturnText(text) : nullptr;
  LocalFree(text);
  return answer;
}

bool SetAccountText(int kind, const char* value) {
  const auto index = static_cast<std::size_t>(kind);
  char* const copy = NewCopy(value);
  if (copy == nullptr) return false;
  KeepText(index, copy);
  g_accountProp.cached.dirty[index] = 1;
  return true;
}

}  // namespace wfinfo
