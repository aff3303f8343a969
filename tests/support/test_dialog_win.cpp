#include "tests/support/test_dialog_win.h"

#include <gtest/gtest.h>

namespace wfinfo_test {
namespace {

constexpr UINT_PTR kPatienceTimer = 1;
constexpr WORD kButtonAtom = 0x0080;
constexpr WORD kStaticAtom = 0x0082;

void Append(std::vector<WORD>& words, DWORD value) {
  words.push_back(LOWORD(value));
  words.push_back(HIWORD(value));
}

void Append(std::vector<WORD>& words, std::initializer_list<WORD> values) {
  words.insert(words.end(), values);
}

}  // namespace

std::vector<WORD> TestDialog::Template() const {
  std::vector<WORD> words;
  Append(words, static_cast<DWORD>(WS_POPUP | WS_CAPTION | WS_VISIBLE | WS_SYSMENU));
  Append(words, DWORD{0});
  // Number of controls; x, y, width, height; no menu, the system's class, no title.
  Append(words, {static_cast<WORD>(buttons_.size()), 10, 10, 200, 60, 0, 0, 0});
  WORD x = 5;
  for (const Button& button : buttons_) {
    if (words.size() % 2 != 0) words.push_back(0);
    Append(words, WS_CHILD | WS_VISIBLE | button.style);
    Append(words, DWORD{0});
    Append(words, {x, 20, 20, 14, button.id, 0xFFFF, button.is_button ? kButtonAtom : kStaticAtom, 0, 0});
    x = static_cast<WORD>(x + 25);
  }
  return words;
}

void TestDialog::Begin(HWND window) {
  window_ = window;
  shown_at_ = GetTickCount64();
  if (default_id != 0) {
    SendMessageA(window, DM_SETDEFID, static_cast<WPARAM>(default_id), 0);
    // Naming another default takes the look of one from the button that had it: give each its own again.
    for (const Button& button : buttons_) {
      SetWindowLongPtrA(GetDlgItem(window, button.id), GWL_STYLE,
                        static_cast<LONG_PTR>(WS_CHILD | WS_VISIBLE | button.style));
    }
  }
  if (patience_ms_ != 0) SetTimer(window, kPatienceTimer, patience_ms_, nullptr);
}

void TestDialog::Receive(int id, HWND control) {
  commands_.push_back({id, control, GetTickCount64()});
  if (patience_ms_ != 0) EndDialog(window_, id);
}

INT_PTR CALLBACK TestDialog::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrA(window, DWLP_USER, lparam);
    reinterpret_cast<TestDialog*>(lparam)->Begin(window);
    return FALSE;  // the focus stays where it is: taking it would move the default button
  }
  auto* const dialog = reinterpret_cast<TestDialog*>(GetWindowLongPtrA(window, DWLP_USER));
  if (dialog == nullptr) return FALSE;
  if (message == WM_COMMAND && HIWORD(wparam) == BN_CLICKED) {
    dialog->Receive(LOWORD(wparam), reinterpret_cast<HWND>(lparam));
    return TRUE;
  }
  if (message == WM_TIMER && wparam == kPatienceTimer) {
    EndDialog(window, kNobodyPressed);
    return TRUE;
  }
  return FALSE;
}

INT_PTR TestDialog::Run(HWND owner, UINT patience_ms) {
  patience_ms_ = patience_ms;
  const std::vector<WORD> words = Template();
  const INT_PTR result =
      DialogBoxIndirectParamA(GetModuleHandleA(nullptr), reinterpret_cast<const DLGTEMPLATE*>(words.data()),
                              owner, &TestDialog::Procedure, reinterpret_cast<LPARAM>(this));
  EXPECT_GT(result, 0) << "the dialog could not be made";
  window_ = nullptr;
  return result;
}

void TestDialog::Show(HWND owner) {
  const std::vector<WORD> words = Template();
  CreateDialogIndirectParamA(GetModuleHandleA(nullptr), reinterpret_cast<const DLGTEMPLATE*>(words.data()),
                             owner, &TestDialog::Procedure, reinterpret_cast<LPARAM>(this));
  EXPECT_NE(window_, nullptr) << "the dialog could not be made";
}

TestDialog::~TestDialog() {
  if (window_ != nullptr) DestroyWindow(window_);
}

void PumpFor(unsigned milliseconds) {
  const std::uint64_t end = GetTickCount64() + milliseconds;
  for (std::uint64_t now = GetTickCount64(); now < end; now = GetTickCount64()) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT);
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
  }
}

}  // namespace wfinfo_test
