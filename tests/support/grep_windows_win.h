// A host whose grep windows the library may close.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/bad_texts.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {

// A host with grep windows, the newest first, and a search that may be running.
class GrepWindows : public testing::Test {
 protected:
  GrepWindows() {
    // Close commands to grep windows arrive as menu commands of a window that is not the frame.
    host.hook = [this](HWND window, UINT message, WPARAM wparam, LPARAM, LRESULT*) {
      if (message != WM_COMMAND || wparam != IDCANCEL) return false;
      ++close_commands_;
      if (window != refusing_) {
        std::erase(windows_, window);
        DestroyWindow(window);
      }
      return true;
    };
    host.Expect(129).Any().Always().Do(
        [this](const Request&) { return windows_.empty() ? 0LL : AsValue(windows_.back()); });
    host.Expect(256).Always().Do([this](const Request&) { return running_ ? 1LL : 0LL; });
  }
  void OpenGrepWindow() {
    windows_.push_back(host.OpenWindow("GrepOfTests"));
    SetActiveWindow(host.frame());
  }

  ScriptedHost host;
  std::vector<HWND> windows_;
  HWND refusing_ = nullptr;
  bool running_ = false;
  int close_commands_ = 0;
};

}  // namespace wfinfo_test
