// The windows through which the library finds the host: a frame, and an outer view that counts while a mail
// is open in it. Both stay hidden; the small host's face is the terminal.
#pragma once

#include <windows.h>

#include "request_server_win.h"

namespace wrenfold {

class Windows {
 public:
  explicit Windows(RequestServer& server);
  ~Windows();
  Windows(const Windows&) = delete;
  Windows& operator=(const Windows&) = delete;

  bool IsComplete() const { return frame_ != nullptr && view_ != nullptr; }
  HWND frame() const { return frame_; }

  // Opens the root mail in the outer view: from then on that window is the nearer one for the library.
  static void OpenView();

  // Handles what waits in the message queue; false once the host is asked to end.
  static bool Pump();

 private:
  HWND frame_ = nullptr;
  HWND view_ = nullptr;
};

}  // namespace wrenfold
