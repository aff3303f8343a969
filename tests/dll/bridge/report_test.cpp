// Error reports, their cut, the parameter check and the debug log.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "tests/support/import_patch_win.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

int g_advapiHeld = 0;  // references taken to the loaded module
BOOL WINAPI NoteHold(DWORD flags, LPCSTR name, HMODULE* module) {
  if (flags == 0 && lstrcmpiA(name, "ADVAPI32.DLL") == 0) ++g_advapiHeld;
  return GetModuleHandleExA(flags, name, module);
}

TEST(Report, TheRegistryFunctionsAreHeldWithTheirModule) {
  ScriptedHost host;
  const ImportPatch patch("KERNEL32.dll", "GetModuleHandleExA", &NoteHold);
  g_advapiHeld = 0;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(DumpSmall("a line"), 1);
  EXPECT_EQ(g_advapiHeld, 1) << "once, and never given back";
}

TEST(Report, ANumberForATextIsReportedInBothLanguages) {
  ScriptedHost host(Language::kEnglish);
  EXPECT_STREQ(DecodeHeader(kNumberForText), "");
  EXPECT_STREQ(DecodeHeader(nullptr), "");
  host.ExpectMessages({kStringMessageEnglish, kStringMessageEnglish});
  host.SetLanguage(Language::kJapanese);
  EXPECT_STREQ(DecodeHeader(kNumberForText), "");
  host.ExpectMessages({StringMessageJapanese()});
}

// A text of which the caller chooses the end: the message without the address that the export names last.
constexpr char kLongMessage[] =
    "The target certificate not found in \"Personal\" certificate store. email address =  ";

TEST(Report, AMessageKeepsItsFirst495BytesInWholeUnits) {
  ScriptedHost host(Language::kEnglish);
  const std::size_t rest = 495 - std::strlen(kLongMessage);
  const auto report = [&host](const std::string& address) {
    EXPECT_EQ(SelectCertCrcDialog(address.c_str()), 0u);
    const std::vector<std::string> messages = host.TakeMessages();
    return messages.size() == 1 ? messages[0].substr(std::strlen(kLongMessage)) : "no message";
  };
  const std::string fits(rest, 'a');
  EXPECT_EQ(report(fits), fits) << "exactly 495 bytes";
  EXPECT_EQ(report(fits + "b"), fits) << "one more";
  EXPECT_EQ(report(fits.substr(1) + "\x83\x41"), fits.substr(1)) << "no half character";
  EXPECT_EQ(report(fits.substr(2) + "\x83\x41"), fits.substr(2) + "\x83\x41");
  for (std::size_t kept = 1; kept <= 3; ++kept) {
    EXPECT_EQ(report(fits.substr(kept) + "\x1A\xA9\x80\x85"), fits.substr(kept)) << "no part of an escape";
  }
  EXPECT_EQ(report(fits.substr(4) + "\x1A\xA9\x80\x85"), fits.substr(4) + "\x1A\xA9\x80\x85");
}

TEST(Report, WithoutACallbackABoxOfTheHostShows) {
  // No ScriptedHost: it would register a callback, which nothing can take back.
  const HWND frame = CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, nullptr, nullptr,
                                     nullptr, nullptr);
  SetActiveWindow(frame);
  const unsigned english[] = {8, 1};
  NotifyWrenfoldInfo(english);
  BoxCloser closer;
  EXPECT_EQ(DumpSmall(kNumberForText), 0);
  const auto boxes = closer.boxes();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].text, std::string("WFINFO.DLL: ") + kStringMessageEnglish);
  EXPECT_EQ(boxes[0].owner, frame);
  DestroyWindow(frame);
}

// --- The debug log -------------------------------------------------------------------------------------

class DebugLog : public testing::Test {
 protected:
  static constexpr char kKey[] = "Software\\Quenby\\Wrenfold\\Config";

  void SetUp() override {
    folder_ =
        std::filesystem::temp_directory_path() / ("wfinfo-log-" + std::to_string(GetCurrentProcessId()));
    std::filesystem::create_directories(folder_);
    home_ = folder_.string() + "\\";
    RegDeleteTreeA(HKEY_CURRENT_USER, kKey);
  }
  void TearDown() override {
    RegDeleteTreeA(HKEY_CURRENT_USER, kKey);
    std::filesystem::remove_all(folder_);
  }
  void Configure(DWORD debug) {
    RegSetKeyValueA(HKEY_CURRENT_USER, kKey, "Debug", REG_DWORD, &debug, sizeof debug);
    RegSetKeyValueA(HKEY_CURRENT_USER, kKey, "HomeDir", REG_SZ, home_.c_str(),
                    static_cast<DWORD>(home_.size() + 1));
  }
  std::string Log() const {
    std::ifstream file(folder_ / "dump.txt", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  bool HasLog() const { return std::filesystem::exists(folder_ / "dump.txt"); }

  std::filesystem::path folder_;
  std::string home_;
};

TEST_F(DebugLog, IsWrittenOnlyWhenSwitchedOn) {
  EXPECT_EQ(DumpSmall("no key"), 1);
  EXPECT_FALSE(HasLog());
  Configure(0);
  EXPECT_EQ(DumpSmall("off"), 1);
  EXPECT_FALSE(HasLog());
  Configure(1);
  EXPECT_EQ(DumpSmall("first"), 1);
  EXPECT_EQ(DumpSmall("second"), 1);
  const std::string log = Log();
  // 09:08:07.006 WFINFO:(7178) first CR LF
  ASSERT_EQ(log.size(), 2 * std::string("00:00:00.000 WFINFO:(7178) \r\n").size() + 5 + 6);
  EXPECT_EQ(log.substr(12, 22), " WFINFO:(7178) first\r\n");
  EXPECT_EQ(log[2], ':');
  EXPECT_EQ(log[8], '.');
  EXPECT_TRUE(log.ends_with(" WFINFO:(7178) second\r\n"));
  RegDeleteKeyValueA(HKEY_CURRENT_USER, kKey, "Debug");
  DumpSmall("off again");
  EXPECT_EQ(Log(), log);
}

TEST_F(DebugLog, ALongOrUnterminatedHomeDirectoryIsCutSafely) {
  Configure(1);
  const std::string home(160, 'x');
  RegSetKeyValueA(HKEY_CURRENT_USER, kKey, "HomeDir", REG_BINARY, home.data(),
                  static_cast<DWORD>(home.size()));
  EXPECT_EQ(DumpSmall("nowhere"), 1);
  EXPECT_TRUE(DeleteFileA((home + "dump.txt").c_str())) << "whole, and relative to the current directory";
  const std::string longer(161, 'x');
  RegSetKeyValueA(HKEY_CURRENT_USER, kKey, "HomeDir", REG_BINARY, longer.data(),
                  static_cast<DWORD>(longer.size()));
  EXPECT_EQ(DumpSmall("nowhere"), 1);
  EXPECT_FALSE(HasLog());
}

TEST_F(DebugLog, WithACallbackReportsAreNotLogged) {
  Configure(1);
  ScriptedHost host;
  DecodeHeader(kNumberForText);
  host.ExpectMessages({kStringMessageEnglish});
  EXPECT_FALSE(HasLog());
}

TEST_F(DebugLog, WithoutACallbackReportsAreLoggedAndShown) {
  Configure(1);
  const unsigned english[] = {8, 1};
  NotifyWrenfoldInfo(english);
  BoxCloser closer;
  DumpSmall(kNumberForText);
  EXPECT_EQ(closer.boxes().size(), 1u);
  EXPECT_TRUE(Log().ends_with(" WFINFO:(7178) WFINFO.DLL: " + std::string(kStringMessageEnglish) + "\r\n"))
      << Log();
}

// In code page 932 the folder's name holds a character whose second byte is a backslash; elsewhere it ends
// with a letter that would be a lead byte in 932, in front of the backslash.
TEST_F(DebugLog, ARedirectionLibraryBesideUsTakesThePlaceOfTheRegistry) {
  std::filesystem::path beside = folder_ / (GetACP() == 932 ? L"\u8868" : L"caf\u00E9");
  std::error_code no_such_name;
  // In the C locale Wine's files have ASCII names only.
  if (!std::filesystem::create_directories(beside, no_such_name)) beside = folder_ / "beside";
  std::filesystem::create_directories(beside);
  const std::filesystem::path built = std::filesystem::current_path();
  std::filesystem::copy_file(built / "WFINFO.dll", beside / "WFINFO.dll");
  std::filesystem::copy_file(built / "doubles" / "TmRegIni.dll", beside / "TmRegIni.dll");
  const HMODULE redirection = LoadLibraryW((beside / "TmRegIni.dll").c_str());
  const HMODULE library = LoadLibraryW((beside / "WFINFO.dll").c_str());
  ASSERT_NE(redirection, nullptr);
  ASSERT_NE(library, nullptr);
  ASSERT_NE(library, GetModuleHandleA("WFINFO.dll")) << "a copy of its own";
  reinterpret_cast<void (*)(const char*)>(reinterpret_cast<void*>(GetProcAddress(redirection, "SetHome")))(
      home_.c_str());
  const auto dump =
      reinterpret_cast<int (*)(const char*)>(reinterpret_cast<void*>(GetProcAddress(library, "DumpSmall")));
  EXPECT_EQ(dump("redirected"), 1);
  EXPECT_TRUE(Log().ends_with(" WFINFO:(7178) redirected\r\n")) << Log();
  EXPECT_EQ(reinterpret_cast<int (*)()>(reinterpret_cast<void*>(GetProcAddress(redirection, "OpenKeys")))(),
            0);
  FreeLibrary(library);
  FreeLibrary(redirection);
  FreeLibrary(redirection);  // the library kept its own reference, as it does for the life of a process
}

TEST_F(DebugLog, DiagnosticsCarryTheirOwnNumbers) {
  Configure(1);
  ScriptedHost host;
  EXPECT_EQ(SelectFolder(kNumberForText, nullptr), 0);
  host.ExpectMessages({kStringMessageEnglish});
  EXPECT_TRUE(Log().ends_with(" WFINFO:(1213) wfinfo.dll: SelectFolder parameter is invalid\r\n")) << Log();
  host.Expect(70).Answer(2);
  EXPECT_EQ(EnvChanged(), 2);
  const std::string log = Log();
  EXPECT_NE(log.find(" WFINFO:(3349) wfinfo.dll: EnvChagned called\r\n"), std::string::npos) << log;
  EXPECT_TRUE(log.ends_with(" WFINFO:(3351) wfinfo.dll: EnvChanged return\r\n")) << log;
}

}  // namespace
}  // namespace wfinfo_test
