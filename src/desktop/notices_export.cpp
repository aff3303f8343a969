// The host's notification window and balloon messages: the library checks the texts, the host shows them.
#include <windows.h>

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"

using namespace wfinfo;

namespace {

constexpr int kCodeNotifyWindow = 135;
constexpr int kCodeShowBalloon = 282;
constexpr int kCodeAddBalloon = 317;

}  // namespace

long long ShowNotifyWnd(const char* text1, const char* text2) noexcept {
  // A null first text marks a query: the second is then passed on as it lies.
  if (text1 != nullptr && !(IsText(text1) && IsText(text2))) {
    ReportError({"Invalid ShowNotifyWnd parameter.", "ShowNotifyWndのパラメータがおかしいです。"});
    return 0;
  }
  Slot block[] = {ToSlot(text1), ToSlot(text2)};
  return SendFrameRequest(kCodeNotifyWindow, block);
}

long long GetNotifyWnd() noexcept { return ShowNotifyWnd(nullptr, nullptr); }

long long HideNotifyWnd() noexcept {
  const auto window = FromSlot<HWND>(GetNotifyWnd());
  // Not what is no window: 65535 would press Cancel in every window of every program.
  if (IsWindow(window)) SendMessageA(window, WM_COMMAND, IDCANCEL, 0);
  return 0;
}

long long ShowBalloonMessage(const char* text1, const char* text2) noexcept {
  if (!IsText(text1) || !IsText(text2)) {
    ReportError({"Invalid ShowBalloonMessage parameter.", "ShowBalloonMessageのパラメータがおかしいです。"});
    return 0;
  }
  Slot block[] = {ToSlot(text1), ToSlot(text2)};
  return SendFrameRequest(kCodeShowBalloon, block);
}

long long AddBalloonMessage(const char* text1, const char* text2, const char* text3) noexcept {
  if (!IsText(text1) || !IsText(text2) || !IsTextOrNull(text3)) {
    ReportError({"Invalid AddBalloonMessage parameter.", "AddBalloonMessageのパラメータがおかしいです。"});
    return 0;
  }
  Slot block[] = {ToSlot(text1), ToSlot(text2), ToSlot(text3)};
  return SendFrameRequest(kCodeAddBalloon, block);
}
