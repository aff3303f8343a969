// The options of the mail being written: the commands behind the frame's menu, and its character set.
#include <string>
#include <string_view>

#include "host/mail/header_edit.h"
#include "host/mail/priority.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/written_mail_win.h"
#include "host/windows/frame_win.h"
#include "host/writing/mail_options.h"
#include "src/bridge/host_protocol.h"

namespace wrenfold {
namespace {

Answer SwitchPriority(Request& request) {
  SetUrgent(request.state.EditCurrent(), !IsUrgent(request.state.CurrentText()));
  return Request::Done(true);
}

Answer SwitchNotification(Request& request) {
  std::string& text = request.state.EditCurrent();
  if (AsksForNotification(text)) return Request::Done(DeleteHeader(text, kNotificationHeader, 0));
  const std::string own = OwnAddress(request.state);
  return Request::Done(SetHeader(text, kNotificationHeader, own.empty() ? "local@localhost" : own, 0));
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
      request.state.writing.draft->charset = row.name;
      SetHeader(request.state.EditCurrent(), "Content-Type", "text/plain; charset=" + std::string(row.name),
                0);
    }
    return Request::AnswerNumber(1);
  }
  return {};
}

constexpr Service kServices[] = {
    {193, "II", SelectCharset,
     "sets the Content-Type of the mail being written: 1, 0 for an unknown charset; a received mail shows in "
     "the character set that it declares"},
    {329, "", Menu, "the frame's menu, for a mail in a window of its own"},
};

constexpr Command kCommands[] = {
    {wfinfo::kMenuRequestNotification, WithDraft<SwitchNotification>,
     "item of the frame's menu bar that sets and removes `Disposition-Notification-To` of the mail being "
     "written; greyed without one"},
    {wfinfo::kMenuHighPriority, WithDraft<SwitchPriority>,
     "item of the frame's menu bar that makes the mail being written [urgent](#urgent-mails) or not; greyed "
     "without one"},
};

}  // namespace

const ServiceFamily kOptionsServices = {kServices, kCommands};

}  // namespace wrenfold
