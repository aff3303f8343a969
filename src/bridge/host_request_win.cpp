#include "src/bridge/host_request_win.h"

#include "src/bridge/export_call_win.h"
#include "src/bridge/host_protocol.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/results_win.h"

namespace wfinfo {
namespace {

Slot SendTo(HWND window, int code, Slot* block) {
  if (window == nullptr) return 0;
  const HostTurn turn;
  return SendMessageA(window, kHostRequest, static_cast<WPARAM>(code), reinterpret_cast<LPARAM>(block));
}

const char* TextOf(Slot answer) {
  if (answer == 0) return kNoText;
  g_hostText = FromSlot<const char*>(answer);
  return g_hostText;
}

}  // namespace

Slot SendHostRequest(int code, Slot* block) {
  return SendTo(FindHostWindow(SearchMode::kFrameTarget, false, static_cast<unsigned>(code)), code, block);
}

std::optional<Slot> SendHostRequestUnlessRefused(int code, Slot* block) {
  const HostSearch search = SearchHostWindow(static_cast<unsigned>(code));
  if (search.refused) return std::nullopt;
  return SendTo(search.window, code, block);
}

const char* SendHostRequestStr(int code, Slot* block) { return TextOf(SendHostRequest(code, block)); }

Slot SendViewRequest(int code, Slot* block) {
  return SendTo(FindHostWindow(SearchMode::kOuterViewOnly, false, static_cast<unsigned>(code)), code, block);
}

Slot SendFrameRequest(int code, Slot* block) {
  return SendTo(FindActiveFrame(static_cast<unsigned>(code)), code, block);
}

const char* SendFrameRequestStr(int code, Slot* block) { return TextOf(SendFrameRequest(code, block)); }

Slot SendHostCommand(int command) {
  const HWND window = FindHostWindow(SearchMode::kFrameTarget, false, 0);
  if (window == nullptr) return 0;
  const HostTurn turn;
  return SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

Slot StartHostCommand(int command) {
  Slot block[] = {command};
  return SendFrameRequest(kCodeStartCommand, block);
}

}  // namespace wfinfo
