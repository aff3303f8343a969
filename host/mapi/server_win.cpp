#include "host/mapi/server_win.h"

#include <windows.h>

#include <utility>

#include "host/base/paths.h"
#include "host/base/plain_window_win.h"
#include "host/charset/charsets.h"
#include "host/files/left_files.h"
#include "host/files/own_folder_win.h"
#include "host/mapi/server_window_win.h"
#include "host/mapi/service_win.h"
#include "host/post/outbox_folder.h"
#include "host/terminal/failure_win.h"
#include "src/base/unique_win.h"
#include "src/bridge/host_protocol.h"

namespace wrenfold {
namespace {

constexpr DWORD kPredecessorWaitMs = 9000;  // less than callers wait for a frame
constexpr DWORD kPollMs = 100;
constexpr UINT kShowBox = WM_APP + 1;
constexpr UINT kShowAlert = WM_APP + 2;
constexpr UINT_PTR kBoxTimer = 1;
constexpr DWORD kStopWaitMs = 10000;
constexpr char kServes[] = "WrenfoldServes";  // property of a server's frame: one that runs macros has none

MapiService* g_service = nullptr;
void (*g_complain)(const std::string& line) = nullptr;
HWND g_frame = nullptr;
std::string g_alerts;  // what the next box says, a line each
unsigned g_modalMs = 0;

// Programs that find no frame at the same time start a host each; one of them becomes the server. A
// predecessor that is just going is waited for, so that its successor's callers are not left alone.
wfinfo::UniqueHandle BecomeServer() {
  wfinfo::UniqueHandle mutex(CreateMutexA(nullptr, FALSE, "Wrenfold_MapiServer"));
  const DWORD start = GetTickCount();
  while (mutex && WaitForSingleObject(mutex.get(), kPollMs) == WAIT_TIMEOUT) {
    const bool other_serves = FindWindowA(wfinfo::kFrameClass, nullptr) != nullptr;
    if (other_serves || GetTickCount() - start >= kPredecessorWaitMs) mutex.reset();
  }
  return mutex;
}

// A box in front of the frame, as when the host asks its user something.
void ShowBox(HWND frame) {
  if (g_modalMs > 0) SetTimer(frame, kBoxTimer, g_modalMs, nullptr);
  MessageBoxA(frame, "The host waits for its user.", "Wrenfold", MB_OK);
}

void CloseBox(HWND frame) {
  KillTimer(frame, kBoxTimer);
  const HWND popup = GetLastActivePopup(frame);
  if (popup != frame) PostMessageA(popup, WM_COMMAND, IDOK, 0);
}

// A host that another program started has no console in sight: its user is told by a box, once the caller has
// gone on.
void Alert(const std::string& line) {
  g_complain(line);
  if (g_alerts.empty()) PostMessageA(g_frame, kShowAlert, 0, 0);
  g_alerts += line + "\n";
}

void ShowAlert(HWND frame) {
  const std::string text = "A mail of another program is lost:\n\n" + std::exchange(g_alerts, {}) +
                           "\nSee that the outbox can be written to, then send the mail again.";
  const std::u16string wide = Utf8ToWide(text);
  MessageBoxW(frame, reinterpret_cast<const wchar_t*>(wide.c_str()), L"Wrenfold",
              MB_OK | MB_ICONWARNING | MB_SETFOREGROUND);
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (g_service != nullptr) {
    if (const auto answer = g_service->Handle(message, wparam, lparam)) return *answer;
  }
  if (message == kShowBox) return ShowBox(window), 0;
  if (message == kShowAlert) return ShowAlert(window), 0;
  if (message == WM_TIMER && wparam == kBoxTimer) return CloseBox(window), 0;
  if (message == WM_DESTROY) return RemovePropA(window, kServes), PostQuitMessage(0), 0;
  return DefWindowProcA(window, message, wparam, lparam);
}

HWND CreateFrame() {
  const HWND frame =
      MakePlainWindow(wfinfo::kFrameClass, Procedure, "Wrenfold", WS_OVERLAPPEDWINDOW, nullptr);
  if (frame != nullptr) SetPropA(frame, kServes, reinterpret_cast<HANDLE>(1));
  return frame;
}

HWND FindServer() {
  HWND frame = nullptr;
  while ((frame = FindWindowExA(nullptr, frame, wfinfo::kFrameClass, nullptr)) != nullptr) {
    if (GetPropA(frame, kServes) != nullptr) return frame;
  }
  return nullptr;
}

}  // namespace

std::string MapiHome(const std::string& given) {
  if (!given.empty()) return given;
  std::wstring path(32768, L'\0');
  const auto room = static_cast<DWORD>(path.size());
  const DWORD length = GetEnvironmentVariableW(L"WRENFOLD_HOME", path.data(), room);
  if (length > 0 && length < room) {
    path.resize(length);
  } else {
    path = OwnFolder();
  }
  return WideToUtf8(Utf16(path));
}

int RunMapiServer(const std::string& home, const MapiSettings& settings, bool shows_window,
                  void (*complain)(const std::string& line)) {
  const wfinfo::UniqueHandle server = BecomeServer();
  if (!server && shows_window)
    return complain("a host serves on this desktop already; wrenfold --stop ends it"), kFailed;
  if (!server) return kFine;
  MapiService service(PathFromUtf8(home), settings, complain, Alert);
  g_service = &service;
  g_complain = complain;
  const HWND frame = g_frame = CreateFrame();
  if (frame == nullptr) return complain("cannot create the host's window"), kFailed;
  complain("serving Simple MAPI; home is " + home);
  if (shows_window) ShowServerWindow(frame, home);
  const std::string left = ToldAsLeft(UnfinishedFilesOf(PathFromUtf8(home) / "outbox"));
  if (!left.empty()) complain(left);
  while (settings.deaf) Sleep(kPollMs);
  if (settings.modal_ms) {
    g_modalMs = *settings.modal_ms;
    PostMessageA(frame, kShowBox, 0, 0);
  }
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  g_service = nullptr;
  ReleaseMutex(server.get());
  return kFine;
}

std::optional<std::string> StopMapiServer() {
  const HWND frame = FindServer();
  if (frame == nullptr) return "no host serves on this desktop";
  DWORD id = 0;
  GetWindowThreadProcessId(frame, &id);
  const wfinfo::UniqueHandle process(OpenProcess(SYNCHRONIZE, FALSE, id));
  if (!PostMessageA(frame, WM_CLOSE, 0, 0)) {
    return GetLastError() == ERROR_ACCESS_DENIED ? "the serving host runs as an administrator: stop it as one"
                                                 : "the serving host takes no message";
  }
  // A process that cannot be opened is known by its window.
  for (DWORD waited = 0; waited < kStopWaitMs; waited += kPollMs) {
    if (process ? WaitForSingleObject(process.get(), kPollMs) == WAIT_OBJECT_0 : !IsWindow(frame))
      return std::nullopt;
    if (!process) Sleep(kPollMs);
  }
  return "the serving host (process " + std::to_string(id) + ") does not end";
}

}  // namespace wrenfold
