// Real dialogs, made from a template in memory, that record which of their controls was pressed.
//
//   TestDialog dialog{{IDOK, BS_DEFPUSHBUTTON}, {42}};
//   EXPECT_EQ(dialog.Run(owner), 42);
#pragma once

#include <windows.h>

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace wfinfo_test {

class TestDialog {
 public:
  struct Button {
    WORD id;
    DWORD style = BS_PUSHBUTTON;
    bool is_button = true;  // false: a static text
  };
  struct Command {
    int id;
    HWND control;
    std::uint64_t tick;
  };
  static constexpr INT_PTR kNobodyPressed = 9999;

  TestDialog(std::initializer_list<Button> buttons) : buttons_(buttons) {}
  explicit TestDialog(const std::vector<Button>& buttons) : buttons_(buttons) {}
  ~TestDialog();
  TestDialog(const TestDialog&) = delete;
  TestDialog& operator=(const TestDialog&) = delete;

  // Shows the dialog in a modal loop; the first command ends it. Returns the command's id, or kNobodyPressed
  // when none came for `patience_ms`.
  INT_PTR Run(HWND owner, UINT patience_ms = 6000);
  // Shows the dialog beside the caller; commands are recorded and change nothing.
  void Show(HWND owner);

  HWND window() const { return window_; }
  const std::vector<Command>& commands() const { return commands_; }
  // GetTickCount64 when the dialog began to show.
  std::uint64_t shown_at() const { return shown_at_; }

  // The id that DM_SETDEFID names before the dialog shows; 0: as the template has it.
  int default_id = 0;

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  std::vector<WORD> Template() const;
  void Begin(HWND window);
  void Receive(int id, HWND control);

  std::vector<Button> buttons_;
  std::vector<Command> commands_;
  HWND window_ = nullptr;
  std::uint64_t shown_at_ = 0;
  UINT patience_ms_ = 0;  // 0: modeless
};

// Handles the messages of this thread for so long.
void PumpFor(unsigned milliseconds);

}  // namespace wfinfo_test
