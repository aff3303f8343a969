// Keys, and the placing of the next window.
#include <gtest/gtest.h>

#include <array>

#include "tests/support/library.h"
#include "tests/support/private_library_win.h"
#include "tests/support/scripted_host_win.h"
#include "tests/support/test_dialog_win.h"

namespace wfinfo_test {
namespace {

struct KeyMessage {
  UINT message;
  WPARAM key;
  std::uint32_t details;
  bool shift, control, alt;
  bool operator==(const KeyMessage&) const = default;
};

bool Held(int key) { return (GetKeyState(key) & 0x8000) != 0; }

class Keys : public ::testing::Test {
 protected:
  Keys() {
    host.hook = [this](HWND window, UINT message, WPARAM wparam, LPARAM lparam, LRESULT*) {
      if (message < WM_KEYFIRST || message > WM_KEYLAST) return false;
      EXPECT_EQ(window, receiver);
      received.push_back({message, wparam, static_cast<std::uint32_t>(lparam), Held(VK_SHIFT),
                          Held(VK_CONTROL), Held(VK_MENU)});
      return true;
    };
  }
  static std::array<BYTE, 256> State() {
    std::array<BYTE, 256> state{};
    GetKeyboardState(state.data());
    return state;
  }

  ScriptedHost host;
  HWND receiver = host.frame();
  std::vector<KeyMessage> received;
};

TEST_F(Keys, AStrokeIsAPressAndARelease) {
  const std::uint32_t scan_code = MapVirtualKeyA('A', MAPVK_VK_TO_VSC) << 16;
  ASSERT_NE(scan_code, 0u);
  EXPECT_EQ(SimulateKeyStroke2(host.frame(), 'A', 0, 0, 0), 0);
  EXPECT_EQ(received,
            (std::vector<KeyMessage>{{WM_KEYDOWN, 'A', scan_code + 1, false, false, false},
                                     {WM_KEYUP, 'A', scan_code + 0xC0000001, false, false, false}}));
}

TEST_F(Keys, ModifiersAreSeenAndTakenBack) {
  std::array<BYTE, 256> before = State();
  before[VK_SHIFT] = 0x80;
  before[VK_CAPITAL] = 1;
  SetKeyboardState(before.data());
  for (int bits = 0; bits < 8; ++bits) {
    received.clear();
    const bool shift = (bits & 1) != 0, control = (bits & 2) != 0, alt = (bits & 4) != 0;
    EXPECT_EQ(SimulateKeyStroke2(host.frame(), VK_F5, shift ? 7 : 0, control ? -1 : 0, alt), 0);
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[0].message, static_cast<UINT>(alt ? WM_SYSKEYDOWN : WM_KEYDOWN));
    EXPECT_EQ(received[1].message, static_cast<UINT>(alt ? WM_SYSKEYUP : WM_KEYUP));
    EXPECT_EQ(received[0].details & 0x20000000, 0u) << "no context bit";
    for (const KeyMessage& message : received) {
      EXPECT_EQ(message.shift, shift) << bits;
      EXPECT_EQ(message.control, control) << bits;
      EXPECT_EQ(message.alt, alt) << bits;
    }
    EXPECT_EQ(State(), before) << bits;
  }
}

TEST_F(Keys, TheShortFormGoesToTheFocus) {
  receiver = host.OpenWindow("KeyReceiver");
  SetFocus(receiver);
  EXPECT_EQ(SimulateKeyStroke(VK_RETURN, 0, 1, 0), 0);
  ASSERT_EQ(received.size(), 2u);
  EXPECT_TRUE(received[0].control);
  SetFocus(nullptr);
  EXPECT_EQ(SimulateKeyStroke(VK_RETURN, 0, 0, 0), 0);
  EXPECT_EQ(received.size(), 2u) << "nobody has the focus";
}

TEST_F(Keys, BadHandlesAndKeysAreHarmless) {
  const std::array<BYTE, 256> before = State();
  for (const INT_PTR bad : {INT_PTR{0}, INT_PTR{7}, INT_PTR{0x12345678}, INT_PTR{-3}}) {
    EXPECT_EQ(SimulateKeyStroke2(reinterpret_cast<void*>(bad), 'A', 1, 1, 1), 0);
  }
  EXPECT_EQ(State(), before);
  EXPECT_EQ(SimulateKeyStroke2(host.frame(), 0xFFFFFFFF, 0, 0, 0), 0);
  ASSERT_EQ(received.size(), 2u);
  EXPECT_EQ(received[0].key, 0xFFFFFFFFu);
  EXPECT_EQ(received[0].details, 1u) << "no such key has a scan code";
}

TEST_F(Keys, KeysThroughTheInputQueueReachTheFocus) {
  SetForegroundWindow(host.frame());
  SetFocus(host.frame());
  EXPECT_EQ(Bypass_keybd_event('B'), 0);
  PumpFor(300);
  std::vector<KeyMessage> keys;
  for (const KeyMessage& message : received) {
    if (message.message == WM_KEYDOWN || message.message == WM_KEYUP) keys.push_back(message);
  }
  ASSERT_EQ(keys.size(), 2u);
  const std::uint32_t scan_code = MapVirtualKeyA('B', MAPVK_VK_TO_VSC);
  EXPECT_EQ(keys[0].message, static_cast<UINT>(WM_KEYDOWN));
  EXPECT_EQ(keys[1].message, static_cast<UINT>(WM_KEYUP));
  for (const KeyMessage& key : keys) {
    EXPECT_EQ(key.key, WPARAM{'B'});
    EXPECT_EQ(key.details >> 16 & 0xFF, scan_code);
  }
}

TEST_F(Keys, TheRawFormPutsOneEventInTheQueue) {
  SetForegroundWindow(host.frame());
  SetFocus(host.frame());
  LPARAM extra = 0;
  const auto collect = host.hook;
  host.hook = [&](HWND window, UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result) {
    if (message == WM_KEYDOWN) extra = GetMessageExtraInfo();
    return collect(window, message, wparam, lparam, result);
  };
  EXPECT_EQ(Bypass_keybd_event_raw('C' + 0x100, 0x12E, 0, 77), 0) << "8 bits of key and scan code";
  PumpFor(300);
  EXPECT_EQ(Bypass_keybd_event_raw('C', 0x2E, KEYEVENTF_KEYUP, 0), 0);
  PumpFor(300);
  std::vector<UINT> messages;
  for (const KeyMessage& key : received) {
    if (key.message != WM_KEYDOWN && key.message != WM_KEYUP) continue;
    messages.push_back(key.message);
    EXPECT_EQ(key.key, WPARAM{'C'});
    EXPECT_EQ(key.details >> 16 & 0xFF, 0x2Eu);
  }
  EXPECT_EQ(messages, (std::vector<UINT>{WM_KEYDOWN, WM_KEYUP}));
  EXPECT_EQ(extra, 77);
  host.hook = collect;
}

POINT PlaceOf(HWND window) {
  RECT frame{};
  GetWindowRect(window, &frame);
  return {frame.left, frame.top};
}

bool IsAt(HWND window, int x, int y) { return PlaceOf(window).x == x && PlaceOf(window).y == y; }

TEST(MoveHook, TheNextDialogIsPlacedAndTheOneAfterItIsNot) {
  ScriptedHost host;
  EXPECT_EQ(SetWindowMoveHook(100, 200), 1);
  TestDialog first{{IDOK}}, second{{IDOK}};
  first.Show(host.frame());
  SetActiveWindow(first.window());
  EXPECT_TRUE(IsAt(first.window(), 100, 200));
  second.Show(host.frame());
  SetActiveWindow(second.window());
  EXPECT_FALSE(IsAt(second.window(), 100, 200));
}

TEST(MoveHook, PlacesBeyondTheScreenAndBelowZero) {
  ScriptedHost host;
  EXPECT_EQ(SetWindowMoveHook(-50, -60), 1);
  const HWND window = host.OpenWindow("MovedWindow");
  SetActiveWindow(window);
  EXPECT_TRUE(IsAt(window, -50, -60));
}

TEST(MoveHook, ANewCallReplacesThePlace) {
  ScriptedHost host;
  EXPECT_EQ(SetWindowMoveHook(1, 2), 1);
  EXPECT_EQ(SetWindowMoveHook(33, 44), 1);
  const HWND first = host.OpenWindow("MovedWindow");
  SetActiveWindow(first);
  EXPECT_TRUE(IsAt(first, 33, 44));
  const HWND second = host.OpenWindow("MovedWindow");
  SetActiveWindow(second);
  EXPECT_FALSE(IsAt(second, 33, 44)) << "the hook before is gone too";
}

TEST(MoveHook, ItKeepsSizeAndOrder) {
  ScriptedHost host;
  const HWND window = host.OpenWindow("MovedWindow");
  SetActiveWindow(host.frame());
  const HWND above = GetWindow(window, GW_HWNDPREV);
  RECT before{};
  GetWindowRect(window, &before);
  SetWindowMoveHook(5, 6);
  SetActiveWindow(window);
  RECT after{};
  GetWindowRect(window, &after);
  EXPECT_TRUE(IsAt(window, 5, 6));
  EXPECT_EQ(after.right - after.left, before.right - before.left);
  EXPECT_EQ(after.bottom - after.top, before.bottom - before.top);
  EXPECT_EQ(GetWindow(window, GW_HWNDPREV), above);
}

// A hook in front of the library's: tells it of a child window's activation first, then of the real one.
HHOOK g_testHook = nullptr;
HWND g_toldOf = nullptr;

LRESULT CALLBACK TellOfTheChild(int event, WPARAM wparam, LPARAM lparam) {
  if (event == HCBT_ACTIVATE && g_toldOf != nullptr) {
    CallNextHookEx(g_testHook, HCBT_ACTIVATE, reinterpret_cast<WPARAM>(std::exchange(g_toldOf, nullptr)),
                   lparam);
  }
  return CallNextHookEx(g_testHook, event, wparam, lparam);
}

TEST(MoveHook, AChildWindowDoesNotUseItUp) {
  ScriptedHost host;
  SetActiveWindow(host.frame());
  const HWND child = CreateWindowExA(0, "Button", "", WS_CHILD | WS_VISIBLE, 3, 4, 9, 9, host.frame(),
                                     nullptr, nullptr, nullptr);
  const POINT place = PlaceOf(child);
  SetWindowMoveHook(70, 80);
  g_toldOf = child;
  g_testHook = SetWindowsHookExA(WH_CBT, &TellOfTheChild, nullptr, GetCurrentThreadId());
  const HWND window = host.OpenWindow("MovedWindow");
  SetActiveWindow(window);
  UnhookWindowsHookEx(g_testHook);
  EXPECT_EQ(g_toldOf, nullptr) << "the hook was told";
  EXPECT_TRUE(IsAt(child, place.x, place.y));
  EXPECT_TRUE(IsAt(window, 70, 80));
}

TEST(MoveHook, ReleasingTakesItBack) {
  ScriptedHost host;
  EXPECT_EQ(ReleaseWindowMoveHook(), 1) << "none is there";
  SetWindowMoveHook(70, 80);
  EXPECT_EQ(ReleaseWindowMoveHook(), 1);
  const HWND window = host.OpenWindow("MovedWindow");
  SetActiveWindow(window);
  EXPECT_FALSE(IsAt(window, 70, 80));
}

TEST(MoveHook, WindowsOfOtherThreadsAreNotMoved) {
  ScriptedHost host;
  SetWindowMoveHook(70, 80);
  OnOtherThread([] {
    TestDialog dialog{{IDOK}};
    dialog.Show(nullptr);
    SetActiveWindow(dialog.window());
    EXPECT_FALSE(IsAt(dialog.window(), 70, 80));
  });
  ReleaseWindowMoveHook();
}

TEST(MoveHook, UnloadingTheLibraryTakesItBack) {
  ScriptedHost host;
  PrivateLibrary library;
  ASSERT_EQ(library.Export("SetWindowMoveHook", &SetWindowMoveHook)(70, 80), 1);
  library.Unload();
  const HWND window = host.OpenWindow("MovedWindow");
  const POINT place = PlaceOf(window);
  SetActiveWindow(host.frame());
  SetActiveWindow(window);
  EXPECT_TRUE(IsAt(window, place.x, place.y));
  EXPECT_FALSE(library.IsLoaded()) << "a hook that is left has the system load the library again";
}

}  // namespace
}  // namespace wfinfo_test
