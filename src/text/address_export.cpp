// The exports that take address lists apart and put texts together.
#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "bridge/report_win.h"
#include "bridge/results_win.h"
#include "bridge/value_params_win.h"
#include "catalogue/declarations.h"
#include "text/address_entry.h"
#include "text/address_list.h"
#include "text/honorific.h"
#include "text/host_text.h"

namespace {

using wfinfo::AddressError;
using wfinfo::AddressParts;
using wfinfo::IsText;
using wfinfo::kNoText;

constexpr std::size_t kEntryTextRoom = 512;
constexpr std::size_t kSpareBytes = 10;  // zeros behind what AddString returns

// What GetEmailList returns: apart from the short-result buffer, so that a macro may keep one of each.
char g_entryText[kEntryTextRoom];

}  // namespace

const char* SetNameOnly(const char* text) noexcept {
  if (!IsText(text)) return kNoText;
  AddressParts parts;
  const AddressError error = wfinfo::SplitAddressEntry(text, &parts).error;
  const bool named = error == AddressError::kNone && parts.name[0] != '\0';
  return wfinfo::ReturnText(named ? parts.name : parts.address);
}

const char* SetEmailOnly(const char* text) noexcept {
  if (!IsText(text)) return kNoText;
  AddressParts parts;
  if (wfinfo::SplitAddressEntry(text, &parts).error != AddressError::kNone) return kNoText;
  return wfinfo::ReturnText(parts.address);
}

int CountEmailList(const char* list) noexcept {
  return IsText(list) ? static_cast<int>(wfinfo::CountAddresses(list)) : 0;
}

const char* GetEmailList(const char* list, int n) noexcept {
  if (!IsText(list) || n < 0) return kNoText;
  const std::string_view entry = wfinfo::NthAddress(list, static_cast<std::size_t>(n));
  if (entry.data() == nullptr) return kNoText;
  const std::size_t length = wfinfo::CutLength(entry, kEntryTextRoom);
  // The list may be an earlier result of this function.
  std::memmove(g_entryText, entry.data(), length);
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
  if (length == 0) return kNoText;
  char* const block = wfinfo::NewResultBlock(length + 1);
  if (block == nullptr) return kNoText;
  wfinfo::ComposeWithHonorific(name, suffix, also_without_name, block);
  if (length >= wfinfo::kShortResultSize) return wfinfo::KeepLongResult(block);
  const char* const result = wfinfo::ReturnText({block, length});
  wfinfo::FreeResultBlock(block);
  return result;
}
