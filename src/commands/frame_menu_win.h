// The state of an item in the menu of the host's frame.
#pragma once

#include <windows.h>

namespace wfinfo {

inline constexpr UINT kUnknownItem = 0xFFFFFFFF;

// The window that runs menu commands of this thread, and the state of one item of its menu.
struct MenuItem {
  HWND frame;  // null: none there, or refused because a dialog shows
  UINT command;
  UINT state;  // MF_... bits, or kUnknownItem

  bool IsKnown() const { return frame != nullptr && state != kUnknownItem; }
  bool IsGrayed() const { return IsKnown() && (state & MF_GRAYED) != 0; }
  bool IsChecked() const { return IsKnown() && (state & MF_CHECKED) != 0; }
};

// Looks the item up after the frame has brought its check marks up to date.
MenuItem FrameMenuItem(UINT command);

// Runs the item's menu command when it can be used and its check mark differs from `on`. True when it
// was run.
bool ToggleMenuItem(const MenuItem& item, bool on);

}  // namespace wfinfo
