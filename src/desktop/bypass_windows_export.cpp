// Windows and processes as the system sees them, for macros: one system call each, made in the host's process
// on the caller's thread. The system's answer is returned as it is, structures packed into one number.
#include <windows.h>

#include <cstdint>
#include <cwchar>
#include <initializer_list>

#include "src/bridge/host_request_win.h"
#include "src/bridge/language_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/bridge/wide_text_win.h"
#include "src/catalogue/declarations.h"
#include "src/desktop/shell_binding_win.h"

using namespace wfinfo;

namespace {

constexpr int kCodeCommandPosted = 319;            // the host processes the command that was posted to it
constexpr int kTitleRoom = 1023;                   // units, terminator included
constexpr UINT_PTR kMostWide = UINT_PTR{1} << 45;  // units of a text: more than memory holds

HWND WindowOf(void* handle) { return static_cast<HWND>(handle); }

// Two numbers of 16 bits in one of 32 with its sign, as window messages carry them.
long long Packed(LONG low, LONG high) {
  return static_cast<std::int32_t>((static_cast<std::uint32_t>(low) & 0xFFFF) |
                                   static_cast<std::uint32_t>(high) << 16);
}

RECT FrameOf(void* window) {
  RECT rectangle{};
  GetWindowRect(WindowOf(window), &rectangle);
  return rectangle;
}

// UTF-16 that the system can show: null, or readable up to its end.
bool IsWideTextOrNull(const wchar_t* text) {
  return text == nullptr || (IsText(text) && !IsBadStringPtrW(text, kMostWide));
}

const wchar_t* DefaultMessage() { return g_useEnglish != 0 ? L"Message" : L"メッセージ"; }

}  // namespace

void* Bypass_FindWindow(const char* class_name, const char* window_name) noexcept {
  if (!IsTextOrNull(class_name) || !IsTextOrNull(window_name)) return nullptr;
  const WIDETEXT wide_class(class_name);
  const WIDETEXT title(window_name);
  if (wide_class.Failed() || title.Failed()) return nullptr;
  return FindWindowW(wide_class.Text(), title.Text());
}

void* Bypass_FindWindowEx(void* parent, void* child_after, const char* class_name,
                          const char* window_name) noexcept {
  if (!IsTextOrNull(class_name) || !IsTextOrNull(window_name)) return nullptr;
  const WIDETEXT wide_class(class_name);
  const WIDETEXT title(window_name);
  if (wide_class.Failed() || title.Failed()) return nullptr;
  return FindWindowExW(WindowOf(parent), WindowOf(child_after), wide_class.Text(), title.Text());
}

const char* Bypass_GetWindowText(void* window) noexcept {
  wchar_t title[kTitleRoom + 1] = L"";
  GetWindowTextW(WindowOf(window), title, kTitleRoom);
  WideToResult(title, std::wcslen(title) + 1);
  return g_resultText;
}

long long Bypass_ShellExecute(void* window, const char* operation, const char* file, const char* parameters,
                              const char* directory, int show_command) noexcept {
  // Unreadable texts are not reported, but not touched either.
  for (const char* text : {operation, file, parameters, directory}) {
    if (text != nullptr && !IsReadableText(text)) return 0;
  }
  const ShellExecuteFunction execute = BoundShellExecute();
  const WIDETEXT texts[] = {WIDETEXT(operation), WIDETEXT(file), WIDETEXT(parameters), WIDETEXT(directory)};
  for (const WIDETEXT& text : texts) {
    if (text.Failed()) return 0;
  }
  if (execute == nullptr) return 0;
  return reinterpret_cast<INT_PTR>(execute(WindowOf(window), texts[0].Text(), texts[1].Text(),
                                           texts[2].Text(), texts[3].Text(),
                                           show_command != 0 ? show_command : SW_SHOWNORMAL));
}

long long Bypass_MessageBox(void* owner, const char* text, const char* caption, unsigned type) noexcept {
  if (!IsText(text) || !IsTextOrNull(caption)) {
    ReportError({"Invalid Bypass_MessageBox parameter.", "Bypass_MessageBoxのパラメータがおかしいです。"});
    return 0;
  }
  const WIDETEXT wide_text(text);
  const WIDETEXT wide_caption(caption);
  if (wide_text.Failed() || wide_caption.Failed()) return 0;
  return MessageBoxW(WindowOf(owner), wide_text.Text(), wide_caption.Text(), type);
}

long long Bypass_MessageBoxW(void* owner, const wchar_t* text, const wchar_t* caption) noexcept {
  if (!IsWideTextOrNull(text) || !IsWideTextOrNull(caption)) return 0;
  const HWND parent = owner != nullptr ? WindowOf(owner) : GetActiveWindow();
  return MessageBoxW(parent, text != nullptr ? text : DefaultMessage(), caption, MB_OK);
}

long long Bypass_PostMessage(void* window, unsigned message, long long wparam, long long lparam) noexcept {
  const BOOL posted = PostMessageA(WindowOf(window), message, static_cast<WPARAM>(wparam), lparam);
  if (message == WM_COMMAND && GetWindowThreadProcessId(WindowOf(window), nullptr) == GetCurrentThreadId()) {
    SendHostRequest(kCodeCommandPosted);
  }
  return posted;
}

long long Bypass_SetWindowPos(void* window, void* insert_after, int x, int y, int width, int height,
                              unsigned flags) noexcept {
  return SetWindowPos(WindowOf(window), WindowOf(insert_after), x, y, width, height, flags);
}

long long Bypass_GetClientSize(void* window) noexcept {
  RECT client{};
  GetClientRect(WindowOf(window), &client);
  return Packed(client.right - client.left, client.bottom - client.top);
}

long long Bypass_GetWindowSize(void* window) noexcept {
  const RECT frame = FrameOf(window);
  return Packed(frame.right - frame.left, frame.bottom - frame.top);
}

long long Bypass_GetWindowPos(void* window) noexcept {
  const RECT frame = FrameOf(window);
  return Packed(frame.left, frame.top);
}

void* Bypass_GetWindow(void* window, unsigned command) noexcept {
  return GetWindow(WindowOf(window), command);
}

long long Bypass_GetWindowLongPtr(void* window, int index) noexcept {
  return GetWindowLongPtrW(WindowOf(window), index);
}

long long Bypass_ShowWindow(void* window, int command) noexcept {
  return ShowWindow(WindowOf(window), command);
}

long long Bypass_IsWindowVisible(void* window) noexcept { return IsWindowVisible(WindowOf(window)); }

long long Bypass_IsWindowEnabled(void* window) noexcept { return IsWindowEnabled(WindowOf(window)); }

long long Bypass_SetForegroundWindow(void* window) noexcept { return SetForegroundWindow(WindowOf(window)); }

void* Bypass_GetForegroundWindow() noexcept { return GetForegroundWindow(); }

void* Bypass_GetFocus() noexcept { return GetFocus(); }

void* Bypass_GetLastActivePopup(void* window) noexcept { return GetLastActivePopup(WindowOf(window)); }

long long Bypass_InSendMessage() noexcept { return InSendMessage(); }

long long Bypass_GetCurrentProcessId() noexcept { return GetCurrentProcessId(); }

long long Bypass_GetCurrentThreadId() noexcept { return GetCurrentThreadId(); }

long long Bypass_GetWindowProcessId(void* window) noexcept {
  DWORD process = 0;
  GetWindowThreadProcessId(WindowOf(window), &process);
  return process;
}

long long Bypass_GetWindowThreadId(void* window) noexcept {
  return GetWindowThreadProcessId(WindowOf(window), nullptr);
}
