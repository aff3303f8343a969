// Which window a request reaches, and when it is refused.
#include <gtest/gtest.h>

#include <utility>

#include "tests/support/bystander_win.h"
#include "tests/support/import_patch_win.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

constexpr int kHostCode = 34;   // IsTransmitting: through the frame's request target
constexpr int kFrameCode = 30;  // MailCount: through the active frame
constexpr int kViewCode = 102;  // SaveDraft2: through an outer view
constexpr char kEditorRefusal[] =
    "A WFINFO.dll function called on editor window but it cannot be executable on editor.\nfunction code = "
    "30";

// Puts a window on top of the z-order; the active window stays what it is.
void Raise(HWND window) {
  const HWND active = GetActiveWindow();
  BringWindowToTop(window);
  SetActiveWindow(active);
}

// A window that is none of the host's, activated so that the enumeration has to find the host.
HWND ActivateStranger(ScriptedHost& host) {
  const HWND stranger = host.OpenWindow("STATIC");
  SetActiveWindow(stranger);
  return stranger;
}

HWND g_vanishing = nullptr;  // goes away when its neighbour is asked for

HWND WINAPI GetWindowOfAVanishingOne(HWND window, UINT direction) {
  if (window == g_vanishing) DestroyWindow(window);
  return GetWindow(window, direction);
}

TEST(HostWindow, AWindowThatGoesAwayUnderTheSearchDoesNotHideTheHost) {
  ScriptedHost host;
  ActivateStranger(host);
  g_vanishing = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
  Raise(g_vanishing);
  const ImportPatch patch("USER32.dll", "GetWindow", &GetWindowOfAVanishingOne);
  host.Expect(kHostCode).Answer(1);
  EXPECT_EQ(IsTransmitting(), 1);
  EXPECT_FALSE(IsWindow(g_vanishing));
}

TEST(HostWindow, AWindowThatGoesAwayUnderTheWalkDoesNotHideTheNextOne) {
  ScriptedHost host;
  const HWND view = host.OpenWindow("WrenfoldOuterView");
  SetWindowLongPtrA(view, GWLP_USERDATA, 1);
  ShowWindow(view, SW_SHOWNOACTIVATE);
  SetActiveWindow(host.frame());
  g_vanishing = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
  SetWindowPos(g_vanishing, host.frame(), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  const ImportPatch patch("USER32.dll", "GetWindow", &GetWindowOfAVanishingOne);
  EXPECT_EQ(NextTamWren(), 1);
  EXPECT_FALSE(IsWindow(g_vanishing));
  EXPECT_EQ(GetActiveWindow(), view);
}

HWND WINAPI FindWindowBehindAVanishingOne(HWND parent, HWND after, LPCSTR name, LPCSTR title) {
  if (after != nullptr && after == g_vanishing) DestroyWindow(after);
  return FindWindowExA(parent, after, name, title);
}

// As if another program's frame stood in front and went away.
DWORD WINAPI ProcessOfNone(HWND window, DWORD* process) {
  const DWORD thread = GetWindowThreadProcessId(window, process);
  if (window == g_vanishing && process != nullptr) *process = 0;
  return thread;
}

TEST(HostWindow, AFrameThatGoesAwayUnderTheSearchDoesNotHideTheHost) {
  ScriptedHost host;
  g_vanishing = host.OpenWindow("WrenfoldFrame");
  ActivateStranger(host);
  Raise(g_vanishing);
  const ImportPatch next("USER32.dll", "FindWindowExA", &FindWindowBehindAVanishingOne);
  const ImportPatch process("USER32.dll", "GetWindowThreadProcessId", &ProcessOfNone);
  host.Expect(kFrameCode).Answer(3).At(host.frame());
  EXPECT_EQ(MailCount(), 3);
  EXPECT_FALSE(IsWindow(g_vanishing));
}

HWND g_rising = nullptr;  // comes to the top when the neighbour of another window is asked for, once

void RiseOnce() {
  if (g_rising == nullptr) return;
  SetWindowPos(std::exchange(g_rising, nullptr), HWND_TOP, 0, 0, 0, 0,
               SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

HWND WINAPI GetWindowWhileOneRises(HWND window, UINT direction) {
  RiseOnce();
  return GetWindow(window, direction);
}

TEST(HostWindow, AHostThatComesToTheFrontUnderTheSearchIsFound) {
  ScriptedHost host;
  Raise(ActivateStranger(host));
  g_rising = host.frame();
  const ImportPatch patch("USER32.dll", "GetWindow", &GetWindowWhileOneRises);
  host.Expect(kHostCode).Answer(1);
  EXPECT_EQ(IsTransmitting(), 1);
  EXPECT_EQ(g_rising, nullptr);
}

HWND WINAPI FindWindowWhileOneRises(HWND parent, HWND after, LPCSTR name, LPCSTR title) {
  if (after != nullptr) RiseOnce();
  return FindWindowExA(parent, after, name, title);
}

TEST(HostWindow, AFrameThatComesToTheFrontUnderTheSearchIsFoundBeforeThoseOfOthers) {
  ScriptedHost host;
  g_vanishing = host.OpenWindow("WrenfoldFrame");  // of another program, by what ProcessOfNone says
  ActivateStranger(host);
  Raise(g_vanishing);
  g_rising = host.frame();
  const ImportPatch next("USER32.dll", "FindWindowExA", &FindWindowWhileOneRises);
  const ImportPatch process("USER32.dll", "GetWindowThreadProcessId", &ProcessOfNone);
  host.Expect(kFrameCode).Answer(3).At(host.frame());
  EXPECT_EQ(MailCount(), 3);
  EXPECT_EQ(g_rising, nullptr);
}

TEST(HostWindow, AnActiveFrameIsAskedForItsRequestTargetOnce) {
  ScriptedHost host;
  const HWND target = host.OpenWindow("WrenfoldView", host.frame(), WS_CHILD | WS_VISIBLE);
  host.SetRequestTarget(target);
  SetActiveWindow(host.frame());
  host.Expect(kHostCode).Answer(1).At(target);
  EXPECT_EQ(IsTransmitting(), 1);
  EXPECT_EQ(host.request_target_queries(), 1);
  EXPECT_EQ(host.active_view_queries(), 1);
}

TEST(HostWindow, AnActiveFrameMayNameAnOuterViewThatActsForIt) {
  ScriptedHost host;
  const HWND view = host.OpenOuterView();
  SetActiveWindow(host.frame());
  host.SetActiveView(view);
  host.Expect(kHostCode).Answer(5).At(view);
  EXPECT_EQ(IsTransmitting(), 5);
  EXPECT_EQ(host.request_target_queries(), 0);
}

TEST(HostWindow, AnActiveOuterViewReceivesRequestsItself) {
  ScriptedHost host;
  const HWND view = host.OpenOuterView();
  SetActiveWindow(view);
  host.Expect(kHostCode).Answer(7).At(view);
  EXPECT_EQ(IsTransmitting(), 7);
  host.Expect(kViewCode).Int(3).Answer(8).At(view);
  EXPECT_EQ(SaveDraft2(3), 8);
}

TEST(HostWindow, AnActiveOuterViewWithoutUserDataIsIgnoredAndTheEnumerationDecides) {
  ScriptedHost host;
  SetActiveWindow(host.OpenOuterView(false));
  host.Expect(kHostCode).Answer(1).At(host.frame());
  EXPECT_EQ(IsTransmitting(), 1);
}

TEST(HostWindow, AViewRequestWithAnActiveFrameFindsNothing) {
  ScriptedHost host;
  host.OpenOuterView();
  SetActiveWindow(host.frame());
  EXPECT_EQ(SaveDraft2(0), 0);
}

TEST(HostWindow, TheEnumerationTakesTheFirstHostWindowInZOrder) {
  ScriptedHost host;
  const HWND view = host.OpenOuterView();
  ActivateStranger(host);
  Raise(host.frame());
  Raise(view);
  host.Expect(kHostCode).Answer(1).At(view);
  EXPECT_EQ(IsTransmitting(), 1);
  Raise(host.frame());
  host.Expect(kHostCode).Answer(2).At(host.frame());
  EXPECT_EQ(IsTransmitting(), 2);
  EXPECT_EQ(SaveDraft2(0), 0) << "a frame above the outer view ends the search for an outer view";
}

TEST(HostWindow, AnHtmlViewerReceivesRequestsAsItStands) {
  ScriptedHost host;
  const HWND viewer = host.OpenHtmlViewer();
  ActivateStranger(host);
  Raise(viewer);
  host.Expect(kHostCode).Answer(1).At(viewer);
  EXPECT_EQ(IsTransmitting(), 1);
  EnableWindow(viewer, FALSE);
  host.OpenDialog(viewer, true);
  Raise(viewer);
  host.Expect(kHostCode).Answer(2).At(viewer);
  EXPECT_EQ(IsTransmitting(), 2) << "no modal test for a viewer";
}

TEST(HostWindow, WithoutAHostWindowTheResultIsZeroAndNothingIsShown) {
  EXPECT_EQ(IsTransmitting(), 0);
  EXPECT_EQ(MailCount(), 0);
  EXPECT_EQ(SaveDraft2(1), 0);
  EXPECT_EQ(NewMail(), 0);
  EXPECT_STREQ(RootFolder(), "");
  EXPECT_STREQ(Account(), "");
}

TEST(HostWindow, AFrameRequestGoesToTheFrameItself) {
  ScriptedHost host;
  host.SetRequestTarget(host.OpenWindow("WrenfoldView", host.frame(), WS_CHILD | WS_VISIBLE));
  SetActiveWindow(host.frame());
  host.Expect(kFrameCode).Answer(12).At(host.frame());
  EXPECT_EQ(MailCount(), 12);
  EXPECT_EQ(host.request_target_queries(), 0);
  EXPECT_EQ(host.active_view_queries(), 1);
}

TEST(HostWindow, AFrameRequestGoesToTheFrameThatActsForAnother) {
  ScriptedHost host;
  const HWND other = host.OpenFrame();
  SetActiveWindow(host.frame());
  host.SetActiveView(other);
  host.Expect(kFrameCode).Answer(4).At(other);
  EXPECT_EQ(MailCount(), 4);
}

TEST(HostWindow, AFrameRequestOnAnEditorIsRefused) {
  for (const Language language : {Language::kEnglish, Language::kJapanese}) {
    ScriptedHost host(language);
    const HWND editor = host.OpenOuterView();
    SetActiveWindow(host.frame());
    host.SetActiveView(editor);
    EXPECT_EQ(MailCount(), 0);
    EXPECT_STREQ(Account(), "");
    const std::string japanese =
        Sjis(u8"エディタ上で実行できないWFInfo.dll呼び出しが行われました。\n関数コード = ");
    if (language == Language::kEnglish) {
      std::string second = kEditorRefusal;
      second.replace(second.size() - 2, 2, "5");
      host.ExpectMessages({kEditorRefusal, second});
    } else {
      host.ExpectMessages({japanese + "30", japanese + "5"});
    }
  }
}

TEST(HostWindow, WithAnotherWindowActiveAFrameRequestFindsTheFrame) {
  ScriptedHost host;
  ActivateStranger(host);
  host.Expect(kFrameCode).Answer(9).At(host.frame());
  EXPECT_EQ(MailCount(), 9);
}

TEST(HostWindow, OtherThreadsGetTheEditorRefusalOrNoWindow) {
  ScriptedHost host;
  OnOtherThread([] {
    EXPECT_EQ(MailCount(), 0);
    EXPECT_EQ(IsTransmitting(), 0);
    EXPECT_EQ(SaveDraft2(0), 0);
    EXPECT_EQ(NewMail(), 0);
  });
  host.ExpectMessages({kEditorRefusal});
}

// --- Modal dialogs -------------------------------------------------------------------------------------

constexpr char kRefusal[] = "WFINFO.DLL: Cannot proceed because a dialog box showing.\nfunction code = ";

TEST(HostWindow, WhileADialogShowsARequestIsRefusedWithABox) {
  for (const Language language : {Language::kEnglish, Language::kJapanese}) {
    ScriptedHost host(language);
    host.OpenDialog(host.frame(), true);
    {
      BoxCloser closer;
      EXPECT_EQ(IsTransmitting(), 0);
      EXPECT_EQ(MailCount(), 0);
      EXPECT_STREQ(RootFolder(), "");
      EXPECT_EQ(NewMail(), 0);
      const auto boxes = closer.boxes();
      ASSERT_EQ(boxes.size(), 4u);
      const std::string head =
          language == Language::kEnglish
              ? kRefusal
              : Sjis(u8"WFINFO.DLL: ダイアログボックス表示中なので処理できません。\n関数コード = ");
      // A box shows its text in the system's code page: Japanese only where that is 932.
      if (language == Language::kEnglish || GetACP() == 932) {
        EXPECT_EQ(boxes[0].text, head + "34");
        EXPECT_EQ(boxes[1].text, head + "30");
        EXPECT_EQ(boxes[2].text, head + "42");
        EXPECT_EQ(boxes[3].text, head + "0") << "a menu command counts as code 0";
      }
      for (const auto& box : boxes) EXPECT_EQ(box.owner, nullptr);
    }
    EnableWindow(host.frame(), TRUE);
  }
}

TEST(HostWindow, TheBoxBypassesTheCallback) {
  ScriptedHost host;
  host.OpenDialog(host.frame(), true);
  BoxCloser closer;
  EXPECT_EQ(IsTransmitting(), 0);
  host.ExpectMessages({});
  EXPECT_EQ(closer.boxes().size(), 1u);
  EnableWindow(host.frame(), TRUE);
}

TEST(HostWindow, AModelessPopupRefusesNothing) {
  ScriptedHost host;
  host.OpenDialog(host.frame(), false);
  host.Expect(kHostCode).Answer(1).At(host.frame());
  EXPECT_EQ(IsTransmitting(), 1);
  host.Expect(kFrameCode).Answer(2).At(host.frame());
  EXPECT_EQ(MailCount(), 2);
}

TEST(HostWindow, AnActiveFrameIsNotTestedForModality) {
  ScriptedHost host;
  host.OpenDialog(host.frame(), true);
  SetActiveWindow(host.frame());
  if (GetActiveWindow() != host.frame()) {
    // Windows does not activate a disabled window: the dialog stays active and the modal test applies.
    BoxCloser closer;
    EXPECT_EQ(IsTransmitting(), 0);
    EXPECT_EQ(closer.boxes().size(), 1u);
  } else {
    host.Expect(kHostCode).Answer(1).At(host.frame());
    EXPECT_EQ(IsTransmitting(), 1);
  }
  EnableWindow(host.frame(), TRUE);
}

TEST(HostWindow, TheAllowedCodesGoThroughWhileADialogShows) {
  ScriptedHost host;
  host.OpenDialog(host.frame(), true);
  host.Expect(46).Answer("C:\\").At(host.frame());
  EXPECT_STREQ(HomeDir(), "C:\\");
  host.Expect(48).Answer(1).At(host.frame());
  EXPECT_EQ(WrenfoldVersion(), 1);
  EXPECT_EQ(IsWrenfoldMain(), 1) << "its look-up passes code 333";
  EnableWindow(host.frame(), TRUE);
}

TEST(HostWindow, WithoutAHostAnyWindowOfTheThreadOwnsBoxes) {
  ScriptedHost host;
  const HWND stranger = ActivateStranger(host);
  DestroyWindow(host.frame());
  EXPECT_EQ(GetMessageBoxParent(), stranger);
}

TEST(HostWindow, MenuCommandsReachTheRequestTarget) {
  ScriptedHost host;
  host.ExpectCommand(40002).Answer(3);
  EXPECT_EQ(NewMail(), 3);
  host.ExpectCommand(40046).Answer(1);
  EXPECT_EQ(SwitchHeaderView(2), 1);
}

TEST(HostWindow, EveryWindowIsNoRequestTarget) {
  ScriptedHost host;
  const Bystander bystander(host);
  for (const auto every : {0xFFFFLL, 0xFFFFFFFFLL, -1LL}) {
    host.SetRequestTarget(reinterpret_cast<HWND>(every));
    EXPECT_EQ(IsTransmitting(), 0);
    EXPECT_EQ(NextMail(), 0);
    EXPECT_EQ(bystander.commands(), 0) << every;
  }
}

}  // namespace
}  // namespace wfinfo_test
