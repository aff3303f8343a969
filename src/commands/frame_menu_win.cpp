#include "src/commands/frame_menu_win.h"

#include "src/bridge/host_request_win.h"
#include "src/bridge/host_window_win.h"

namespace wfinfo {
namespace {

constexpr int kCodeMenu = 329;  // the frame's menu when it has no menu bar

// The request target may be a child window, whose "menu" is its control id.
HMENU MenuBarOf(HWND window) {
  if ((GetWindowLongPtrA(window, GWL_STYLE) & WS_CHILD) != 0) return nullptr;
  const HMENU bar = GetMenu(window);
  return IsMenu(bar) ? bar : nullptr;
}

HMENU MenuOf(HWND frame) {
  const HMENU bar = MenuBarOf(frame);
  return bar != nullptr ? bar : FromSlot<HMENU>(SendHostRequest(kCodeMenu));
}

}  // namespace

MenuItem FrameMenuItem(UINT command) {
  MenuItem item{FindHostWindow(SearchMode::kFrameTarget, false, kCodeMenu), command, kUnknownItem};
  if (item.frame == nullptr) return item;
  const HMENU menu = MenuOf(item.frame);
  if (menu == nullptr) return item;
  SendMessageA(item.frame, WM_INITMENU, reinterpret_cast<WPARAM>(menu), 0);
  item.state = GetMenuState(menu, command, MF_BYCOMMAND);
  return item;
}

bool ToggleMenuItem(const MenuItem& item, bool on) {
  if (!item.IsKnown() || item.IsGrayed() || item.IsChecked() == on) return false;
  SendMessageA(item.frame, WM_COMMAND, item.command, 0);
  return true;
}

}  // namespace wfinfo
