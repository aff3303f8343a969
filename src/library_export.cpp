// The exports through which the host hands over its language, error callback and services, and the few that
// tell a caller about the bridge itself.
#include <windows.h>

#include <cstddef>

#include "src/bridge/debug_log_win.h"
#include "src/bridge/host_protocol.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"

using wfinfo::HandOverRecord;

void NotifyWrenfoldInfo(const void* info) noexcept {
  if (IsBadReadPtr(info, offsetof(HandOverRecord, message))) return;
  const auto& host = *static_cast<const HandOverRecord*>(info);
  wfinfo::g_useEnglish = static_cast<int>(host.english);
  if (host.size >= sizeof(HandOverRecord) && !IsBadReadPtr(info, sizeof(HandOverRecord))) {
    wfinfo::g_errorCallback = host.message;
  }
}

int GetWFInfoVersion(void* services) noexcept {
  wfinfo::g_hostServices = static_cast<const void* const*>(services);
  return wfinfo::kInterfaceVersion;
}

void* STARTUNIMACRO() noexcept { return nullptr; }

int IsWrenfold() noexcept {
  const HWND frame = wfinfo::FindAnyFrame();
  DWORD process = 0;
  if (frame != nullptr) GetWindowThreadProcessId(frame, &process);
  return process == GetCurrentProcessId() ? 1 : 0;
}

int IsTamarinMail() noexcept { return IsWrenfold(); }

void* GetMessageBoxParent() noexcept { return wfinfo::MessageBoxOwner(); }

int DumpSmall(const char* text) noexcept {
  if (text == nullptr || !wfinfo::IsText(text)) return 0;
  wfinfo::WriteDebugLog(text, wfinfo::kLogGeneral);
  return 1;
}
