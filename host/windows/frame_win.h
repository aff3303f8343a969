// The windows through which the library finds the host: a frame, and an outer view that counts while a mail
// is open in it. Both stay hidden; the small host's face is the terminal.
#pragma once

#include <windows.h>

#include <string>

#include "host/requests/request_server_win.h"

namespace wrenfold {

// Why a macro ends when a message closes the frame.
inline constexpr const char* kFrameClosed = "stopped: the main window was closed";

class Windows {
 public:
  explicit Windows(RequestServer& server);
  ~Windows();
  Windows(const Windows&) = delete;
  Windows& operator=(const Windows&) = delete;

  bool IsComplete() const { return frame_ != nullptr && view_ != nullptr; }
  HWND frame() const { return frame_; }

  // The frame, the outer view, and the window that the request at hand came to; for services.
  static HWND Frame();
  static HWND View();
  static HWND Receiver();

  // Makes `window` act for the host's windows while this object lives: macros see themselves there.
  class Acting {
   public:
    explicit Acting(HWND window);
    ~Acting();
    Acting(const Acting&) = delete;
    Acting& operator=(const Acting&) = delete;

   private:
    HWND window_;
    HWND acting_before_;
    HWND above_;
  };

  // A window with search results, behind the others: a frame that closes on Cancel. False when none can
  // be made.
  static bool OpenGrepWindow();
  // The one opened last, or null.
  static HWND GrepWindow();
  // A search lasts until messages have been handled.
  static void BeginSearch();
  static void EndSearch();
  static bool IsSearching();

  // Opens the root mail in the outer view: from then on that window is the nearer one for the library.
  static void OpenView();

  // A hidden window that answers like the frame: at the top level behind all others, or in `parent`; null
  // when none can be made. `class_name` is a constant.
  static HWND MakeWindow(const wchar_t* class_name, const std::wstring& title, HWND parent);

  // The frame's menu bar.
  static HMENU Menu();

  // Handles what waits in the message queue; false once the host is asked to end.
  static bool Pump();

 private:
  HWND frame_ = nullptr;
  HWND view_ = nullptr;
};

}  // namespace wrenfold
