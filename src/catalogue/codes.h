// What lies in the block of a request: of exports written by hand as catalogue/codes.inc has it, of the
// others the parameters of their row.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "src/catalogue/rows.h"

namespace wfinfo::catalogue {

// One form in which a code is sent.
struct BlockForm {
  int code;
  // Fixed first slot, a sub-command or a menu command, which the slots of hand-written exports count in and
  // those of rows do not; kNoFirstSlot when there is none.
  long long first_slot;
  bool by_hand;             // of codes.inc
  bool text_itself;         // lParam is the address of the first slot's text
  std::string_view answer;  // by hand: Number, Text, WideText, Record, Handle; else the result of the row
  std::span<const Parameter> slots;
  std::string_view doc;  // what the answer is; "" when not by hand
};

// The forms of codes.inc, in its order.
std::span<const BlockForm> HandForms();

// All forms of a code.
std::vector<BlockForm> FormsOf(int code);

// True when an export asks this on its own account: a dialog that refuses the code is not told of, and the
// export works without the answer.
bool IsLookUp(const Row& row, int code);

// Slots of a block, the fixed one in front included; further ones of unknown number are not counted.
std::size_t SlotCount(const BlockForm& form);

}  // namespace wfinfo::catalogue
