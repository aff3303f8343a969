#include "host/windows/menu_win.h"

#include <optional>
#include <string_view>

#include "host/mail/header_edit.h"
#include "host/mail/headers.h"
#include "host/requests/request_server_win.h"
#include "host/services/draft_win.h"
#include "host/windows/frame_win.h"

namespace wrenfold {
namespace {

constexpr UINT kNotificationCommand = 40128;
constexpr UINT kPriorityCommand = 40129;
constexpr std::string_view kPriorityHeader = "X-Priority";
constexpr std::string_view kNotificationHeader = "Disposition-Notification-To";

bool IsUrgent(std::string_view text) {
  return HeaderValue(text, kPriorityHeader).value_or("").starts_with('1');
}
bool AsksForNotification(std::string_view text) { return HeaderValue(text, kNotificationHeader).has_value(); }

void Show(HMENU menu, UINT command, bool enabled, bool checked) {
  EnableMenuItem(menu, command, MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED));
  CheckMenuItem(menu, command, MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED));
}

// --- The commands behind the items ---

Answer SwitchHeader(Request& request, std::string_view name, std::string_view value, bool on) {
  if (!request.state.HasDraft()) return {};
  std::string& text = request.state.EditCurrent();
  return Request::AnswerNumber((on ? SetHeader(text, name, value, 0) : DeleteHeader(text, name, 0)) ? 1 : 0);
}

Answer SwitchPriority(Request& request) {
  const bool on = !IsUrgent(request.state.CurrentText());
  return SwitchHeader(request, kPriorityHeader, "1", on);
}

Answer SwitchNotification(Request& request) {
  const std::string own = OwnAddress(request);
  const bool on = !AsksForNotification(request.state.CurrentText());
  return SwitchHeader(request, kNotificationHeader, own.empty() ? "local@localhost" : own, on);
}

// For windows without a menu bar.
Answer Menu(Request&) { return Request::AnswerNumber(reinterpret_cast<Slot>(Windows::Menu())); }

// --- Character set of the mail being written ---

struct CharsetRow {
  Slot command;
  std::string_view name;
};

constexpr CharsetRow kCharsetRows[] = {
    {45101, "iso-2022-jp"},  {45102, "iso-8859-1"},     {45103, "gb2312"},
    {45104, "big5"},         {45105, "ks_c_5601-1987"}, {45106, "windows-1251"},
    {45107, "windows-1250"}, {45108, "tis-620"},        {45109, "utf-8"},
};

// command, a second number that is not looked at. A received mail shows in the character set that it
// declares, whatever is chosen.
Answer SelectCharset(Request& request) {
  for (const CharsetRow& row : kCharsetRows) {
    if (row.command != request.Number(0)) continue;
    if (request.state.HasDraft()) {
      SetHeader(request.state.EditCurrent(), "Content-Type", "text/plain; charset=" + std::string(row.name),
                0);
    }
    return Request::AnswerNumber(1);
  }
  return {};
}

constexpr Service kServices[] = {{193, "II", SelectCharset}, {329, "", Menu}};

constexpr Command kCommands[] = {
    {kNotificationCommand, WithCurrent<SwitchNotification>},
    {kPriorityCommand, WithCurrent<SwitchPriority>},
};

const ServiceFamily kFamily(kServices, kCommands);

}  // namespace

HMENU CreateHostMenu() {
  const HMENU bar = CreateMenu();
  const HMENU options = CreatePopupMenu();
  if (bar == nullptr || options == nullptr) return nullptr;
  AppendMenuA(options, MF_STRING | MF_GRAYED, kPriorityCommand, "&High priority");
  AppendMenuA(options, MF_STRING | MF_GRAYED, kNotificationCommand, "&Ask for a notification");
  AppendMenuA(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(options), "&Options");
  return bar;
}

void UpdateHostMenu(HMENU menu, HostState& state) {
  const std::string_view text = state.HasCurrent() ? std::string_view(state.CurrentText()) : "";
  Show(menu, kPriorityCommand, state.HasDraft(), IsUrgent(text));
  Show(menu, kNotificationCommand, state.HasDraft(), AsksForNotification(text));
}

}  // namespace wrenfold
