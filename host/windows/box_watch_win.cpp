#include "host/windows/box_watch_win.h"

#include <cwchar>
#include <iterator>
#include <string>
#include <utility>

#include "host/charset/charsets.h"
#include "host/terminal/own_code_win.h"

namespace wrenfold {
namespace {

constexpr UINT kTickMs = 20;
constexpr ULONGLONG kWaitDialogMs = 10000;  // that a dialog which ends by itself stands untold
constexpr ULONGLONG kStaysMs = 2000;        // behind a press that did not end it
constexpr LONG_PTR kTypeMask = 0xF;         // of the styles of buttons; of statics 0x1F
constexpr LONG_PTR kStaticTypeMask = 0x1F;

BoxWatch* g_watch = nullptr;

bool IsOfClass(HWND window, const wchar_t* name) {
  wchar_t found[32];
  return GetClassNameW(window, found, static_cast<int>(std::size(found))) > 0 && _wcsicmp(found, name) == 0;
}

std::string TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return WideToUtf8({reinterpret_cast<const char16_t*>(text.data()), text.size()});
}

// Without the mark of its key: "&Yes", "はい(&Y)".
std::string LabelOf(HWND button) {
  std::string label = TextOf(button);
  const std::size_t behind = label.find("(&");
  if (behind != std::string::npos && behind > 0 && label.find(')', behind) == behind + 3)
    label.erase(behind, 4);
  for (std::size_t at = 0; (at = label.find('&', at)) != std::string::npos; ++at) label.erase(at, 1);
  return label;
}

LONG_PTR StyleOf(HWND window) { return GetWindowLongPtrW(window, GWL_STYLE); }

bool IsPushButton(HWND window) {
  const LONG_PTR type = StyleOf(window) & kTypeMask;
  return IsOfClass(window, L"Button") && (type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON);
}

// Labels of a dialog, pictures left out.
BOOL CALLBACK AddLabel(HWND control, LPARAM to) {
  const LONG_PTR type = StyleOf(control) & kStaticTypeMask;
  const bool is_text = IsOfClass(control, L"Static") && type != SS_ICON && type != SS_BITMAP;
  const std::string label = is_text && IsWindowVisible(control) ? TextOf(control) : "";
  auto& text = *reinterpret_cast<std::string*>(to);
  if (!label.empty()) text += (text.empty() ? "" : " ") + label;
  return TRUE;
}

bool CanBePressed(HWND button) { return IsWindowEnabled(button) && IsWindowVisible(button); }

// The one that Enter presses, which has the style; else the one that the dialog names. Null when it has
// none that can be pressed.
HWND DefaultButton(HWND box) {
  HWND button = nullptr;
  while ((button = FindWindowExW(box, button, L"Button", nullptr)) != nullptr) {
    if ((StyleOf(button) & kTypeMask) == BS_DEFPUSHBUTTON && CanBePressed(button)) return button;
  }
  const auto answer = static_cast<DWORD>(SendMessageW(box, DM_GETDEFID, 0, 0));
  button = HIWORD(answer) == DC_HASDEFID ? GetDlgItem(box, LOWORD(answer)) : nullptr;
  return button != nullptr && CanBePressed(button) ? button : nullptr;
}

ShownBox Described(HWND box) {
  ShownBox shown{TextOf(box), "", ""};
  EnumChildWindows(box, AddLabel, reinterpret_cast<LPARAM>(&shown.text));
  if (const HWND button = DefaultButton(box)) shown.button = LabelOf(button);
  return shown;
}

void Close(HWND box) {
  PostMessageW(box, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(box, IDCANCEL)));
}

}  // namespace

BoxWatch::BoxWatch(bool press, HMODULE library, Owner owner)
    : press_(press),
      library_(library),
      owner_(std::move(owner)),
      hook_(SetWindowsHookExW(WH_CBT, OnHook, nullptr, GetCurrentThreadId())) {
  g_watch = this;
}

BoxWatch::~BoxWatch() {
  if (hook_ != nullptr) UnhookWindowsHookEx(hook_);
  if (timer_ != 0) KillTimer(nullptr, timer_);
  g_watch = nullptr;
}

LRESULT CALLBACK BoxWatch::OnHook(int code, WPARAM window, LPARAM more) {
  if (g_watch != nullptr && code == HCBT_ACTIVATE) g_watch->Activated(reinterpret_cast<HWND>(window));
  if (g_watch != nullptr && code == HCBT_DESTROYWND) g_watch->Destroyed(reinterpret_cast<HWND>(window));
  return CallNextHookEx(nullptr, code, window, more);
}

// Its text may not be complete yet: it is looked at when the box handles messages.
void BoxWatch::Activated(HWND window) {
  constexpr wchar_t kDialogClass[] = L"#32770";
  if (!IsOfClass(window, kDialogClass)) return;
  for (const Box& box : boxes_) {
    if (box.window == window) return;
  }
  const ULONGLONG now = GetTickCount64();
  boxes_.push_back({window, now, now + owner_.patience()});
  if (timer_ == 0) timer_ = SetTimer(nullptr, 0, kTickMs, OnTick);
}

// Another window may get its handle.
void BoxWatch::Destroyed(HWND window) {
  for (Box& box : boxes_) {
    if (box.window == window) box.window = nullptr;
  }
}

void CALLBACK BoxWatch::OnTick(HWND, UINT, UINT_PTR, DWORD) {
  const OwnCode own_code;
  if (g_watch != nullptr) g_watch->Tick();
}

void BoxWatch::Tick() {
  std::erase_if(boxes_, [this](Box& box) { return Serve(box); });
  if (!boxes_.empty() || timer_ == 0) return;
  KillTimer(nullptr, timer_);
  timer_ = 0;
}

bool BoxWatch::Serve(Box& box) {
  if (!IsWindow(box.window)) return true;
  const ULONGLONG now = GetTickCount64();
  // Disabled: another box stands above it.
  if (now < box.due || !IsWindowVisible(box.window) || !IsWindowEnabled(box.window)) return false;
  if (box.close_at != 0) {
    if (now < box.close_at) return false;
    owner_.tell(Described(box.window), BoxFate::kClosed);
    Close(box.window);
    box.close_at = now + kStaysMs;
    return false;
  }
  const bool left_alone = IsWaitDialog(box.window);
  if (box.told || (left_alone && now < box.since + kWaitDialogMs)) return false;
  box.told = true;
  const ShownBox shown = Described(box.window);
  if (left_alone) return owner_.tell(shown, BoxFate::kStands), false;
  if (!press_) return owner_.tell(shown, BoxFate::kWaits), false;
  const HWND button = DefaultButton(box.window);
  owner_.tell(shown, button != nullptr ? BoxFate::kPressed : BoxFate::kClosed);
  box.close_at = now + kStaysMs;
  if (button == nullptr) return Close(box.window), false;
  PostMessageW(box.window, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), BN_CLICKED),
               reinterpret_cast<LPARAM>(button));
  return false;
}

// A dialog template of the library; a message box is the system's own, whichever buttons it has.
bool BoxWatch::IsWaitDialog(HWND box) const {
  if (GetWindowLongPtrW(box, GWLP_HINSTANCE) != reinterpret_cast<LONG_PTR>(library_)) return false;
  HWND button = nullptr;
  int others = 0;
  while ((button = FindWindowExW(box, button, L"Button", nullptr)) != nullptr)
    others += IsPushButton(button) && GetDlgCtrlID(button) != IDCANCEL ? 1 : 0;
  return others == 0;
}

}  // namespace wrenfold
