// The host as an application: its versions, its settings, its menu.
#include "src/bridge/debug_log_win.h"
#include "src/bridge/host_request_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/frame_menu_win.h"

using namespace wfinfo;

namespace {

// Where the diagnostic lines of this file were written, as the debug log tells.
constexpr unsigned kLogEnvChangedCalled = 3349;
constexpr unsigned kLogEnvChangedReturn = 3351;

constexpr int kRestartCommand = 40443;
constexpr int kRestartCommandFlagged = 40444;

}  // namespace

long long EnvChanged() noexcept {
  WriteDebugLog("wfinfo.dll: EnvChagned called", kLogEnvChangedCalled);  // the log's own spelling
  const Slot answer = SendFrameRequest(70);
  WriteDebugLog("wfinfo.dll: EnvChanged return", kLogEnvChangedReturn);
  return answer;
}

long long RestartTamarinMail(int flag) noexcept {
  return SendHostCommand(flag != 0 ? kRestartCommandFlagged : kRestartCommand);
}

long long TamarinMailVersion() noexcept { return WrenfoldVersion(); }
long long WFInfoTamarinMailVersion() noexcept { return IsWrenfold() != 0 ? WrenfoldVersion() : 0; }
long long WFInfoTamarinMailVersionBeta() noexcept { return IsWrenfold() != 0 ? TamarinMailVersionBeta() : 0; }

long long IsWrenfoldMacroExecuting() noexcept { return IsTamarinMacroExecuting(); }
long long IsTamarinMailMacroExecuting() noexcept { return IsTamarinMacroExecuting(); }

int GetCurrentMenuCheckState(int command) noexcept {
  return FrameMenuItem(static_cast<UINT>(command)).IsChecked() ? 1 : 0;
}
