// The exports that take address lists apart and put texts together.
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "src/addresses/address_entry.h"
#include "src/addresses/address_list.h"
#include "src/addresses/address_log_win.h"
#include "src/addresses/address_messages_win.h"
#include "src/addresses/address_parser_win.h"
#include "src/addresses/honorific.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/value_params_win.h"
#include "src/catalogue/declarations.h"
#include "src/text/host_text.h"

namespace {

using wfinfo::AddressError;
using wfinfo::AddressParts;
using wfinfo::IsText;
using wfinfo::kNoText;

constexpr std::size_t kSpareBytes = 10;  // zeros behind what AddString returns

// What GetEmailList returns: apart from the short-result buffer, so that a macro may keep one of each.
char g_entryText[wfinfo::kListedAddressRoom];

// The first entry of `list`, for the export of this name; false when there is none or it is malformed.
bool ReadFirst(const char* export_name, const char* list, AddressParts* parts) {
  char diagnostic[wfinfo::kAddressErrorRoom];
  const char* const next = wfinfo::ParseAddressEntry(list, parts->address, parts->name, diagnostic, nullptr,
                                                     nullptr, wfinfo::kCodePageShiftJis, 0, 0);
  wfinfo::LogAddressDiagnostic(export_name, diagnostic);
  return next != nullptr;
}

}  // namespace

const char* SetNameOnly(const char* text) noexcept {
  if (!IsText(text)) return kNoText;
  AddressParts parts;
  const bool named = ReadFirst("SetNameOnly", text, &parts) && parts.name[0] != '\0';
  return wfinfo::ReturnText(named ? parts.name : parts.address);
}

const char* SetEmailOnly(const char* text) noexcept {
  if (!IsText(text)) return kNoText;
  AddressParts parts;
  if (!ReadFirst("SetEmailOnly", text, &parts)) return kNoText;
  return wfinfo::ReturnText(parts.address);
}

int CountEmailList(const char* list) noexcept {
  const auto text = wfinfo::CheckedText(list);
  if (!text) return 0;
  const wfinfo::AddressCount count = wfinfo::CountAddresses(*text);
  wfinfo::LogAddressError("CountEmailList", count.end);
  return static_cast<int>(count.entries);
}

const char* GetEmailList(const char* list, int n) noexcept {
  const auto text = wfinfo::CheckedText(list);
  if (!text || n < 0) return kNoText;
  const wfinfo::ListedAddress entry = wfinfo::NthAddressAgain(*text, static_cast<std::size_t>(n));
  if (entry.error != AddressError::kNone) {
    wfinfo::LogAddressError("GetEmailList", entry.error);
    return kNoText;
  }
  const std::size_t length = wfinfo::CutLength(entry.text, wfinfo::kListedAddressRoom);
  // The list may be an earlier result of this function.
  std::memmove(g_entryText, entry.text.data(), length);
  g_entryText[length] = '\0';
  return g_entryText;
}

const char* AddString(const char* a, const char* b, const char* c, const char* d) noexcept {
  std::array<std::string_view, 4> pieces;
  std::size_t count = 0, length = 0;
  for (const char* const text : {a, b, c, d}) {
    if (text == nullptr || !IsText(text)) break;
    pieces[count] = text;
    length += pieces[count++].size();
  }
  char* const block = wfinfo::NewResultBlock(length + kSpareBytes);
  if (block == nullptr) return kNoText;
  char* end = block;
  for (std::size_t i = 0; i < count; ++i) end += pieces[i].copy(end, pieces[i].size());
  return wfinfo::KeepLongResult(block);
}

const char* AddSama(const char* name, const char* honorific, long long flag) noexcept {
  if (!IsText(name) || !wfinfo::IsTextOrNull(honorific)) return kNoText;
  const std::string_view given = honorific != nullptr ? honorific : "";
  const std::string_view suffix = given.empty() ? wfinfo::kDefaultHonorific : given;
  const bool also_without_name = wfinfo::ReadCountParam(flag) == 1;
  const std::size_t length = wfinfo::ComposeWithHonorific(name, suffix, also_without_name, nullptr);
  if (length == 0) {
    AddressParts parts;
    ReadFirst("AddSama", name, &parts);  // tells why
    return kNoText;
  }
  char* const block = wfinfo::NewResultBlock(length + 1);
  if (block == nullptr) return kNoText;
  wfinfo::ComposeWithHonorific(name, suffix, also_without_name, block);
  if (length >= wfinfo::kShortResultSize) return wfinfo::KeepLongResult(block);
  const char* const result = wfinfo::ReturnText({block, length});
  wfinfo::FreeResultBlock(block);
  return result;
}
