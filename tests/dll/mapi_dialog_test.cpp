// Simple MAPI: the two dialogs that show while the host keeps a caller waiting.
#include <thread>

#include "tests/support/mapi_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::mapi;

// The dialog of the library with this caption, once it shows.
HWND WaitForDialog(const wchar_t* caption) {
  for (int i = 0; i < 200; ++i) {
    const HWND dialog = FindWindowW(L"#32770", caption);
    if (dialog != nullptr && IsWindowVisible(dialog)) return dialog;
    Sleep(20);
  }
  return nullptr;
}

constexpr wchar_t kBusyCaption[] = L"タマリンメールの処理が終わるのを待っています";
constexpr wchar_t kCallingCaption[] = L"タマリンメールを呼び出しています";

TEST_F(Mapi, WhileTheHostShowsADialogTheUserIsAskedToCloseIt) {
  MapiHost mapi;
  const HWND popup = mapi.host.OpenDialog(mapi.host.frame(), true);
  ASSERT_EQ(GetLastActivePopup(mapi.host.frame()), popup);
  ULONG code = 99;
  OnOtherThread([&] {
    std::thread user([&] {
      const HWND dialog = WaitForDialog(kBusyCaption);
      EXPECT_NE(dialog, nullptr);
      PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    code = MAPIDeleteMail(0, 0, Mutable("id"), 0, 0);
    user.join();
  });
  EXPECT_EQ(code, 2u) << "given up";
  EXPECT_TRUE(mapi.kinds.empty());
  mapi.answer = [](const Block& block) { block.as<StoreHead>().result = 0; };
  OnOtherThread([&] {
    std::thread user([&] {
      EXPECT_NE(WaitForDialog(kBusyCaption), nullptr);
      PostMessageA(mapi.host.frame(), kClosePopup, 0, 0);
    });
    code = MAPIDeleteMail(0, 0, Mutable("id"), 0, 0);
    user.join();
  });
  EXPECT_EQ(code, 0u) << "goes on when the host is free";
}

TEST_F(Mapi, ASlowHostIsWaitedForUntilTheUserGivesUp) {
  MapiHost mapi;
  mapi.answers = false;
  ULONG code = 99;
  DWORD elapsed = 0;
  OnOtherThread([&] {
    std::thread user([&] {
      const HWND dialog = WaitForDialog(kCallingCaption);
      EXPECT_NE(dialog, nullptr);
      PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    });
    const DWORD start = GetTickCount();
    code = MAPIDeleteMail(0, 0, Mutable("id"), 0, 0);
    elapsed = GetTickCount() - start;
    user.join();
  });
  EXPECT_EQ(code, 2u);
  EXPECT_GE(elapsed, 990u);
  mapi.Signal();  // too late: into a block that nobody looks at any more
  OnOtherThread([&] {
    std::thread user([&] {
      EXPECT_NE(WaitForDialog(kCallingCaption), nullptr);
      mapi.Signal();
    });
    code = MAPIDeleteMail(0, 0, Mutable("id"), 0, 0);
    user.join();
  });
  EXPECT_EQ(code, 0u) << "answered while the dialog showed";
}

TEST_F(Mapi, AHostThatGoesAwayEndsTheWait) {
  MapiHost mapi;
  mapi.answers = false;
  ULONG code = 99;
  OnOtherThread([&] {
    std::thread user([&] {
      EXPECT_NE(WaitForDialog(kCallingCaption), nullptr);
      PostMessageA(mapi.host.frame(), WM_CLOSE, 0, 0);
    });
    code = MAPIDeleteMail(0, 0, Mutable("id"), 0, 0);
    user.join();
  });
  EXPECT_EQ(code, 2u);
  CloseHandle(mapi.event);
}

std::wstring TextOf(HWND window) {
  wchar_t text[256] = L"";
  SendMessageTimeoutW(window, WM_GETTEXT, 256, reinterpret_cast<LPARAM>(text), SMTO_NORMAL, 2000, nullptr);
  return text;
}

// The texts of all controls, in their order.
std::vector<std::wstring> Texts(HWND dialog) {
  std::vector<std::wstring> texts;
  for (HWND control = nullptr; (control = FindWindowExW(dialog, control, nullptr, nullptr)) != nullptr;) {
    if (GetDlgCtrlID(control) != 1000) texts.push_back(TextOf(control));
  }
  return texts;
}

struct Look {
  std::vector<std::wstring> texts;
  bool has_icon = false;
  bool is_topmost = false;
  bool is_in_the_middle = false;
  HWND owner = nullptr;
};

// Looks at the dialog and cancels it.
Look LookAndCancel(const wchar_t* caption) {
  const HWND dialog = WaitForDialog(caption);
  EXPECT_NE(dialog, nullptr);
  Look look;
  look.texts = Texts(dialog);
  DWORD_PTR icon = 0;
  SendMessageTimeoutW(GetDlgItem(dialog, 1000), STM_GETICON, 0, 0, SMTO_NORMAL, 2000, &icon);
  look.has_icon = icon != 0;
  look.is_topmost = (GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
  RECT place;
  GetWindowRect(dialog, &place);
  look.is_in_the_middle = std::abs(place.left + place.right - GetSystemMetrics(SM_CXSCREEN)) <= 2 &&
                          std::abs(place.top + place.bottom - GetSystemMetrics(SM_CYSCREEN)) <= 2;
  look.owner = GetWindow(dialog, GW_OWNER);
  PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
  return look;
}

TEST_F(Mapi, TheDialogsLookAsTheUserKnowsThem) {
  MapiHost mapi;
  mapi.answers = false;
  const HWND parent = mapi.host.OpenWindow("STATIC", nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE);
  const auto look_at = [&](const wchar_t* caption, HWND owner) {
    Look look;
    std::thread user([&] { look = LookAndCancel(caption); });
    EXPECT_EQ(Delete(owner), 2u);
    user.join();
    return look;
  };
  const std::vector<std::wstring> calling = {L"タマリンメール側の処理が終わるのを待っています。", L"中断！"};
  const std::vector<std::wstring> busy = {
      L"タマリンメールのメイン画面で何らかのダイアログボックスが表示されています。"
      L"そのダイアログボックスを終了さてください。",
      L"そのダイアログボックスが閉じられると、この処理は続行されます。", L"キャンセル"};
  for (const bool is_busy : {false, true}) {
    if (is_busy) mapi.host.OpenDialog(mapi.host.frame(), true);
    const wchar_t* const caption = is_busy ? kBusyCaption : kCallingCaption;
    const Look alone = look_at(caption, nullptr);
    EXPECT_EQ(alone.texts, is_busy ? busy : calling);
    EXPECT_TRUE(alone.has_icon);
    EXPECT_TRUE(alone.is_topmost);
    EXPECT_TRUE(alone.is_in_the_middle);
    EXPECT_EQ(alone.owner, nullptr);
    const Look owned = look_at(caption, parent);
    EXPECT_EQ(owned.texts, is_busy ? busy : calling);
    EXPECT_TRUE(owned.has_icon);
    EXPECT_FALSE(owned.is_topmost);
    EXPECT_EQ(owned.owner, parent);
    if (!is_busy) CloseHandle(mapi.event);
  }
}

TEST_F(Mapi, AParentThatIsNoWindowCountsAsNone) {
  MapiHost mapi;
  mapi.answers = false;
  Look look;
  std::thread user([&] { look = LookAndCancel(kCallingCaption); });
  EXPECT_EQ(Delete(reinterpret_cast<HWND>(123)), 2u);
  user.join();
  EXPECT_TRUE(look.is_topmost);
  CloseHandle(mapi.event);
}

TEST_F(Mapi, AHostThatGoesAwayWithItsDialogEndsTheWait) {
  MapiHost mapi;
  mapi.host.OpenDialog(mapi.host.frame(), true);
  std::thread user([&] {
    EXPECT_NE(WaitForDialog(kBusyCaption), nullptr);
    PostMessageA(mapi.host.frame(), WM_CLOSE, 0, 0);
  });
  EXPECT_EQ(Delete(), 2u);
  user.join();
  EXPECT_TRUE(mapi.kinds.empty());
}

TEST_F(Mapi, AQuestionOfTheHostComesBeforeTheWaitingDialog) {
  MapiHost mapi;
  mapi.answers = false;
  std::thread user([&] {
    const HWND dialog = WaitForDialog(kCallingCaption);
    EXPECT_NE(dialog, nullptr);
    PostMessageA(mapi.host.frame(), kOpenPopup, 0, 0);
    HWND popup = mapi.host.frame();
    for (int i = 0; i < 100 && popup == mapi.host.frame(); ++i) {
      Sleep(20);
      popup = GetLastActivePopup(mapi.host.frame());
    }
    EXPECT_NE(popup, mapi.host.frame());
    SetForegroundWindow(dialog);
    for (int i = 0; i < 100 && GetForegroundWindow() != popup; ++i) Sleep(20);
    EXPECT_EQ(GetForegroundWindow(), popup);
    mapi.Signal();
  });
  EXPECT_EQ(Delete(), 0u);
  user.join();
}

}  // namespace
}  // namespace wfinfo_test
