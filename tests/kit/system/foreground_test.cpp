// The foreground: Windows refuses it to programs that the user does not work in.
#include <gtest/gtest.h>

#include "tests/kit/system/child_win.h"
#include "tests/kit/system/roles_win.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace system_tests {
namespace {

using wfinfo_test::ScriptedHost;

bool ComesToTheFront(HWND window) {
  for (int tries = 0; tries < 20; ++tries) {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
    if (GetForegroundWindow() == window) return true;
    Sleep(50);
  }
  return false;
}

TEST(Foreground, TheAnswerAgreesWithWhatIsInFront) {
  ScriptedHost host;
  const HWND other = host.OpenWindow("STATIC");
  SetForegroundWindow(other);
  const bool allowed = Bypass_SetForegroundWindow(host.frame()) != 0;
  EXPECT_EQ(ComesToTheFront(host.frame()), allowed);
  EXPECT_EQ(Bypass_GetForegroundWindow(), GetForegroundWindow());
}

TEST(Foreground, AnotherProgramIsRefusedItWhileItIsLocked) {
  ScriptedHost host;
  const HWND hidden_from_the_front = host.OpenWindow("STATIC");
  SetForegroundWindow(host.frame());
  if (!ComesToTheFront(host.frame()))
    GTEST_SKIP() << "Windows keeps the window of this test from the foreground";
  ASSERT_TRUE(LockSetForegroundWindow(LSFW_LOCK)) << GetLastError();
  const Finished asked =
      RunRole("bring-to-front", std::to_string(reinterpret_cast<INT_PTR>(hidden_from_the_front)));
  LockSetForegroundWindow(LSFW_UNLOCK);
  ASSERT_TRUE(asked.started);
  EXPECT_EQ(asked.code, 0u) << "what Bypass_SetForegroundWindow answered there";
  EXPECT_EQ(GetForegroundWindow(), host.frame());
}

TEST(Foreground, AProgramThatMayTakesIt) {
  ScriptedHost host;
  const HWND other = host.OpenWindow("STATIC");
  SetForegroundWindow(host.frame());
  if (!ComesToTheFront(host.frame()))
    GTEST_SKIP() << "Windows keeps the window of this test from the foreground";
  ASSERT_TRUE(AllowSetForegroundWindow(ASFW_ANY)) << GetLastError();
  const Finished asked = RunRole("bring-to-front", std::to_string(reinterpret_cast<INT_PTR>(other)));
  EXPECT_NE(asked.code, 0u);
  EXPECT_TRUE(ComesToTheFront(other));
}

TEST(Activation, ADisabledWindowIsNotActivated) {
  ScriptedHost host;
  const HWND disabled = host.OpenWindow("STATIC");
  SetActiveWindow(host.frame());
  EnableWindow(disabled, FALSE);
  SetActiveWindow(disabled);
  EXPECT_EQ(GetActiveWindow(), host.frame());
}

}  // namespace
}  // namespace system_tests
