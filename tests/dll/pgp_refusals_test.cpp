// PGP and GnuPG through the exports: parameters that are refused, programs that fail or do not end, and the
// dialogs that say so.
#include <thread>

#include "tests/support/pgp_exports_win.h"

namespace wfinfo_test {
namespace {

// --- Parameters ----------------------------------------------------------------------------------------

TEST_F(Pgp, EncryptSignAlwaysRefuses) {
  UseGnupg();
  EXPECT_STREQ(PgpEncryptSign("t", "a", "me", "pw"), "");
  host_.ExpectMessages({kInvalidEncrypt});
  EXPECT_EQ(PgpGetExitCode(), -1);
  EXPECT_EQ(Noted("command"), "(no file)");
  host_.SetLanguage(Language::kJapanese);
  EXPECT_STREQ(PgpEncryptSign("t", "a", "me", "pw"), "");
  host_.ExpectMessages({Sjis(u8"PgpEncryptのパラメータが不正です。")});
}

TEST_F(Pgp, ParametersThatAnEncryptionNeedsMustBeTexts) {
  UseGnupg();
  const std::vector<std::string> messages = {kStringMessageEnglish, kInvalidEncrypt};
  EXPECT_STREQ(PgpEncrypt(nullptr, "a"), "");
  host_.ExpectMessages(messages);
  EXPECT_STREQ(PgpEncrypt("t", kNumberForText), "");
  host_.ExpectMessages(messages);
  EXPECT_STREQ(PgpSign("t", nullptr, "pw"), "");
  host_.ExpectMessages(messages);
  EXPECT_STREQ(PgpSign("t", "me", nullptr), "");
  host_.ExpectMessages(messages);
  EXPECT_STREQ(EncryptAndSign("t", nullptr, "me", "pw"), "");
  host_.ExpectMessages(messages);
  EXPECT_STREQ(PgpEncryptSuper(-1, "t", "a", "me", "pw", 0, 0, 0), "");
  host_.ExpectMessages({kInvalidEncrypt});
  EXPECT_EQ(LeftFiles(), "");
}

TEST_F(Pgp, WhatAModeDoesNotNeedIsNotLookedAt) {
  UseGnupg();
  const std::string long_text(9000, 'l');
  for (const char* const ignored : {kNumberForText, static_cast<const char*>(nullptr), long_text.c_str()}) {
    Child("OUTPUT", "x");
    EXPECT_STREQ(PgpEncryptSuper(0, "t", "a", ignored, nullptr, 0, 0, 0), "x");
    EXPECT_EQ(Noted("command"), "gpg.exe --batch --yes -v -o $PgpOut.asc -ea -r\"a\" $PgpIn.asc");
    EXPECT_STREQ(PgpEncryptSuper(1, "t", ignored, "me", "pw", 0, 0, 0), "x");
    EXPECT_TRUE(Noted("command").ends_with(" -u\"me\" -sat --clearsign $PgpIn.asc ")) << Noted("command");
  }
}

TEST_F(Pgp, ARefusedCallForgetsTheLastRunToo) {
  UseGnupg();
  LetMessagesPass();
  Child("SAYS", "something");
  PgpEncrypt("t", "a");
  EXPECT_EQ(PgpGetExitCode(), 0);
  EXPECT_STREQ(PgpGetInfo(), "something");
  PgpEncryptSign("t", "a", "me", "pw");
  EXPECT_EQ(PgpGetExitCode(), -1);
  EXPECT_STREQ(PgpGetInfo(), "");
  PgpEncrypt("t", "a");
  EXPECT_STREQ(PgpGetInfo(), "something");
  PgpDecrypt(nullptr, "", nullptr, 1);
  EXPECT_EQ(PgpGetExitCode(), -1);
  EXPECT_STREQ(PgpGetInfo(), "");
  host_.ExpectMessages({kInvalidEncrypt});
}

TEST_F(Pgp, RecipientsOf8191BytesAreAcceptedAndOf8192Refused) {
  UseGnupg();
  const std::string longest(8191, 'r');
  PgpEncrypt("t", longest.c_str());
  EXPECT_EQ(Noted("command"), "gpg.exe --batch --yes -v -o $PgpOut.asc -ea -r\"" + longest + "\" $PgpIn.asc");
  EXPECT_STREQ(PgpEncrypt("t", (longest + "r").c_str()), "");
  host_.ExpectMessages({"The recipient parameter string of PgpEncrypt is too long."});
  EXPECT_EQ(PgpGetExitCode(), -1);
}

TEST_F(Pgp, ASenderOf127BytesIsAcceptedAndOf128Refused) {
  UseGnupg();
  const std::string longest(127, 's');
  PgpSign("t", longest.c_str(), "pw");
  EXPECT_NE(Noted("command").find(" -u\"" + longest + "\" "), std::string::npos);
  EXPECT_STREQ(PgpSign("t", (longest + "s").c_str(), "pw"), "");
  host_.ExpectMessages({"The sender parameter string of PgpEncrypt is too long."});
}

TEST_F(Pgp, ADecryptionNeedsTextsAndTellsSoUnlessItIsQuiet) {
  UseGnupg();
  EXPECT_EQ(PgpDecrypt(nullptr, "pw", nullptr, 0), nullptr);
  host_.ExpectMessages({kStringMessageEnglish, kInvalidDecrypt});
  EXPECT_EQ(PgpDecrypt("t", nullptr, nullptr, 0), nullptr);
  host_.ExpectMessages({kStringMessageEnglish, kInvalidDecrypt});
  EXPECT_EQ(PgpDecrypt("t", "pw", kNumberForText, 0), nullptr);
  host_.ExpectMessages({kStringMessageEnglish, kInvalidDecrypt});
  EXPECT_STREQ(PgpDecrypt(kNumberForText, "pw", nullptr, 1), "");
  EXPECT_STREQ(PgpDecrypt("t", kNumberForText, nullptr, 1), "");
  EXPECT_STREQ(PgpDecrypt("t", "", kNumberForText, 1), "");
  host_.ExpectMessages({});
  EXPECT_EQ(PgpGetExitCode(), -1);
}

// --- Failures ------------------------------------------------------------------------------------------

struct StartFailure {
  unsigned program;
  bool decrypts;
  const char* english;
};

TEST_F(Pgp, AProgramThatIsNotThereIsReported) {
  const StartFailure cases[] = {
      {1, false,
       "Failed to start GnuPG program (gpg.exe or gpg2.exe). Please refer to the help \"About "
       "PGP/GnuPG\".\nerror code = 2"},
      {0, false,
       "Failed to start PGP program (pgp.exe). Please refer to the help \"About PGP/GnuPG\".\nerror code = "},
      {1, true,
       "Failed to start GnuPG program (gpg.exe or gpg2.exe). Please refer \"About PGP/GnuPG\" in "
       "help.\nerror code = 2"},
      {0, true,
       "Failed to start PGP program (pgp.exe). Please refer \"About PGP/GnuPG\" in help.\nerror code = "},
  };
  for (const StartFailure& c : cases) {
    PgpSetProgram(c.program);
    const char* const result = c.decrypts ? PgpDecrypt("t", "pw", nullptr, 0) : PgpEncrypt("t", "a");
    EXPECT_EQ(result == nullptr, c.decrypts);
    const std::vector<std::string> messages = host_.TakeMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(c.english)) << messages[0];
    EXPECT_EQ(static_cast<unsigned>(PgpGetExitCode()), 0xFFFFFFFF);
    EXPECT_EQ(LeftFiles(), "");
  }
}

TEST_F(Pgp, AFileThatIsNoProgramIsReportedAndNoOtherOneLookedFor) {
  for (const char* const name : {"gpg.exe", "pgp.exe"}) folder_.Write(name, "MZ, and nothing of a program");
  SetEnvironmentVariableA("PATH", folder_.Path(".").c_str());
  const std::string no_program = std::to_string(ERROR_BAD_EXE_FORMAT);
  for (unsigned program : {0u, 1u}) {
    PgpSetProgram(program);
    EXPECT_STREQ(PgpEncrypt("t", "a"), "");
    const std::vector<std::string> messages = host_.TakeMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].ends_with("\nerror code = " + no_program)) << messages[0];
    EXPECT_EQ(LeftFiles(), "");
  }
}

TEST_F(Pgp, AQuietDecryptionKeepsTheReportAsItsMessages) {
  PgpSetProgram(1);
  EXPECT_STREQ(PgpDecrypt("t", "pw", nullptr, 1), "");
  EXPECT_STREQ(
      PgpGetInfo(),
      "Failed to start GnuPG program (gpg.exe or gpg2.exe). Please refer \"About PGP/GnuPG\" in help.\n"
      "error code = 2");
  EXPECT_EQ(PgpGetExitCode(), -1);
  EXPECT_EQ(LeftFiles(), "");
}

TEST_F(Pgp, AnInputThatCannotBeWrittenIsReported) {
  UseGnupg();
  std::filesystem::create_directory("$PgpIn.asc");
  EXPECT_STREQ(PgpEncrypt("t", "a"), "");
  EXPECT_EQ(PgpDecrypt("t", "pw", nullptr, 0), nullptr);
  EXPECT_STREQ(PgpDecrypt("t", "pw", nullptr, 1), "");
  const std::vector<std::string> messages = host_.TakeMessages();
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_TRUE(messages[0].starts_with(
      "Failed to create temporary file for encryption.\nfile name = $PgpIn.asc\nerror code = "))
      << messages[0];
  EXPECT_TRUE(messages[1].starts_with(
      "Failed to create temporary file for decryption.\nfile name = $PgpIn.asc\nerror code = "))
      << messages[1];
  std::filesystem::remove("$PgpIn.asc");
}

// Slow: the patience is part of it.
TEST_F(Pgp, AQuietDecryptionStopsAProgramThatDoesNotEnd) {
  UseGnupg();
  Child("SLEEP", "600000");
  const DWORD start = GetTickCount();
  EXPECT_STREQ(PgpDecrypt("t", "pw", nullptr, 1), "");
  EXPECT_GE(GetTickCount() - start, 9900u);
  EXPECT_STREQ(PgpGetInfo(), "The encryption program does not respond more than 10 seconds.");
  EXPECT_EQ(PgpGetExitCode(), -1);
  EXPECT_EQ(LeftFiles(), "");
}

TEST_F(Pgp, ReportsInJapanese) {
  host_.SetLanguage(Language::kJapanese);
  const auto start = [](const char8_t* program) {
    return Sjis(program) +
           Sjis(u8"を起動できませんでした。ヘルプの「PGP/GnuPGについて」をご覧ください。\nエラーコード = ");
  };
  const std::string gnupg = start(u8"GnuPGのプログラム（gpg.exeまたはgpg2.exe）");
  const std::string pgp = start(u8"PGPのプログラム（pgp.exe）");
  const std::string file =
      Sjis(u8"一時ファイルを作成できませんでした。\nファイル名 = $PgpIn.asc\nエラーコード = ");
  const std::string long_text(8192, 'l');
  const auto told = [this](const std::string& beginning) {
    const std::vector<std::string> messages = host_.TakeMessages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].substr(0, beginning.size()), beginning);
  };
  for (const auto& [program, beginning] : {std::pair{0u, pgp}, std::pair{1u, gnupg}}) {
    PgpSetProgram(program);
    PgpEncrypt("t", "a");
    told(beginning);
    PgpDecrypt("t", "pw", nullptr, 0);
    told(beginning);
    PgpDecrypt("t", "pw", nullptr, 1);
    EXPECT_EQ(std::string(PgpGetInfo()).substr(0, beginning.size()), beginning);
  }
  std::filesystem::create_directory("$PgpIn.asc");
  PgpEncrypt("t", "a");
  told(Sjis(u8"暗号化のための") + file);
  PgpDecrypt("t", "pw", nullptr, 0);
  told(Sjis(u8"復号のための") + file);
  std::filesystem::remove("$PgpIn.asc");
  PgpEncrypt("t", long_text.c_str());
  told(Sjis(u8"PgpEncryptの受信者のパラメータの文字列が長すぎます。"));
  PgpSign("t", long_text.c_str(), "pw");
  told(Sjis(u8"PgpEncryptの送信者のパラメータの文字列が長すぎます。"));
  PgpDecrypt(nullptr, "pw", nullptr, 0);
  host_.ExpectMessages({StringMessageJapanese(), Sjis(u8"PgpDecryptのパラメータが不正です。")});
}

// Presses the button of the wait dialog as soon as it shows.
class AbortPresser {
 public:
  AbortPresser()
      : thread_([this] {
          for (; !stop_; Sleep(20)) EnumWindows(&Visit, 0);
        }) {}
  ~AbortPresser() {
    stop_ = true;
    thread_.join();
  }

 private:
  static BOOL CALLBACK Visit(HWND window, LPARAM) {
    DWORD process;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId() && IsWindowVisible(window) && GetDlgItem(window, 1000) != nullptr)
      PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
    return TRUE;
  }
  volatile bool stop_ = false;
  std::thread thread_;
};

// Slow, for the same reason.
TEST_F(Pgp, AnAbortedProgramLeavesTheExitCodeAtMinusOne) {
  UseGnupg();
  host_.Expect(105).Any();
  Child("SLEEP", "600000");
  const DWORD start = GetTickCount();
  {
    AbortPresser presser;
    BoxCloser boxes(IDYES);
    EXPECT_STREQ(PgpEncrypt("t", "a"), "");
    ASSERT_EQ(boxes.boxes().size(), 1u);
    EXPECT_EQ(boxes.boxes()[0].text, "Do you want to terminate encryption program forced?");
  }
  EXPECT_GE(GetTickCount() - start, 9900u);
  EXPECT_EQ(static_cast<unsigned>(PgpGetExitCode()), 0xFFFFFFFF);
  EXPECT_EQ(LeftFiles(), "");
}

// --- The dialogs, in the library itself ----------------------------------------------------------------

std::wstring TextOf(HWND window) {
  wchar_t text[200] = L"";
  GetWindowTextW(window, text, 200);
  return text;
}

TEST(PgpDialogs, LieInTheLibrary) {
  const struct {
    int id;
    const wchar_t *caption, *text;
  } cases[] = {{103, L"PGP処理中", L"PGPが終了するのを待っています。"},
               {104, L"GnuPG処理中", L"GnuPGが終了するのを待っています。"}};
  const DLGPROC idle = [](HWND, UINT, WPARAM, LPARAM) WINAPI -> INT_PTR { return FALSE; };
  for (const auto& c : cases) {
    const HWND dialog =
        CreateDialogParamW(GetModuleHandleA("WFINFO.dll"), MAKEINTRESOURCEW(c.id), nullptr, idle, 0);
    ASSERT_NE(dialog, nullptr) << c.id;
    EXPECT_EQ(TextOf(dialog), c.caption);
    const LONG_PTR style = GetWindowLongPtrA(dialog, GWL_STYLE);
    constexpr LONG_PTR kStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    EXPECT_EQ(style & kStyle, kStyle);
    RECT client, units = {0, 0, 195, 65};
    GetClientRect(dialog, &client);
    MapDialogRect(dialog, &units);
    EXPECT_EQ(client.right, units.right);
    EXPECT_EQ(client.bottom, units.bottom);
    EXPECT_EQ(TextOf(GetDlgItem(dialog, 2)), L"中断！");
    const HWND icon = GetDlgItem(dialog, 1000);
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(GetWindowLongPtrA(icon, GWL_STYLE) & SS_TYPEMASK, SS_ICON);
    std::vector<std::wstring> texts;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
      if (child != icon && GetDlgCtrlID(child) != 2) texts.push_back(TextOf(child));
    }
    EXPECT_EQ(texts, std::vector<std::wstring>{c.text}) << "one line of text and nothing else";
    DestroyWindow(dialog);
  }
}

}  // namespace
}  // namespace wfinfo_test
