#include "src/desktop/main_window_win.h"

#include "src/bridge/host_protocol.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/top_level_walk_win.h"

namespace wfinfo {
namespace {

constexpr int kCodeGrepWindow = 129;
constexpr int kWhichWindow = 0;  // sub-command: its handle

}  // namespace

HWND ActingWindow() {
  return FindHostWindow(SearchMode::kFrameTarget, false, static_cast<unsigned>(kCodeMainWindowTest));
}

bool ActsInside(HWND window) {
  const HWND acting = ActingWindow();
  return acting != nullptr && (acting == window || GetAncestor(acting, GA_ROOT) == window);
}

std::optional<HWND> ToldGrepWindow() {
  Slot block[] = {kWhichWindow};
  const std::optional<Slot> answer = SendHostRequestUnlessRefused(kCodeGrepWindow, block);
  if (!answer) return std::nullopt;
  return FromSlot<HWND>(*answer);
}

HWND MainFrame() {
  if (const std::optional<HWND> grep = ToldGrepWindow()) return FirstOwnFrame(*grep);
  // The main window lives as long as the host, so a frame without others beside it is no grep window.
  const HWND frame = FirstOwnFrame(nullptr);
  return frame != nullptr && FirstOwnFrame(frame) == nullptr ? frame : nullptr;
}

HWND FirstOwnFrame(HWND except) {
  HWND own = nullptr;
  const auto note = [&](HWND frame) {
    DWORD process = 0;
    GetWindowThreadProcessId(frame, &process);
    if (process == GetCurrentProcessId() && frame != except) own = frame;
    return own != nullptr;
  };
  WalkFrames(note, [] {});
  return own;
}

}  // namespace wfinfo
