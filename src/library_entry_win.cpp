// Library entry: knows who needs to hear of a detach; nothing else does.
#include <windows.h>

#include "src/base/stack_guard_win.h"
#include "src/bridge/export_call_win.h"
#include "src/bridge/module_win.h"
#include "src/desktop/move_hook_win.h"
#include "src/net/http_session_win.h"
#include "src/timers/auto_push_win.h"

extern "C" __attribute__((no_stack_protector)) BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    wfinfo::ArmStackGuard();
    wfinfo::g_hInstance = instance;
    wfinfo::BeginExportCalls();
  }
  if (reason == DLL_THREAD_DETACH) {
    wfinfo::CloseThreadSession();
    wfinfo::ForgetTimersOfThread();
  }
  if (reason == DLL_PROCESS_DETACH) {
    // Neither may be left to call code that is gone.
    wfinfo::KillAutoPushTimer();
    wfinfo::ReleaseMoveHook();
    wfinfo::EndExportCalls();
  }
  return TRUE;
}
