// wrenfold.exe: from the command line to one of its sessions.
#include <filesystem>
#include <string>
#include <system_error>
#include <variant>
#include <vector>

#include "host/base/paths.h"
#include "host/base/version.h"
#include "host/charset/charsets.h"
#include "host/library/library_win.h"
#include "host/session/macro_session_win.h"
#include "host/session/mapi_front_win.h"
#include "host/session/options.h"
#include "host/session/start_manner_win.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

bool IsFolder(const std::string& name) {
  std::error_code error;
  return std::filesystem::is_directory(PathFromUtf8(name), error);
}

int PrintVersion() {
  const auto loaded = Library::Load();
  TheTerminal().Out(std::string("wrenfold ") + kHostVersion + "\n");
  if (const auto* reason = std::get_if<std::string>(&loaded)) return Fail(*reason);
  TheTerminal().Out("WFINFO.dll interface " + std::to_string(std::get<Library>(loaded).interface_version()) +
                    "\n");
  return kFine;
}

int Run(const std::vector<std::string>& arguments, StartManner manner) {
  auto parsed = ParseCommandLine(arguments, IsFolder);
  if (const auto* wrong = std::get_if<UsageError>(&parsed)) {
    return Fail(wrong->text + "; wrenfold --help lists the options", kWrongUsage);
  }
  auto& options = std::get<Options>(parsed);
  options.window |= manner == StartManner::kWindow;
  if (options.help) return TheTerminal().Out(kUsage), kFine;
  if (options.version) return PrintVersion();
  if (options.register_mapi || options.unregister_mapi) return RegisterAsMailClient(options);
  if (options.stop) return StopServing();
  if (options.serve) return ServeMails(options);
  return RunMacroSession(options);
}

// A console that goes with this process keeps what it says until somebody has read it.
int RunToItsEnd(const std::vector<std::string>& arguments) {
  const StartManner manner = OwnStartManner(arguments);
  int code = Run(arguments, manner);
  if (const auto reason = TheTerminal().WhyOutIsLost(); reason && code == kFine) code = Fail(*reason);
  if (manner == StartManner::kStayOpen || (manner == StartManner::kWindow && code != kFine))
    TheTerminal().WaitForKey("\nPress a key to close this window. ");
  return code;
}

}  // namespace
}  // namespace wrenfold

int wmain(int count, wchar_t** arguments) {
  std::vector<std::string> utf8;
  for (int i = 1; i < count; ++i) {
    utf8.push_back(wrenfold::WideToUtf8(reinterpret_cast<const char16_t*>(arguments[i])));
  }
  return wrenfold::RunToItsEnd(utf8);
}
