// Macros run in another window: of this thread, of another thread, of another process, and of one that hangs.
#include <gtest/gtest.h>

#include <functional>
#include <thread>

#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

constexpr char kFirstParameterEnglish[] = "The 1st parameter of ExecAt is invalid.";
constexpr char kTimedOutEnglish[] = "ExecAt dead locked or timed out.";

// A host frame on a thread of its own.
class ForeignFrame {
 public:
  using Answer = std::function<Slot(int code, const Slot* block)>;
  // Without an answer the thread does not look at its messages.
  explicit ForeignFrame(Answer answer) : answer_(std::move(answer)) {
    ready_ = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    done_ = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    thread_ = std::thread([this] { Live(); });
    WaitForSingleObject(ready_, INFINITE);
  }
  ~ForeignFrame() {
    SetEvent(done_);
    thread_.join();
    CloseHandle(ready_);
    CloseHandle(done_);
  }
  HWND window() const { return window_; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    auto* const self = reinterpret_cast<ForeignFrame*>(GetPropA(window, "self"));
    if (IsRequest(message) && self != nullptr) {
      return self->answer_(static_cast<int>(wparam), reinterpret_cast<const Slot*>(lparam));
    }
    return DefWindowProcA(window, message, wparam, lparam);
  }

  void Live() {
    window_ = CreateWindowExA(0, "WrenfoldFrame", "", WS_OVERLAPPEDWINDOW, 0, 0, 50, 50, nullptr, nullptr,
                              GetModuleHandleA(nullptr), nullptr);
    SetWindowLongPtrA(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
    SetPropA(window_, "self", this);
    SetEvent(ready_);
    while (MsgWaitForMultipleObjects(1, &done_, FALSE, INFINITE, answer_ ? QS_ALLINPUT : 0) ==
           WAIT_OBJECT_0 + 1) {
      MSG message;
      while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
    }
    DestroyWindow(window_);
  }

  Answer answer_;
  HANDLE ready_;
  HANDLE done_;
  HWND window_ = nullptr;
  std::thread thread_;
};

TEST(ExecAt, TheOwnWindowIsAskedWithoutAnnouncement) {
  ScriptedHost host;
  host.Expect(45).Text("macro").Int(5).Text("x").Int(-1).Answer(77);
  EXPECT_EQ(ExecAt(host.frame(), "macro", 5LL, "x", -1LL), 77);
}

TEST(ExecAt, AnswersHave64Bits) {
  ScriptedHost host;
  host.Expect(45).Text("macro").Answer(0x123456789ABCDEF0);
  EXPECT_EQ(ExecAt(host.frame(), "macro"), 0x123456789ABCDEF0);
}

TEST(ExecAt, ParametersBeyondTheRegistersFollowInARow) {
  ScriptedHost host;
  host.Expect(45).Text("m").Int(1).Int(2).Int(3).Int(4).Int(5).Int(6).Int(7).Answer(1);
  EXPECT_EQ(ExecAt(host.frame(), "m", 1LL, 2LL, 3LL, 4LL, 5LL, 6LL, 7LL), 1);
}

TEST(ExecAt, TheWaitForAnotherWindowIsAnnounced) {
  ScriptedHost host;
  const HWND view = host.OpenOuterView(false);
  SetActiveWindow(host.frame());
  host.Expect(278);
  host.Expect(45).At(view).Text("macro").Answer(3);
  host.Expect(279).Answer(0);
  EXPECT_EQ(ExecAt(view, "macro"), 3);
}

TEST(ExecAt, TheHostMayAskForMoreAfterTheWait) {
  for (const Slot flags : {Slot{0x100}, Slot{0x200}, Slot{0x300}, Slot{0xFF}}) {
    ScriptedHost host;
    const HWND view = host.OpenOuterView();
    SetActiveWindow(host.frame());
    std::vector<std::string> order;
    host.hook = [&](HWND window, UINT message, WPARAM wparam, LPARAM lparam, LRESULT*) {
      if (message == WM_COMMAND) order.emplace_back("command");
      if (message != wfinfo::kHostWaitOver) return false;
      EXPECT_EQ(window, host.frame());
      EXPECT_EQ(wparam, 0u);
      EXPECT_EQ(lparam, 0);
      order.emplace_back("message");
      return true;
    };
    host.Expect(278);
    host.Expect(45).At(view).Text("macro").Answer(3);
    host.Expect(279).Answer(flags);
    if ((flags & 0x200) != 0) host.ExpectCommand(40365);
    EXPECT_EQ(ExecAt(view, "macro"), 3);
    std::vector<std::string> expected;
    if ((flags & 0x100) != 0) expected.emplace_back("message");
    if ((flags & 0x200) != 0) expected.emplace_back("command");
    EXPECT_EQ(order, expected) << flags;
  }
}

TEST(ExecAt, DuringTheWaitTheFrameIsNotAskedForItsTarget) {
  ScriptedHost host;
  // An active window that is no window of the host: searches walk the list of windows.
  SetActiveWindow(host.OpenWindow("NoHostWindow"));
  const int before = host.request_target_queries();
  EXPECT_EQ(IsWrenfoldMain(), 1);
  EXPECT_EQ(host.request_target_queries(), before + 1);
  host.Expect(45).Text("macro").Do([&](const Request&) {
    const int queries = host.request_target_queries();
    EXPECT_EQ(IsWrenfoldMain(), 1);
    EXPECT_EQ(host.request_target_queries(), queries);
    return 5;
  });
  EXPECT_EQ(ExecAt(host.frame(), "macro"), 5);
  const int after = host.request_target_queries();
  EXPECT_EQ(IsWrenfoldMain(), 1);
  EXPECT_EQ(host.request_target_queries(), after + 1) << "asked again once the wait is over";
}

TEST(ExecAt, AWindowOfAnotherClassIsRefused) {
  ScriptedHost host;
  const HWND gone = host.OpenOuterView();
  DestroyWindow(gone);
  SetActiveWindow(host.frame());
  const HWND windows[] = {host.OpenHtmlViewer(),
                          host.OpenWindow("WrenfoldFrameToo"),
                          gone,
                          nullptr,
                          reinterpret_cast<HWND>(INT_PTR{1}),
                          reinterpret_cast<HWND>(INT_PTR{-1}),
                          GetDesktopWindow()};
  for (const HWND window : windows) {
    EXPECT_EQ(ExecAt(window, "macro"), 0);
    host.ExpectMessages({kFirstParameterEnglish});
  }
  host.SetLanguage(Language::kJapanese);
  EXPECT_EQ(ExecAt(nullptr, "macro"), 0);
  host.ExpectMessages({Sjis(u8"ExecAtの第１パラメータが正しくありません。")});
}

TEST(ExecAt, TheMacroMustBeAText) {
  ScriptedHost host;
  EXPECT_EQ(ExecAt(host.frame(), kNumberForText), 0);
  host.ExpectMessages({kStringMessageEnglish});
  EXPECT_EQ(ExecAt(nullptr, static_cast<const char*>(nullptr)), 0);
  host.ExpectMessages({kStringMessageEnglish});
}

TEST(ExecAt, AWindowOfAnotherThreadRunsTheMacroThere) {
  ScriptedHost host;
  const DWORD own_thread = GetCurrentThreadId();
  ForeignFrame other([&](int code, const Slot* block) -> Slot {
    EXPECT_EQ(code, 45);
    EXPECT_STREQ(reinterpret_cast<const char*>(block[0]), "macro");
    EXPECT_EQ(block[1], 9);
    EXPECT_NE(GetCurrentThreadId(), own_thread);
    return 99;
  });
  host.Expect(278);
  host.Expect(279);
  EXPECT_EQ(ExecAt(other.window(), "macro", 9LL), 99);
}

TEST(ExecAt, AWindowOfAnotherProcessAnswersToo) {
  ScriptedHost host;
  char path[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, path, sizeof path);
  const std::string folder = std::string(path).substr(0, std::string(path).find_last_of('\\') + 1);
  const std::string title = "exec target " + std::to_string(GetCurrentProcessId());
  std::string command = "\"" + folder + "exec_target.exe\" \"" + title + "\" 4242";
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION child{};
  ASSERT_TRUE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                             &child));
  HWND window = nullptr;
  for (int i = 0; i < 500 && window == nullptr; ++i) {
    Sleep(20);
    window = FindWindowA("WrenfoldFrame", title.c_str());
  }
  ASSERT_NE(window, nullptr);
  host.Expect(278);
  host.Expect(279);
  EXPECT_EQ(ExecAt(window, "macro"), 4242);
  // A process that goes away during the wait, or has gone, is a failed send.
  PostMessageA(window, WM_CLOSE, 0, 0);
  EXPECT_EQ(WaitForSingleObject(child.hProcess, 20000), WAIT_OBJECT_0);
  EXPECT_EQ(ExecAt(window, "macro"), 0);
  host.ExpectMessages({kFirstParameterEnglish});
  CloseHandle(child.hThread);
  CloseHandle(child.hProcess);
}

TEST(ExecAt, AWindowThatHangsTimesOutAfter20Seconds) {
  ScriptedHost host(Language::kJapanese);
  const ForeignFrame other(nullptr);
  host.Expect(278);
  host.Expect(279);
  const std::uint64_t start = GetTickCount64();
  EXPECT_EQ(ExecAt(other.window(), "macro"), 0);
  const std::uint64_t waited = GetTickCount64() - start;
  EXPECT_GE(waited, 19900u);
  EXPECT_LT(waited, 30000u);
  host.ExpectMessages(
      {Sjis(u8"ExecAtでデッドロックが発生したか、または処理が終わるのを待ちきれませんでした。")});
}

TEST(ExecAt, AWindowThatGoesAwayWhileItIsAskedIsAFailure) {
  ScriptedHost host;
  const HWND view = host.OpenOuterView();
  SetActiveWindow(host.frame());
  host.Expect(278).Do([&](const Request&) {
    DestroyWindow(view);
    return 0;
  });
  host.Expect(279);
  EXPECT_EQ(ExecAt(view, "macro"), 0);
  host.ExpectMessages({kTimedOutEnglish});
}

TEST(ExecAtMain, AllParametersAreTheBlock) {
  ScriptedHost host;
  host.Expect(160).Text("macro").Answer(8);
  EXPECT_EQ(ExecAtMain("macro"), 8);
  host.Expect(160).Text("m").Int(1).Text("two").Int(-3).Int(4).Int(5).Int(6).Answer(0x123456789ABCDEF0);
  EXPECT_EQ(ExecAtMain("m", 1LL, "two", -3LL, 4LL, 5LL, 6LL), 0x123456789ABCDEF0);
}

TEST(ExecAtMain, TheMacroMustBeAText) {
  ScriptedHost host;
  EXPECT_EQ(ExecAtMain(kNumberForText, 1LL), 0);
  EXPECT_EQ(ExecAtMain(nullptr), 0);
  host.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish});
}

}  // namespace
}  // namespace wfinfo_test
