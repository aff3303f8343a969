#include "src/catalogue/codes.h"

#include "src/catalogue/row_macros.h"

namespace wfinfo::catalogue {
namespace {

#define WFINFO_SLOT_RECORD(type, name, ...) \
  Parameter { #type, #name, "" __VA_ARGS__ }
#define WFINFO_SLOT_LIST(...) WFINFO_EACH(WFINFO_SLOT_RECORD, __VA_ARGS__)
// The leading dummy keeps an empty list a legal array.
#define WFINFO_SLOTS_OF(code, slots) \
  constexpr Parameter kSlots##code[] = {Parameter{}, WFINFO_SLOT_LIST slots};

#define LOOK_UP(code, name)
#define CODE(code, answer, slots, doc) WFINFO_SLOTS_OF(code, slots)
#define CODE_OF_TEXT(code, answer, slots, doc) WFINFO_SLOTS_OF(code, slots)
#define CARRIED(code, command, answer, slots, doc) WFINFO_SLOTS_OF(command, slots)
#include "catalogue/codes.inc"
#undef CODE
#undef CODE_OF_TEXT
#undef CARRIED

constexpr std::span<const Parameter> Listed(std::span<const Parameter> with_dummy) {
  return with_dummy.subspan(1);
}

#define CODE(code, answer, slots, doc) \
  BlockForm{code, kNoFirstSlot, true, false, #answer, Listed(kSlots##code), doc},
#define CODE_OF_TEXT(code, answer, slots, doc) \
  BlockForm{code, kNoFirstSlot, true, true, #answer, Listed(kSlots##code), doc},
#define CARRIED(code, command, answer, slots, doc) \
  BlockForm{code, command, true, false, #answer, Listed(kSlots##command), doc},
constexpr BlockForm kForms[] = {
#include "catalogue/codes.inc"
};
#undef CODE
#undef CODE_OF_TEXT
#undef CARRIED
#undef LOOK_UP

struct LookUp {
  int code;
  std::string_view name;
};

#define CODE(code, answer, slots, doc)
#define CODE_OF_TEXT(code, answer, slots, doc)
#define CARRIED(code, command, answer, slots, doc)
#define LOOK_UP(code, name) LookUp{code, #name},
constexpr LookUp kLookUps[] = {
#include "catalogue/codes.inc"
};

}  // namespace

std::span<const BlockForm> HandForms() { return kForms; }

std::vector<BlockForm> FormsOf(int code) {
  std::vector<BlockForm> forms;
  for (const BlockForm& form : kForms) {
    if (form.code == code) forms.push_back(form);
  }
  for (const Row& row : Rows()) {
    if (row.kind == Kind::kHand || row.kind == Kind::kMenu || row.code != code) continue;
    forms.push_back({code, row.first_slot, false, false, row.result, row.parameters, ""});
  }
  return forms;
}

bool IsLookUp(const Row& row, int code) {
  for (const LookUp& look_up : kLookUps) {
    if (look_up.code == code && look_up.name == row.name) return true;
  }
  return false;
}

std::size_t SlotCount(const BlockForm& form) {
  std::size_t count = !form.by_hand && form.first_slot != kNoFirstSlot ? 1 : 0;
  for (const Parameter& slot : form.slots) count += slot.type != "Rest" ? 1 : 0;
  return count;
}

}  // namespace wfinfo::catalogue
