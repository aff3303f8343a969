#include "tools/kit/console_win.h"

#include <windows.h>

#include <string_view>

#include "tools/kit/process_win.h"
#include "tools/kit/text_win.h"

namespace kit {
namespace {

constexpr std::size_t kLineWidth = 78;
constexpr DWORD kClosePatienceMs = 4500;  // Windows ends the process after five seconds

HANDLE g_stop = nullptr;
HANDLE g_done = nullptr;

void Put(DWORD which, const std::string& text) {
  const HANDLE out = GetStdHandle(which);
  DWORD mode = 0, written = 0;
  if (GetConsoleMode(out, &mode)) {
    const std::wstring wide = Wide(text);
    WriteConsoleW(out, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
  } else {
    WriteFile(out, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  }
}

bool IsConsole() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != FALSE;
}

BOOL WINAPI Stop(DWORD event) {
  SetEvent(g_stop);
  if (event == CTRL_CLOSE_EVENT) WaitForSingleObject(g_done, kClosePatienceMs);
  return TRUE;
}

}  // namespace

void Say(const std::string& line) { Put(STD_OUTPUT_HANDLE, line + "\r\n"); }
void Complain(const std::string& line) { Put(STD_ERROR_HANDLE, "kit: " + line + "\r\n"); }

void ShowProgress(const std::string& line) {
  if (!IsConsole()) return;
  std::string shown = line.substr(0, kLineWidth);
  shown.resize(kLineWidth, ' ');
  Put(STD_OUTPUT_HANDLE, "\r" + shown);
}

void ClearProgress() {
  if (IsConsole()) Put(STD_OUTPUT_HANDLE, "\r" + std::string(kLineWidth, ' ') + "\r");
}

void TakeCtrlC() {
  g_stop = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  g_done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  SetStopEvent(g_stop);
  // Whoever started the kit may have it ignored.
  SetConsoleCtrlHandler(nullptr, FALSE);
  SetConsoleCtrlHandler(&Stop, TRUE);
}

bool StopIsWanted() { return WaitForSingleObject(g_stop, 0) == WAIT_OBJECT_0; }

void TellDone() { SetEvent(g_done); }

}  // namespace kit
