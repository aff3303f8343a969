#include "src/mapi/session_win.h"

#include <windows.h>

#include "src/bridge/report_win.h"
#include "src/mapi/host_launch_win.h"
#include "src/mapi/mapi_log_win.h"
#include "src/mapi/read_mail_win.h"

namespace wfinfo::mapi {
namespace {

constexpr unsigned kForceDownloadFlag = 0x1000;
constexpr WPARAM kReceiveAllCommand = 40143;

// Whether LogOn had to start the host, which LogOff then closes.
bool g_startedByLogon = false;

}  // namespace

unsigned LogOn(unsigned flags, void* session) {
  g_startedByLogon = false;
  HWND frame = FindHostFrame();
  if (frame == nullptr) {
    frame = ExecWrenfold();
    if (frame == nullptr) return kFailure;
    g_startedByLogon = true;
  }
  if (IsWritable(session, sizeof(ULONG_PTR))) {
    *static_cast<ULONG_PTR*>(session) = reinterpret_cast<ULONG_PTR>(frame);
  }
  if ((flags & kForceDownloadFlag) != 0) {
    Log("MapiLogon: receive all");
    SendMessageA(frame, WM_COMMAND, kReceiveAllCommand, 0);
    Log("MapiLogon: receive all done");
  }
  Log("MapiLogon ret");
  return kSuccess;
}

unsigned LogOff() {
  if (!g_startedByLogon) return kSuccess;
  const HWND frame = FindHostFrame();
  if (frame != nullptr && !HasPopup(frame)) PostMessageA(frame, WM_CLOSE, 0, 0);
  return kSuccess;
}

}  // namespace wfinfo::mapi
