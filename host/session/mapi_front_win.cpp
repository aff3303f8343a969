#include "host/session/mapi_front_win.h"

#include <string>
#include <variant>

#include "host/base/paths.h"
#include "host/files/whole_file.h"
#include "host/mapi/register_win.h"
#include "host/mapi/server_win.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

// The settings file of the home, and what the command line says over it.
std::variant<MapiSettings, std::string> SettingsOf(const std::string& home, const Options& options) {
  auto parsed = ParseMapiSettings(ReadWholeFile(PathFromUtf8(home) / "settings.txt").value_or(""));
  if (auto* settings = std::get_if<MapiSettings>(&parsed)) {
    if (options.slow_ms) settings->slow_ms = *options.slow_ms;
    if (options.modal_ms) settings->modal_ms = options.modal_ms;
    settings->deaf |= options.deaf;
    settings->die |= options.die;
  }
  return parsed;
}

bool Agrees(const std::string& question) {
  TheTerminal().Out(question + " [y/N]\n");
  const auto answer = TheTerminal().ReadLine("");
  return answer && (*answer == "y" || *answer == "Y" || *answer == "yes");
}

}  // namespace

int ServeMails(const Options& options) {
  const std::string home = MapiHome(options.home);
  const auto settings = SettingsOf(home, options);
  if (const auto* wrong = std::get_if<std::string>(&settings)) return Fail("settings.txt, " + *wrong);
  return RunMapiServer(home, std::get<MapiSettings>(settings), options.window, Complain);
}

int StopServing() {
  if (const auto reason = StopMapiServer()) return Fail(*reason);
  TheTerminal().Out("The serving host has ended.\n");
  return kFine;
}

int RegisterAsMailClient(const Options& options) {
  const Consent consent = options.yes ? Consent([](const std::string&) { return true; }) : Consent(Agrees);
  const auto reason = options.register_mapi ? RegisterMapi(consent) : UnregisterMapi();
  if (reason) return Fail(*reason);
  TheTerminal().Out(options.register_mapi ? "Wrenfold is the system's mail client now.\n"
                                          : "Wrenfold is no longer registered.\n");
  return kFine;
}

}  // namespace wrenfold
