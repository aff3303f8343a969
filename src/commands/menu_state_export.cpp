#include "src/catalogue/declarations.h"
#include "src/commands/frame_menu_win.h"

using namespace wfinfo;

int GetCurrentMenuCheckState(int command) noexcept {
  return FrameMenuItem(static_cast<UINT>(command)).IsChecked() ? 1 : 0;
}
