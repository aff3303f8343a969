// wrenfold.exe: from the command line to one of its sessions.
#include <string>
#include <variant>
#include <vector>

#include "host/base/version.h"
#include "host/charset/charsets.h"
#include "host/library/library_win.h"
#include "host/session/macro_session_win.h"
#include "host/session/mapi_front_win.h"
#include "host/session/options.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

int PrintVersion() {
  const auto loaded = Library::Load();
  TheTerminal().Out(std::string("wrenfold ") + kHostVersion + "\n");
  if (const auto* reason = std::get_if<std::string>(&loaded)) return Fail(*reason);
  TheTerminal().Out("WFINFO.dll interface " + std::to_string(std::get<Library>(loaded).interface_version()) +
                    "\n");
  return kFine;
}

int Run(const std::vector<std::string>& arguments) {
  const auto parsed = ParseCommandLine(arguments);
  if (const auto* wrong = std::get_if<UsageError>(&parsed)) {
    return Fail(wrong->text + "\n" + std::string(kUsage), kWrongUsage);
  }
  const auto& options = std::get<Options>(parsed);
  if (options.help) return TheTerminal().Out(kUsage), kFine;
  if (options.version) return PrintVersion();
  if (options.register_mapi || options.unregister_mapi) return RegisterAsMailClient(options);
  if (options.serve) return ServeMails(options);
  return RunMacroSession(options);
}

}  // namespace
}  // namespace wrenfold

int wmain(int count, wchar_t** arguments) {
  std::vector<std::string> utf8;
  for (int i = 1; i < count; ++i) {
    utf8.push_back(wrenfold::WideToUtf8(reinterpret_cast<const char16_t*>(arguments[i])));
  }
  return wrenfold::Run(utf8);
}
