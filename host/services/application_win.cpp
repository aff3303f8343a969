// The program itself: its end, its settings, its status bar and sounds.
#include "host/services/application_win.h"

#include <windows.h>

#include <charconv>
#include <filesystem>
#include <system_error>

#include "host/base/settings_text.h"
#include "host/base/whole_file.h"
#include "host/charset/charsets.h"
#include "host/mail/file_reasons.h"
#include "host/mail/mail_store.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/services/transmission_win.h"
#include "host/terminal/questions_win.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

// --- Settings ---

constexpr std::string_view kSection = "settings";

// Numbers that are kept under the code that asks for them (settings_win.cpp).
struct NumberRow {
  std::string_view key;
  int code;
};
constexpr NumberRow kNumbers[] = {{"thread_view", 25}, {"sort_method", 26}, {"view_area", 28}, {"pane", 89}};

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
  for (const NumberRow& row : kNumbers)
    settings.Set(kSection, row.key, std::to_string(state.Setting(row.code)));
  settings.Set(kSection, kCodePageKey, state.commands.application.japanese_code_page ? "1" : "0");
  settings.Set(kSection, kDialUpKey, SystemCharsets().HostToUtf8(state.commands.post.dial_up.entry));
  std::error_code error;
  fs::create_directories(file.parent_path(), error);
  if (auto reason = WriteSafely(file, settings.Text())) return request.Fail(*std::move(reason));
  return Request::Done(true);
}

// The files of accounts and settings, which a macro has changed.
std::optional<std::string> ReadAnew(HostState& state) {
  if (auto reason = state.commands.accounts.Reload()) return reason;
  return ReadConfig(state);
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

// A mail shows whole: nothing is scrolled away above it.
Answer FirstLineShown(Request&) { return Request::AnswerNumber(0); }

Answer IsTrayIcon(Request&) { return Request::Done(false); }

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
    {39, nullptr, IsTrayIcon, "0: the small host has no icon in the tray"},
    {70, nullptr, EnvChanged, "reads accounts and settings anew from their files"},
    {164, nullptr, FirstLineShown, "0: a mail shows whole, from its first line"},
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
    if (const auto value = settings.Value(kSection, row.key)) state.Setting(row.code) = NumberOf(*value);
  }
  if (const auto value = settings.Value(kSection, kCodePageKey))
    state.commands.application.japanese_code_page = *value == "1";
  if (const auto value = settings.Value(kSection, kDialUpKey))
    state.commands.post.dial_up.entry = SystemCharsets().Utf8ToHost(*value);
  return std::nullopt;
}

const ServiceFamily kApplicationServices = {kServices, kCommands};

}  // namespace wrenfold
