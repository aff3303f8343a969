// The auto-push timer: presses a button of a dialog that is about to appear on the thread that set it.
//
//   stopped -> waiting for a new dialog -> holding the dialog found -> stopped, after one press or a give-up
//   stopped -> watching a window: each of its popups is pressed, until stopped
//
// One timer for the process. It has no window, so it has its turns while the setting thread pumps messages.
#pragma once

#include <windows.h>

#include <cstdint>

namespace wfinfo {

// Presses `button` (0: the default one) of the next new dialog of this thread once it has shown for
// `delay_ms`. Gives up when none appears within the delay, or within 500 ms if that is longer. False when the
// system has no timer to give.
bool PushNextDialog(std::uint32_t delay_ms, std::uint32_t button);

// Presses `button` of every popup that `window` shows.
bool PushEveryPopup(HWND window, std::uint32_t button);

void StopAutoPush();
// Stops the timer only when the calling thread has set it.
void StopOwnAutoPush();

// When a thread ends, under the lock of the system's loader: its timers have ended with it.
void ForgetTimersOfThread();

// For the detach of the process: stops the timer, and allocates and frees nothing.
void KillAutoPushTimer();

}  // namespace wfinfo
