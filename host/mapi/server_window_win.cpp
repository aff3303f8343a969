#include "host/mapi/server_window_win.h"

#include "host/charset/charsets.h"

namespace wrenfold {
namespace {

constexpr int kWidth = 480, kHeight = 200, kMargin = 12;
constexpr DWORD kFixed = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;

std::string Words(const std::string& home) {
  if (PRIMARYLANGID(GetUserDefaultUILanguage()) != LANG_JAPANESE) {
    return "Wrenfold serves mails that other programs send and read (Simple MAPI).\n\nHome: " + home +
           "\n\nClose this window to end it.\n\nwrenfold --help, in a console, tells what else it does.";
  }
  return "他のプログラムからのメール(Simple MAPI)を受け付けています。\n\nホーム: " + home +
         "\n\nこのウィンドウを閉じると終了します。\n\nほかの使い方は、コンソールで wrenfold --help "
         "をご覧ください。";
}

void AddWords(HWND frame, const std::string& home) {
  RECT inside;
  GetClientRect(frame, &inside);
  const std::u16string words = Utf8ToWide(Words(home));
  const HWND label =
      CreateWindowExW(0, L"STATIC", reinterpret_cast<const wchar_t*>(words.c_str()),
                      WS_CHILD | WS_VISIBLE | SS_NOPREFIX, kMargin, kMargin, inside.right - 2 * kMargin,
                      inside.bottom - 2 * kMargin, frame, nullptr, nullptr, nullptr);
  SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
}

}  // namespace

void ShowServerWindow(HWND frame, const std::string& home) {
  SetWindowLongPtrA(frame, GWL_STYLE, kFixed);
  // Frames that nobody sees have no background.
  SetClassLongPtrA(frame, GCLP_HBRBACKGROUND, COLOR_BTNFACE + 1);
  SetWindowPos(frame, nullptr, 0, 0, kWidth, kHeight, SWP_NOMOVE | SWP_NOZORDER | SWP_FRAMECHANGED);
  AddWords(frame, home);
  ShowWindow(frame, SW_SHOWNORMAL);
  UpdateWindow(frame);
  DWORD process = 0;
  if (GetConsoleProcessList(&process, 1) == 1) FreeConsole();
}

}  // namespace wrenfold
