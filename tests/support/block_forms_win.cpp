#include "tests/support/block_forms_win.h"

#include <windows.h>

#include <algorithm>

#include "src/catalogue/codes.h"
#include "src/catalogue/requests.h"

namespace wfinfo_test {
namespace {

using wfinfo::FromSlot;
using wfinfo::Slot;
using wfinfo::catalogue::BlockForm;
using wfinfo::catalogue::FormsOf;
using wfinfo::catalogue::kNoFirstSlot;
using wfinfo::catalogue::Parameter;
using wfinfo::catalogue::SlotCount;

bool IsReadable(Slot slot) { return slot != 0 && !IsBadStringPtrA(FromSlot<const char*>(slot), 0x1000); }

bool Fits(const Parameter& slot, Slot value) {
  if (slot.type == "Text") return IsReadable(value);
  if (slot.type == "OptText") return value == 0 || IsReadable(value);
  // An address below 4 GiB looks like a number, which no number of the requests looks like.
  if (slot.type == "Int32") return value == static_cast<int>(value) && !IsReadable(value);
  if (slot.type == "UInt32") return value == static_cast<unsigned>(value) && !IsReadable(value);
  if (slot.type == "Bytes" || slot.type == "Record") return value == 0 || IsReadable(value);
  return true;
}

std::string Misfit(const BlockForm& form, Slot lparam) {
  if (SlotCount(form) == 0) return lparam == 0 ? "" : "a block that has no slots";
  if (form.text_itself) return IsReadable(lparam) ? "" : "no text at lParam";
  if (lparam == 0) return "no block";
  const Slot* block = FromSlot<const Slot*>(lparam);
  if (form.first_slot != kNoFirstSlot && *block != form.first_slot) return "another first slot";
  if (!form.by_hand && form.first_slot != kNoFirstSlot) ++block;
  for (std::size_t i = 0; i < form.slots.size(); ++i) {
    const Parameter& slot = form.slots[i];
    if (!Fits(slot, block[i])) return std::string(slot.name) + " is no " + std::string(slot.type);
  }
  return "";
}

}  // namespace

std::string WrongBlock(int code, long long lparam) {
  std::string wrong = "no form";
  for (const BlockForm& form : FormsOf(code)) {
    wrong = Misfit(form, lparam);
    if (wrong.empty()) break;
  }
  return wrong;
}

bool HasSlotCount(int code, std::size_t slots) {
  const std::vector<BlockForm> forms = FormsOf(code);
  const auto by_hand = [](const BlockForm& form) { return form.by_hand; };
  if (std::none_of(forms.begin(), forms.end(), by_hand)) return true;
  const auto fits = [slots](const BlockForm& form) {
    const bool more = !form.slots.empty() && form.slots.back().type == "Rest";
    return more ? slots >= SlotCount(form) : slots == SlotCount(form);
  };
  return std::any_of(forms.begin(), forms.end(), fits);
}

}  // namespace wfinfo_test
