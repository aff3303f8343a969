#include "host/windows/menu_win.h"

#include <string_view>

#include "host/mail/priority.h"
#include "host/writing/mail_options.h"
#include "src/bridge/host_protocol.h"

namespace wrenfold {
namespace {

void Show(HMENU menu, UINT command, bool enabled, bool checked) {
  EnableMenuItem(menu, command, MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED));
  CheckMenuItem(menu, command, MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED));
}

}  // namespace

HMENU CreateHostMenu() {
  const HMENU bar = CreateMenu();
  const HMENU options = CreatePopupMenu();
  if (bar == nullptr || options == nullptr) return nullptr;
  AppendMenuA(options, MF_STRING | MF_GRAYED, wfinfo::kMenuHighPriority, "&High priority");
  AppendMenuA(options, MF_STRING | MF_GRAYED, wfinfo::kMenuRequestNotification, "&Ask for a notification");
  AppendMenuA(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(options), "&Options");
  return bar;
}

void UpdateHostMenu(HMENU menu, HostState& state) {
  const std::string_view text = state.HasCurrent() ? std::string_view(state.CurrentText()) : "";
  Show(menu, wfinfo::kMenuHighPriority, state.HasDraft(), IsUrgent(text));
  Show(menu, wfinfo::kMenuRequestNotification, state.HasDraft(), AsksForNotification(text));
}

}  // namespace wrenfold
