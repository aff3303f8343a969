// Simple MAPI: starting the host.
#include <filesystem>
#include <fstream>

#include "tests/support/mapi_host_win.h"
#include "tests/support/temp_folder_win.h"

namespace wfinfo_test {
namespace {

// A copy of the library with a host beside it that starts as it is told.
class Launch : public testing::Test {
 protected:
  void TearDown() override {
    // The host ends when what started it is gone; its program can be deleted then.
    DeleteFileW(Place(L"start.txt").c_str());
    const std::wstring program = Place(L"wrenfold.exe");
    for (int i = 0; i < 1000 && GetFileAttributesW(program.c_str()) != INVALID_FILE_ATTRIBUTES; ++i) {
      DeleteFileW(program.c_str());
      Sleep(10);
    }
    if (library_ != nullptr) FreeLibrary(library_);
  }
  void Prepare(const char* start) {
    const std::filesystem::path built = std::filesystem::current_path();
    std::filesystem::create_directories(Place(L""));
    std::filesystem::copy_file(built / "WFINFO.dll", Place(L"WFINFO.dll"));
    if (start != nullptr) {
      std::filesystem::copy_file(built / "doubles" / "launched_host.exe", Place(L"wrenfold.exe"));
      std::ofstream(std::filesystem::path(Place(L"start.txt"))) << start;
    }
    library_ = LoadLibraryW(Place(L"WFINFO.dll").c_str());
    ASSERT_NE(library_, nullptr);
    const unsigned english[] = {8, 1};
    reinterpret_cast<void (*)(const void*)>(Proc("NotifyWrenfoldInfo"))(english);
  }
  // A file in the folder of library and host.
  std::wstring Place(std::wstring_view name) const { return folder_.WidePath(within_ + std::wstring(name)); }
  // Waits for what a host that was just started has to do.
  static HWND WaitForPopup(HWND frame) {
    for (int i = 0; i < 100 && GetLastActivePopup(frame) == frame; ++i) Sleep(20);
    return GetLastActivePopup(frame);
  }
  void* Proc(const char* name) { return reinterpret_cast<void*>(GetProcAddress(library_, name)); }
  // Logs on and tells how long that took.
  ULONG Logon() {
    const DWORD start = GetTickCount();
    const ULONG code = reinterpret_cast<LPMAPILOGON>(Proc("MAPILogon"))(0, nullptr, nullptr, 0, 0, nullptr);
    elapsed_ms_ = GetTickCount() - start;
    return code;
  }
  void Logoff() { EXPECT_EQ(reinterpret_cast<LPMAPILOGOFF>(Proc("MAPILogoff"))(0, 0, 0, 0), 0u); }
  // Whether the frame is still there after a while.
  static bool Stays(HWND frame) {
    for (int i = 0; i < 75 && IsWindow(frame); ++i) Sleep(20);
    return IsWindow(frame);
  }
  TempFolder folder_;
  std::wstring within_;  // a folder of it, ending in a backslash; empty for itself
  HMODULE library_ = nullptr;
  DWORD elapsed_ms_ = 0;
};

TEST_F(Launch, AHostThatIsReadyIsUsedAtOnceAndClosedAgain) {
  Prepare("0 1 1 0");
  EXPECT_EQ(Logon(), 0u);
  EXPECT_LT(elapsed_ms_, 9000u);
  const HWND frame = FindWindowA("WrenfoldFrame", nullptr);
  ASSERT_NE(frame, nullptr);
  Logoff();
  EXPECT_FALSE(Stays(frame));
}

TEST_F(Launch, WithoutAHostBesideTheLibraryLogonFails) {
  const LogLines log;
  Prepare(nullptr);
  reinterpret_cast<int (*)(void*)>(Proc("GetWFInfoVersion"))(LogLines::Services());
  EXPECT_EQ(Logon(), 2u);
  const auto lines = log.Take();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1], "ExecWrenfold CreateProcess failed code=2");
}

TEST_F(Launch, AHostThatIsNeverReadyIsTakenAfterThreeSeconds) {
  Prepare("0 1 0 0");
  EXPECT_EQ(Logon(), 0u);
  EXPECT_GE(elapsed_ms_, 3000u);
  EXPECT_LT(elapsed_ms_, 30000u);
}

TEST_F(Launch, AQuestionOfTheHostKeepsTheWaitAlive) {
  Prepare("11000 1 1 0");
  BoxCloser closer;
  EXPECT_EQ(Logon(), 0u);
  EXPECT_GE(elapsed_ms_, 11000u);
  EXPECT_TRUE(closer.boxes().empty());
}

TEST_F(Launch, FiveSecondsAfterItsLastWindowAHostWithoutAFrameIsGivenUp) {
  Prepare("1000 0 0 0");
  BoxCloser closer;
  EXPECT_EQ(Logon(), 2u);
  // One second of a window, five without, three of asking a frame that is not there.
  EXPECT_GE(elapsed_ms_, 8800u);
  EXPECT_LT(elapsed_ms_, 30000u);
  const auto boxes = closer.boxes();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].text, "Failed to launch TamarinMail.");
}

TEST_F(Launch, TheHostBesideTheLibraryIsStartedHidden) {
  Prepare("0 1 1 0");
  EXPECT_EQ(Logon(), 0u);
  EXPECT_EQ(folder_.Read("started.txt"), "1 0 \"" + folder_.Path("wrenfold.exe") + "\"");
}

TEST_F(Launch, AFolderWithANameThatTheCodePageDoesNotHoldHoldsTheHostToo) {
  if (!folder_.CanHold(L"\uAC00\u00FC")) GTEST_SKIP() << "no such file names in this locale";
  within_ = L"\uAC00\u00FC\\";
  Prepare("0 1 1 0");
  EXPECT_EQ(Logon(), 0u);
  const std::string name = "\xEA\xB0\x80\xC3\xBC\\wrenfold.exe";
  EXPECT_EQ(folder_.Read(within_ + L"started.txt"), "1 0 \"" + folder_.Path("") + name + "\"");
}

TEST_F(Launch, AHostThatShowsADialogIsNotClosed) {
  Prepare("0 1 1 1");
  EXPECT_EQ(Logon(), 0u);
  const HWND frame = FindWindowA("WrenfoldFrame", nullptr);
  ASSERT_NE(WaitForPopup(frame), frame);
  Logoff();
  EXPECT_TRUE(Stays(frame));
}

TEST_F(Launch, ASecondLogonFindsTheHostRunningAndNoLongerClosesIt) {
  Prepare("0 1 1 0");
  EXPECT_EQ(Logon(), 0u);
  EXPECT_EQ(Logon(), 0u);
  const HWND frame = FindWindowA("WrenfoldFrame", nullptr);
  Logoff();
  EXPECT_TRUE(Stays(frame));
}

TEST_F(Launch, AHostThatShowsNothingIsGivenUpAfterTenSeconds) {
  Prepare("0 0 0 0");
  BoxCloser closer;
  EXPECT_EQ(Logon(), 2u);
  // Ten seconds for a frame, three of asking one that is not there.
  EXPECT_GE(elapsed_ms_, 13000u);
  EXPECT_LT(elapsed_ms_, 30000u);
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_EQ(closer.boxes()[0].text, "Failed to launch TamarinMail.");
}

TEST_F(Launch, SendingSucceedsAlsoWithoutAHost) {
  const LogLines log;
  Prepare(nullptr);
  reinterpret_cast<int (*)(void*)>(Proc("GetWFInfoVersion"))(LogLines::Services());
  MapiMessage message{};
  EXPECT_EQ(reinterpret_cast<LPMAPISENDMAIL>(Proc("MAPISendMail"))(0, 0, &message, 0, 0), 0u);
  EXPECT_EQ(
      reinterpret_cast<LPMAPISENDDOCUMENTS>(Proc("MAPISendDocuments"))(0, nullptr, Mutable("p"), nullptr, 0),
      0u);
  EXPECT_EQ(
      reinterpret_cast<LPMAPISENDDOCUMENTS>(Proc("MAPISendDocuments"))(0, nullptr, Mutable(""), nullptr, 0),
      0u);
  EXPECT_EQ(log.Take(),
            (std::vector<std::string>{"MAPISendMail64", "ExecWrenfold CreateProcess failed code=2",
                                      "MAPISendDocuments64", "ExecWrenfold CreateProcess failed code=2",
                                      "MAPISendDocuments64"}))
      << "no paths: nothing is started";
}

// The redirection library stands for the registry; its MapiSend is 1.
TEST_F(Launch, SettingsComeFromTheRedirectionLibraryWhenThereIsOne) {
  std::filesystem::copy_file(std::filesystem::current_path() / "doubles" / "TmRegIni.dll",
                             folder_.WidePath(L"TmRegIni.dll"));
  const HMODULE redirection = LoadLibraryW(folder_.WidePath(L"TmRegIni.dll").c_str());
  ASSERT_NE(redirection, nullptr);
  Prepare(nullptr);
  MapiHost mapi;
  MapiRecipDesc recipient{0, MAPI_TO, Mutable("Jo"), nullptr, 0, nullptr};
  MapiMessage message{};
  message.lpszSubject = Mutable("s");
  message.lpszNoteText = Mutable("n");
  message.nRecipCount = 1;
  message.lpRecips = &recipient;
  EXPECT_EQ(reinterpret_cast<LPMAPISENDMAIL>(Proc("MAPISendMail"))(0, 0, &message, 0, 0), 0u);
  EXPECT_EQ(mapi.lines, std::vector<std::string>{"unsentmail Subject=s body=n To=Jo"});
  const auto open_keys =
      reinterpret_cast<int (*)()>(reinterpret_cast<void*>(GetProcAddress(redirection, "OpenKeys")));
  EXPECT_EQ(open_keys(), 0) << "closed again";
  FreeLibrary(redirection);
}

}  // namespace
}  // namespace wfinfo_test
