// The window and process functions for macros: each row against the bare system call, and bad handles.
#include <gtest/gtest.h>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"
#include "tests/support/temp_folder_win.h"
#include "tests/support/test_dialog_win.h"

namespace wfinfo_test {
namespace {

// U+AC00 (Hangul, not in code page 932) as host text.
constexpr char kHangulEscape[] = "\x1A\x80\xAC\x8E";
constexpr char kInvalidBoxEnglish[] = "Invalid Bypass_MessageBox parameter.";

const std::vector<HWND>& BadHandles() {
  static const std::vector<HWND> handles = {nullptr, reinterpret_cast<HWND>(INT_PTR{7}),
                                            reinterpret_cast<HWND>(INT_PTR{0x12345678}),
                                            reinterpret_cast<HWND>(INT_PTR{-3})};
  return handles;
}

HWND TitledWindow(ScriptedHost& host, const wchar_t* title) {
  const HWND window = host.OpenWindow("TitledWindow");
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&DefWindowProcW));
  SetWindowTextW(window, title);
  return window;
}

TEST(BypassFindWindow, NullsFindTheFirstWindow) {
  ScriptedHost host;
  EXPECT_NE(Bypass_FindWindow(nullptr, nullptr), nullptr);
  EXPECT_EQ(Bypass_FindWindow(nullptr, nullptr), FindWindowW(nullptr, nullptr));
}

TEST(BypassFindWindow, ByClassAndByTitle) {
  ScriptedHost host;
  const HWND window = TitledWindow(host, L"\u8868\u793A \uAC00!");
  const std::string title = Sjis(u8"表示 ") + kHangulEscape + "!";
  EXPECT_EQ(Bypass_FindWindow("TitledWindow", nullptr), window);
  EXPECT_EQ(Bypass_FindWindow(nullptr, title.c_str()), window) << "the escape is one character";
  EXPECT_EQ(Bypass_FindWindow("TitledWindow", title.c_str()), window);
  EXPECT_EQ(Bypass_FindWindow("TitledWindow", "another title"), nullptr);
  EXPECT_EQ(Bypass_FindWindow("NoSuchClass", nullptr), nullptr);
}

TEST(BypassFindWindow, TitlesOfEachLengthAreFound) {
  ScriptedHost host;
  // The conversion changes its storage at 127 bytes.
  for (const std::size_t length : {1u, 125u, 126u, 127u, 128u, 500u}) {
    const HWND window = TitledWindow(host, std::wstring(length, L'x').c_str());
    EXPECT_EQ(Bypass_FindWindow("TitledWindow", std::string(length, 'x').c_str()), window) << length;
    DestroyWindow(window);
  }
}

TEST(BypassFindWindow, ANumberForATextIsReported) {
  ScriptedHost host;
  EXPECT_EQ(Bypass_FindWindow(kNumberForText, nullptr), nullptr);
  EXPECT_EQ(Bypass_FindWindow(nullptr, kNumberForText), nullptr);
  EXPECT_EQ(Bypass_FindWindowEx(nullptr, nullptr, kNumberForText, nullptr), nullptr);
  EXPECT_EQ(Bypass_FindWindowEx(nullptr, nullptr, nullptr, kNumberForText), nullptr);
  host.ExpectMessages(std::vector<std::string>(4, kStringMessageEnglish));
  host.SetLanguage(Language::kJapanese);
  EXPECT_EQ(Bypass_FindWindow(kNumberForText, nullptr), nullptr);
  host.ExpectMessages({StringMessageJapanese()});
}

TEST(BypassFindWindow, ExWalksTheChildren) {
  ScriptedHost host;
  const HWND first =
      CreateWindowExA(0, "Button", "a", WS_CHILD, 0, 0, 9, 9, host.frame(), nullptr, nullptr, nullptr);
  const HWND second =
      CreateWindowExA(0, "Button", "b", WS_CHILD, 0, 0, 9, 9, host.frame(), nullptr, nullptr, nullptr);
  EXPECT_EQ(Bypass_FindWindowEx(host.frame(), nullptr, "Button", nullptr), first);
  EXPECT_EQ(Bypass_FindWindowEx(host.frame(), first, "Button", nullptr), second);
  EXPECT_EQ(Bypass_FindWindowEx(host.frame(), second, "Button", nullptr), nullptr);
  EXPECT_EQ(Bypass_FindWindowEx(host.frame(), nullptr, nullptr, "b"), second);
  EXPECT_EQ(Bypass_FindWindowEx(nullptr, nullptr, "WrenfoldFrame", nullptr), host.frame());
}

TEST(BypassGetWindowText, TitlesComeBackAsHostText) {
  ScriptedHost host;
  const struct {
    std::wstring title;
    std::string text;
    const char* why;
  } cases[] = {
      {L"plain", "plain", "ASCII"},
      {L"", "", "no title"},
      {L"\u8868 \uFF76", Sjis(u8"表 ｶ"), "code page 932"},
      {L"a\uAC00b", std::string("a") + kHangulEscape + "b", "outside code page 932"},
      {L"a\x1A", "a\x1A\x9A\x80\x84", "the escape byte itself"},
      {std::wstring(1021, L'x'), std::string(1021, 'x'), "below the limit"},
      {std::wstring(1022, L'x'), std::string(1022, 'x'), "the limit"},
      {std::wstring(1023, L'x'), std::string(1022, 'x'), "cut"},
      {std::wstring(3000, L'\uAC00'),
       [] {
         std::string text;
         for (int i = 0; i < 1022; ++i) text += kHangulEscape;
         return text;
       }(),
       "cut, four bytes each"},
  };
  for (const auto& row : cases) {
    const HWND window = TitledWindow(host, row.title.c_str());
    EXPECT_EQ(Bypass_GetWindowText(window), row.text) << row.why;
    DestroyWindow(window);
  }
  for (const HWND bad : BadHandles()) EXPECT_STREQ(Bypass_GetWindowText(bad), "");
}

std::string BesideTheTests(const char* name) {
  char path[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, path, sizeof path);
  return std::string(path).substr(0, std::string(path).find_last_of('\\') + 1) + name;
}

TEST(BypassShellExecute, ShowCommandZeroOpensNormally) {
  ScriptedHost host;
  const struct {
    int command;
    const char* shown;
  } cases[] = {{0, "1"}, {SW_SHOWNORMAL, "1"}, {SW_SHOWMINNOACTIVE, "7"}};
  for (const auto& row : cases) {
    const TempFolder folder;
    const std::string parameters = "\"" + folder.Path("shown") + "\"";
    const std::string program = BesideTheTests("show_state.exe");
    EXPECT_GT(Bypass_ShellExecute(host.frame(), "open", program.c_str(), parameters.c_str(),
                                  folder.Path("").c_str(), row.command),
              32);
    for (int i = 0; i < 500 && !folder.Has("shown"); ++i) PumpFor(20);
    EXPECT_EQ(folder.Read("shown"), row.shown) << row.command;
  }
}

TEST(BypassShellExecute, WhatCannotBeOpenedIsAFailureWithoutAMessage) {
  ScriptedHost host;
  const TempFolder folder;
  EXPECT_LE(Bypass_ShellExecute(nullptr, nullptr, folder.Path("missing.exe").c_str(), nullptr, nullptr, 0),
            32);
}

TEST(BypassShellExecute, NumbersForTextsAreAFailureWithoutAMessage) {
  ScriptedHost host;
  EXPECT_LE(Bypass_ShellExecute(nullptr, kNumberForText, "cmd.exe", nullptr, nullptr, 0), 32);
  EXPECT_LE(Bypass_ShellExecute(nullptr, nullptr, kNumberForText, nullptr, nullptr, 0), 32);
  EXPECT_LE(Bypass_ShellExecute(nullptr, nullptr, "cmd.exe", kNumberForText, nullptr, 0), 32);
  EXPECT_LE(Bypass_ShellExecute(nullptr, nullptr, "cmd.exe", nullptr, kNumberForText, 0), 32);
}

TEST(BypassMessageBox, ShowsTextAndCaptionAndReturnsTheButton) {
  ScriptedHost host;
  BoxCloser closer(IDNO);
  EXPECT_EQ(Bypass_MessageBox(host.frame(), "a text", "a caption", MB_YESNO), IDNO);
  EXPECT_EQ(Bypass_MessageBox(nullptr, "no caption", nullptr, MB_YESNO), IDNO);
  const auto boxes = closer.boxes();
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes[0].text, "a text");
  EXPECT_EQ(boxes[0].caption, "a caption");
  EXPECT_EQ(boxes[0].owner, host.frame());
  EXPECT_EQ(boxes[1].text, "no caption");
  EXPECT_EQ(boxes[1].owner, nullptr);
}

TEST(BypassMessageBox, BadTextsAreReportedTwice) {
  ScriptedHost host;
  BoxCloser closer;
  EXPECT_EQ(Bypass_MessageBox(nullptr, nullptr, "caption", MB_OK), 0) << "a text is needed";
  EXPECT_EQ(Bypass_MessageBox(nullptr, kNumberForText, nullptr, MB_OK), 0);
  EXPECT_EQ(Bypass_MessageBox(nullptr, "text", kNumberForText, MB_OK), 0);
  host.ExpectMessages({kStringMessageEnglish, kInvalidBoxEnglish, kStringMessageEnglish, kInvalidBoxEnglish,
                       kStringMessageEnglish, kInvalidBoxEnglish});
  host.SetLanguage(Language::kJapanese);
  EXPECT_EQ(Bypass_MessageBox(nullptr, nullptr, nullptr, MB_OK), 0);
  host.ExpectMessages({StringMessageJapanese(), Sjis(u8"Bypass_MessageBoxのパラメータがおかしいです。")});
  EXPECT_TRUE(closer.boxes().empty());
}

TEST(BypassMessageBox, TheWideFormHasDefaults) {
  ScriptedHost host;
  BoxCloser closer(IDOK);
  EXPECT_EQ(Bypass_MessageBoxW(nullptr, nullptr, L"caption"), IDOK);
  EXPECT_EQ(Bypass_MessageBoxW(host.frame(), L"wide", nullptr), IDOK);
  host.SetLanguage(Language::kJapanese);
  EXPECT_EQ(Bypass_MessageBoxW(nullptr, nullptr, L"c"), IDOK);
  const auto boxes = closer.boxes();
  ASSERT_EQ(boxes.size(), 3u);
  EXPECT_EQ(boxes[0].text, "Message");
  EXPECT_EQ(boxes[0].caption, "caption");
  EXPECT_EQ(boxes[0].owner, host.frame()) << "the active window";
  EXPECT_EQ(boxes[1].text, "wide");
  // The window's text is asked for in the system's code page, which may not have these characters.
  if (GetACP() == 932) {
    EXPECT_EQ(boxes[2].text, Sjis(u8"メッセージ"));
  }
  EXPECT_NE(boxes[2].text, "Message");
}

TEST(BypassMessageBox, TheWideFormRefusesWhatIsNoText) {
  ScriptedHost host;
  const auto* const number = reinterpret_cast<const wchar_t*>(kNumberForText);
  EXPECT_EQ(Bypass_MessageBoxW(nullptr, number, L"c"), 0);
  EXPECT_EQ(Bypass_MessageBoxW(nullptr, L"t", number), 0);
  host.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish});
}

TEST(BypassPostMessage, PostsToAnyWindow) {
  ScriptedHost host;
  std::vector<std::pair<WPARAM, LPARAM>> received;
  host.hook = [&](HWND, UINT message, WPARAM wparam, LPARAM lparam, LRESULT*) {
    if (message == WM_APP + 5) received.emplace_back(wparam, lparam);
    return message == WM_APP + 5;
  };
  EXPECT_EQ(Bypass_PostMessage(host.frame(), WM_APP + 5, 0x123456789LL, -1), 1);
  EXPECT_TRUE(received.empty()) << "posted, not sent";
  PumpFor(50);
  ASSERT_EQ(received.size(), 1u);
  EXPECT_EQ(received[0], std::make_pair(WPARAM{0x123456789}, LPARAM{-1}));
  for (const HWND bad : BadHandles()) {
    if (bad == nullptr) continue;  // posts to the thread
    EXPECT_EQ(Bypass_PostMessage(bad, WM_APP, 0, 0), 0);
  }
}

TEST(BypassPostMessage, ACommandToTheOwnThreadIsAnnouncedToTheHost) {
  ScriptedHost host;
  host.Expect(319);
  EXPECT_EQ(Bypass_PostMessage(host.frame(), WM_COMMAND, 40001, 0), 1);
  host.Verify();
  host.ExpectCommand(40001);
  PumpFor(50);
  // Also while a dialog disables the frame.
  const HWND dialog = host.OpenDialog(host.frame(), true);
  host.Expect(319);
  EXPECT_EQ(Bypass_PostMessage(dialog, WM_COMMAND, 40002, 0), 1);
}

TEST(BypassPostMessage, ACommandToAnotherThreadIsNot) {
  ScriptedHost host;
  OnOtherThread([&] { EXPECT_EQ(Bypass_PostMessage(host.frame(), WM_APP, 1, 0), 1); });
  OnOtherThread([&] {
    host.ExpectCommand(40003);
    EXPECT_EQ(Bypass_PostMessage(host.frame(), WM_COMMAND, 40003, 0), 1);
  });
  PumpFor(50);
  EXPECT_EQ(Bypass_PostMessage(reinterpret_cast<void*>(INT_PTR{7}), WM_COMMAND, 1, 0), 0)
      << "nobody's window";
}

TEST(BypassWindow, PositionsAndSizesArePacked) {
  ScriptedHost host;
  const HWND window = host.OpenWindow("PlainWindow");
  const struct {
    int x, y, width, height;
    long long position, size;
  } cases[] = {
      {-8, -8, 300, 200, -458760, 200 * 65536 + 300},
      {0, 0, 1, 1, 0, 65537},
      {100, 200, 640, 480, 200 * 65536 + 100, 480 * 65536 + 640},
      {-1, 5, 10, 20, 5 * 65536 + 65535, 20 * 65536 + 10},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(Bypass_SetWindowPos(window, nullptr, row.x, row.y, row.width, row.height, SWP_NOZORDER), 1);
    EXPECT_EQ(Bypass_GetWindowPos(window), row.position);
    EXPECT_EQ(Bypass_GetWindowSize(window), row.size);
    EXPECT_EQ(Bypass_GetClientSize(window), row.size) << "a popup without borders";
  }
  RECT client{};
  GetClientRect(host.frame(), &client);
  EXPECT_EQ(Bypass_GetClientSize(host.frame()), client.bottom * 65536LL + client.right);
  for (const HWND bad : BadHandles()) {
    EXPECT_EQ(Bypass_GetWindowPos(bad), 0);
    EXPECT_EQ(Bypass_GetWindowSize(bad), 0);
    EXPECT_EQ(Bypass_GetClientSize(bad), 0);
    EXPECT_EQ(Bypass_SetWindowPos(bad, nullptr, 0, 0, 1, 1, 0), 0);
  }
}

TEST(BypassWindow, RelationsValuesAndStates) {
  ScriptedHost host;
  const HWND child = CreateWindowExA(0, "Button", "", WS_CHILD, 0, 0, 9, 9, host.frame(),
                                     reinterpret_cast<HMENU>(33), nullptr, nullptr);
  EXPECT_EQ(Bypass_GetWindow(host.frame(), GW_CHILD), child);
  EXPECT_EQ(Bypass_GetWindow(child, GW_HWNDNEXT), nullptr);
  EXPECT_EQ(Bypass_GetWindowLongPtr(child, GWLP_ID), 33);
  SetWindowLongPtrW(child, GWLP_USERDATA, -5);
  EXPECT_EQ(Bypass_GetWindowLongPtr(child, GWLP_USERDATA), -5);
  EXPECT_EQ(Bypass_GetWindowLongPtr(child, 12345), 0);
  EXPECT_EQ(Bypass_IsWindowVisible(host.frame()), 1);
  EXPECT_EQ(Bypass_IsWindowVisible(child), 0);
  EXPECT_EQ(Bypass_ShowWindow(child, SW_SHOW), 0) << "hidden before";
  EXPECT_EQ(Bypass_ShowWindow(child, SW_HIDE), 1) << "shown before";
  EXPECT_EQ(Bypass_IsWindowEnabled(host.frame()), 1);
  EnableWindow(host.frame(), FALSE);
  EXPECT_EQ(Bypass_IsWindowEnabled(host.frame()), 0);
  EnableWindow(host.frame(), TRUE);
}

TEST(BypassWindow, FocusForegroundAndPopups) {
  ScriptedHost host;
  SetFocus(host.frame());
  EXPECT_EQ(Bypass_GetFocus(), host.frame());
  SetFocus(nullptr);
  EXPECT_EQ(Bypass_GetFocus(), nullptr);
  EXPECT_EQ(Bypass_SetForegroundWindow(host.frame()), SetForegroundWindow(host.frame()));
  EXPECT_EQ(Bypass_GetForegroundWindow(), GetForegroundWindow());
  EXPECT_EQ(Bypass_GetLastActivePopup(host.frame()), host.frame());
  const HWND dialog = host.OpenDialog(host.frame(), false);
  EXPECT_EQ(Bypass_GetLastActivePopup(host.frame()), dialog);
}

TEST(BypassWindow, ProcessesAndThreads) {
  ScriptedHost host;
  EXPECT_EQ(Bypass_GetCurrentProcessId(), GetCurrentProcessId());
  EXPECT_EQ(Bypass_GetCurrentThreadId(), GetCurrentThreadId());
  EXPECT_EQ(Bypass_GetWindowProcessId(host.frame()), GetCurrentProcessId());
  EXPECT_EQ(Bypass_GetWindowThreadId(host.frame()), GetCurrentThreadId());
  const DWORD own = GetCurrentThreadId();
  OnOtherThread([&] {
    EXPECT_EQ(Bypass_GetWindowThreadId(host.frame()), own);
    EXPECT_NE(Bypass_GetCurrentThreadId(), own);
  });
  for (const HWND bad : BadHandles()) {
    EXPECT_EQ(Bypass_GetWindowProcessId(bad), 0);
    EXPECT_EQ(Bypass_GetWindowThreadId(bad), 0);
  }
}

TEST(BypassWindow, InSendMessageTellsOfASendingThread) {
  ScriptedHost host;
  long long during = -1;
  host.hook = [&](HWND, UINT message, WPARAM, LPARAM, LRESULT*) {
    if (message == WM_APP + 6) during = Bypass_InSendMessage();
    return message == WM_APP + 6;
  };
  EXPECT_EQ(Bypass_InSendMessage(), 0);
  SendMessageA(host.frame(), WM_APP + 6, 0, 0);
  EXPECT_EQ(during, 0) << "sent by this thread";
  OnOtherThread([&] { SendMessageA(host.frame(), WM_APP + 6, 0, 0); });
  EXPECT_NE(during, 0);
}

TEST(BypassWindow, BadHandlesGiveTheSystemsAnswer) {
  for (const HWND bad : BadHandles()) {
    EXPECT_EQ(Bypass_GetWindow(bad, GW_OWNER), nullptr);
    EXPECT_EQ(Bypass_GetWindow(bad, 99), nullptr);
    EXPECT_EQ(Bypass_GetWindowLongPtr(bad, GWLP_USERDATA), 0);
    EXPECT_EQ(Bypass_ShowWindow(bad, SW_SHOW), 0);
    EXPECT_EQ(Bypass_IsWindowVisible(bad), 0);
    EXPECT_EQ(Bypass_IsWindowEnabled(bad), 0);
    EXPECT_EQ(Bypass_SetForegroundWindow(bad), 0);
    EXPECT_EQ(Bypass_GetLastActivePopup(bad), GetLastActivePopup(bad));
    EXPECT_EQ(Bypass_FindWindowEx(bad, bad, "Button", nullptr), FindWindowExW(bad, bad, L"Button", nullptr));
  }
}

TEST(BypassShell, StaysWhenAMacroFreesIt) {
  ScriptedHost host;
  ASSERT_EQ(GetModuleHandleA("shell32.dll"), nullptr) << "for this test nobody else may have it";
  void* const library = LoadDll("shell32.dll");
  ASSERT_NE(library, nullptr);
  Bypass_ShellExecute(nullptr, "open", "Z:\\no such file", nullptr, nullptr, 0);
  FreeDll(library);
  EXPECT_NE(GetModuleHandleA("shell32.dll"), nullptr);
  Bypass_ShellExecute(nullptr, "open", "Z:\\no such file", nullptr, nullptr, 0);
}

}  // namespace
}  // namespace wfinfo_test
