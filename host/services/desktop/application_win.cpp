// The program itself: its end, its settings, its status bar and sounds.
#include "host/services/desktop/application_win.h"

#include <windows.h>

#include <charconv>
#include <filesystem>
#include <limits>
#include <system_error>

#include "host/base/settings_text.h"
#include "host/charset/charsets.h"
#include "host/files/file_reasons.h"
#include "host/files/safe_saving.h"
#include "host/files/whole_file.h"
#include "host/list/list_view.h"
#include "host/list/mail_order.h"
#include "host/mail/mail_store.h"
#include "host/requests/request_server_win.h"
#include "host/requests/shown_list.h"
#include "host/services/services_win.h"
#include "host/shared/transport_win.h"
#include "host/terminal/questions_win.h"
#include "host/terminal/terminal_win.h"
#include "host/windows/list_window_win.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

// --- Settings ---

constexpr std::string_view kSection = "settings";

// How the mail list shows, and the pane that has the focus.
struct NumberRow {
  std::string_view key;
  std::int64_t (*get)(HostState& state);
  void (*set)(HostState& state, std::int64_t number);
  std::int64_t last;  // of those from 0 on
};

constexpr NumberRow kNumbers[] = {
    {"thread_view", [](HostState& state) { return static_cast<std::int64_t>(state.list.threads); },
     [](HostState& state, std::int64_t number) { state.list.threads = static_cast<ThreadView>(number); },
     static_cast<std::int64_t>(ThreadView::kFolded)},
    {"sort_method", [](HostState& state) { return state.list.sort; },
     [](HostState& state, std::int64_t number) {
       if (SortMethodOf(number)) state.list.sort = number;
     },
     std::numeric_limits<std::int64_t>::max()},
    {"view_area", [](HostState& state) { return static_cast<std::int64_t>(state.list.area); },
     [](HostState& state, std::int64_t number) { state.list.area = static_cast<ViewArea>(number); },
     kLastViewArea},
    {"pane", [](HostState& state) { return static_cast<std::int64_t>(state.list.pane); },
     [](HostState& state, std::int64_t number) { state.list.pane = static_cast<Pane>(number); }, kLastPane},
};

constexpr std::string_view kCodePageKey = "japanese_code_page";
constexpr std::string_view kDialUpKey = "dial_up";

std::int64_t NumberOf(const std::string& text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

Answer SaveConfig(Request& request) {
  HostState& state = request.state;
  const fs::path& file = state.commands.application.config_file;
  SettingsText settings(ReadWholeFile(file).value_or(""));
  if (!settings.HasSection(kSection)) settings.AddSection(kSection);
  for (const NumberRow& row : kNumbers) settings.Set(kSection, row.key, std::to_string(row.get(state)));
  settings.Set(kSection, kCodePageKey, state.commands.application.japanese_code_page ? "1" : "0");
  settings.Set(kSection, kDialUpKey, SystemCharsets().HostToUtf8(state.commands.post.dial_up.entry));
  if (const auto reason = SaveSafely(file, settings.Text())) return request.Fail(*reason);
  return Request::Done(true);
}

// The files of accounts and settings, which a macro has changed.
std::optional<std::string> ReadAnew(HostState& state) {
  if (auto reason = state.commands.accounts.Reload()) return reason;
  for (const std::string& line : state.commands.accounts.Complaints()) state.complain(line);
  auto reason = ReadConfig(state);
  RemakeLists(state);
  DrawTitleList(state);
  return reason;
}

Answer EnvChanged(Request& request) {
  if (auto reason = ReadAnew(request.state)) return request.Fail(*std::move(reason));
  return Request::Done(true);
}

// --- Questions, sounds, code page ---

Answer SetQuietMode(Request& request) {
  request.state.commands.application.quiet = request.Number(0) != 0;
  SetQuiet(request.state.commands.application.quiet);
  return Request::Done(true);
}

Answer StopSound(Request& request) {
  bool& plays = request.state.commands.post.sound_plays;
  if (!plays) return request.Fail("no sound plays");
  plays = false;
  TheTerminal().Error("sound: stopped\n");
  return Request::Done(true);
}

Answer SetCodePageMode(Request& request) {
  request.state.commands.application.japanese_code_page = request.Number(0) != 0;
  return Request::Done(true);
}

// --- What shows ---

std::string MailsInList(HostState& state) {
  if (!state.HasRoot()) return "no mails";
  std::size_t unread = 0;
  const std::vector<std::size_t> list = state.MailsOf(state.folder());
  for (const std::size_t mail : list) unread += (state.StateWord(mail) & kStateUnread) != 0 ? 1 : 0;
  return MailsInWords(list.size()) + ", " + std::to_string(unread) + " unread";
}

// What the last transmission said; before the first, what the list holds.
Answer StatusBar(Request& request) {
  const std::string& status = request.state.commands.post.status;
  return request.AnswerText(status.empty() ? MailsInList(request.state) : status);
}

Answer FirstLineShown(Request& request) {
  return Request::AnswerNumber(static_cast<Slot>(request.state.view.first_line));
}

// --- The end ---

// The macro that runs ends behind this statement.
Answer Exit(Request& request) {
  request.state.commands.application.exit_asked = true;
  PostQuitMessage(0);
  return Request::Done(true);
}

Answer Restart(Request& request) {
  FinishTransmission(request.state);
  if (auto reason = ReadAnew(request.state)) return request.Fail(*std::move(reason));
  request.state.commands.post.status.clear();
  TheTerminal().Error(
      "restart (simulated): accounts and settings are read anew; mails, drafts and the macro stay\n");
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {11, nullptr, Exit, "ends the macro behind this statement, and the program"},
    {70, nullptr, EnvChanged, "reads accounts and settings anew from their files"},
    {164, nullptr, FirstLineShown,
     "line of the open mail that is at the top of its window, which 40042 and 40043 scroll"},
    {168, "I", SetQuietMode, "on: questions take what they propose, sounds are not told"},
    {192, nullptr, SaveConfig, "writes the settings to their file; 0 when it cannot be written"},
    {254, nullptr, EnvChanged, "as 70"},
    {280, "I", SetCodePageMode, "kept, and saved by 192; host text is code page 932 in either mode"},
    {304, nullptr, StopSound, "ends the sound of received mails: prints `sound: stopped`; 0 when none plays"},
    {312, nullptr, StatusBar,
     "what the last transmission did, before the first the number of mails of the list"},
};

constexpr Command kCommands[] = {
    {40443, Restart, "simulated: reads accounts and settings anew"},
    {40444, Restart, "as 40443"},
};

}  // namespace

std::optional<std::string> ReadConfig(HostState& state) {
  const fs::path& file = state.commands.application.config_file;
  std::error_code error;
  if (!fs::exists(file, error)) return std::nullopt;
  const auto text = ReadWholeFile(file);
  if (!text) return WhyUnreadable(file);
  const SettingsText settings(*text);
  for (const NumberRow& row : kNumbers) {
    const auto value = settings.Value(kSection, row.key);
    const std::int64_t number = value ? NumberOf(*value) : -1;
    if (number >= 0 && number <= row.last) row.set(state, number);
  }
  if (const auto value = settings.Value(kSection, kCodePageKey))
    state.commands.application.japanese_code_page = *value == "1";
  if (const auto value = settings.Value(kSection, kDialUpKey))
    state.commands.post.dial_up.entry = SystemCharsets().Utf8ToHost(*value);
  return std::nullopt;
}

const ServiceFamily kApplicationServices = {kServices, kCommands};

}  // namespace wrenfold
