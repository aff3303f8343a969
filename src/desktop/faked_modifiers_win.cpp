#include "src/desktop/faked_modifiers_win.h"

#include <cstring>

namespace wfinfo {
namespace {

constexpr BYTE kKeyDown = 0x80;  // entry of a pressed key in the keyboard state

}  // namespace

FakedModifiers::FakedModifiers(bool shift, bool control, bool alt) {
  // A state that cannot be read is not put back either.
  if (!GetKeyboardState(saved_)) return;
  faked_ = true;
  BYTE state[256];
  std::memcpy(state, saved_, sizeof state);
  state[VK_SHIFT] = shift ? kKeyDown : 0;
  state[VK_CONTROL] = control ? kKeyDown : 0;
  state[VK_MENU] = alt ? kKeyDown : 0;
  SetKeyboardState(state);
}

FakedModifiers::~FakedModifiers() {
  if (faked_) SetKeyboardState(saved_);
}

}  // namespace wfinfo
