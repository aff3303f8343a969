// PGP and GnuPG through the exports, with a recording child program: what it is given, what comes back, what
// stays.
#include <thread>

#include "support/library.h"
#include "support/pgp_stage_win.h"

namespace wfinfo_test {
namespace {

constexpr char kInvalidEncrypt[] = "Invalid PgpEncrypt parameter.";
constexpr char kInvalidDecrypt[] = "Invalid PgpDecrypt parameter.";

TEST(PgpState, BeforeAnyRunIsZeroAndEmpty) {
  EXPECT_EQ(PgpGetExitCode(), 0);
  EXPECT_EQ(GetLastSMIMESigned(), 0);
  EXPECT_STREQ(PgpGetInfo(), "");
}

class Pgp : public PgpStage {
 protected:
  Pgp() { PgpSetProgram(0); }
  void UseGnupg() {
    InstallPrograms("gpg");
    PgpSetProgram(1);
  }
  void UsePgp() {
    InstallPrograms("pgp");
    PgpSetProgram(0);
  }
  const char* EncryptAndSign(const char* text, const char* recipients, const char* sender,
                             const char* pass_phrase) {
    return PgpEncryptSuper(2, text, recipients, sender, pass_phrase, 0, 0, 0);
  }
};

// --- Choice of the program -----------------------------------------------------------------------------

TEST_F(Pgp, AnUnknownProgramIsRefusedAndTheChoiceKept) {
  InstallPrograms("pgp gpg");
  EXPECT_EQ(PgpSetProgram(1), 1);
  EXPECT_EQ(PgpSetProgram(3), 0);
  EXPECT_EQ(PgpSetProgram(0xFFFFFFFF), 0);
  Child("OUTPUT", "x");
  EXPECT_STREQ(PgpEncrypt("t", "a@x"), "x");
  EXPECT_EQ(Noted("command"), "gpg.exe --batch --yes -v -o $PgpOut.asc -ea -r\"a@x\" $PgpIn.asc");
}

TEST_F(Pgp, GpgIsPreferredToGpg2AndStartedFromWhereItWasFound) {
  PgpSetProgram(1);
  InstallPrograms("gpg2 gpg");
  PgpEncrypt("t", "a");
  EXPECT_EQ(Noted("path"), ProgramFolder("gpg") + "\\gpg.exe");
  InstallPrograms("gpg2");
  PgpEncrypt("t", "a");
  EXPECT_EQ(Noted("path"), ProgramFolder("gpg2") + "\\gpg2.exe");
  EXPECT_TRUE(Noted("command").starts_with("gpg2.exe --batch ")) << Noted("command");
}

TEST_F(Pgp, PgpIsAlsoFoundWhereItIsUsuallyInstalled) {
  const std::filesystem::path place = "C:\\Program files\\Network Associates\\PGPNT";
  const bool had_parent = std::filesystem::exists(place.parent_path());
  std::filesystem::create_directories(place);
  CopyFileA((ProgramFolder("pgp") + "\\pgp.exe").c_str(), (place / "pgp.exe").string().c_str(), FALSE);
  EXPECT_STREQ(PgpEncrypt("t", "a"), "");
  EXPECT_EQ(
      Noted("command"),
      "\"C:\\Program files\\Network Associates\\PGPNT\\pgp.exe\" +batchmode -o $PgpOut.asc -ea $PgpIn.asc a");
  EXPECT_EQ(PgpGetExitCode(), 0);
  std::filesystem::remove_all(had_parent ? place : place.parent_path());
}

// --- What the program is given -------------------------------------------------------------------------

TEST_F(Pgp, CommandLinesOfPgp) {
  UsePgp();
  PgpEncrypt("t", "a@x  b@y");
  EXPECT_EQ(Noted("command"), "pgp +batchmode -o $PgpOut.asc -ea $PgpIn.asc a@x  b@y");
  PgpSign("t", "me", "open it");
  EXPECT_EQ(Noted("command"), "pgp +batchmode -o $PgpOut.asc -sat -u\"me\" -z\"open it\" $PgpIn.asc ");
  EncryptAndSign("t", "a b", "me", "pw");
  EXPECT_EQ(Noted("command"), "pgp +batchmode -o $PgpOut.asc -esa -u\"me\" -z\"pw\" $PgpIn.asc a b");
  PgpDecrypt("t", "pw", nullptr, 0);
  EXPECT_EQ(Noted("command"), "pgp +batchmode -o $PgpOut.asc -d $PgpIn.asc -z\"pw\"");
  PgpDecrypt("t", "", nullptr, 0);
  EXPECT_EQ(Noted("command"), "pgp +batchmode -o $PgpOut.asc -d $PgpIn.asc");
  PgpDecrypt("t", "", "signed", 1);
  EXPECT_EQ(Noted("command"), "pgp +batchmode -o $PgpOut.asc -d $PgpIn.asc");
  EXPECT_EQ(Noted("data"), "signed");
}

TEST_F(Pgp, CommandLinesOfGnupg) {
  UseGnupg();
  const std::string start = "gpg.exe --batch --yes ";
  const std::string decrypting = start + "--no-utf8-strings --charset iso-8859-1 ";
  PgpEncrypt("t", " a@x  b@y ");
  EXPECT_EQ(Noted("command"), start + "-v -o $PgpOut.asc -ea -r\"a@x\" -r\"b@y\" $PgpIn.asc");
  PgpSign("t", "me", "pw");
  EXPECT_EQ(Noted("command"),
            start + "--force-v3-sigs --passphrase-fd 0 -o $PgpOut.asc -u\"me\" -sat --clearsign $PgpIn.asc ");
  EncryptAndSign("t", "a b", "me", "pw");
  EXPECT_EQ(
      Noted("command"),
      start + "--force-v3-sigs --passphrase-fd 0 -o $PgpOut.asc  -u\"me\" -esa -r\"a\" -r\"b\" $PgpIn.asc");
  PgpDecrypt("t", "pw", nullptr, 0);
  EXPECT_EQ(Noted("command"), decrypting + "--passphrase-fd 0 -o $PgpOut.asc -d $PgpIn.asc");
  PgpDecrypt("t", "", nullptr, 0);
  EXPECT_EQ(Noted("command"), decrypting + "-o $PgpOut.asc --verify-files $PgpIn.asc");
  PgpDecrypt("t", "", "signed", 0);
  EXPECT_EQ(Noted("command"), decrypting + "-o $PgpOut.asc --verify $PgpIn.asc $PgpIn");
}

TEST_F(Pgp, GnupgGetsThePassPhraseOnItsStandardInput) {
  UseGnupg();
  PgpSign("t", "me", "open it");
  EXPECT_EQ(Noted("stdin"), "open it\r\n");
  PgpDecrypt("t", "other", nullptr, 0);
  EXPECT_EQ(Noted("stdin"), "other\r\n");
  const std::string longer_than_a_pipe(20000, 'p');
  PgpSign("t", "me", longer_than_a_pipe.c_str());
  EXPECT_EQ(Noted("stdin"), longer_than_a_pipe + "\r\n");
}

TEST_F(Pgp, AnEncryptionByGnupgWithoutAPassPhraseGivesAnEmptyLine) {
  UseGnupg();
  PgpEncrypt("t", "a");
  EXPECT_EQ(Noted("stdin"), "\r\n");
  PgpEncryptSuper(0, "t", "a", nullptr, kNumberForText, 0, 0, 0);
  EXPECT_EQ(Noted("stdin"), "\r\n") << "what is no text is no pass phrase";
}

TEST_F(Pgp, WithoutAPipeNothingIsOnItsStandardInput) {
  UseGnupg();
  PgpDecrypt("t", "", nullptr, 0);
  EXPECT_EQ(Noted("stdin"), "(no file)");
  UsePgp();
  PgpSign("t", "me", "pw");
  EXPECT_EQ(Noted("stdin"), "(no file)");
}

TEST_F(Pgp, TheInputFilesHoldTheTexts) {
  UseGnupg();
  const std::string text = "line\r\n\x93\xFA\x96{\xEA\x1A\x80\x80\x84\ntail";
  PgpEncrypt(text.c_str(), "a");
  EXPECT_EQ(Noted("input"), text);
  EXPECT_EQ(Noted("data"), "(no file)");
  PgpDecrypt("signature", "", text.c_str(), 0);
  EXPECT_EQ(Noted("input"), "signature");
  EXPECT_EQ(Noted("data"), text);
  PgpEncrypt("", "a");
  EXPECT_EQ(Noted("input"), "");
  EXPECT_EQ(LeftFiles(), "");
}

TEST_F(Pgp, SignedDataOfADecryptionGoesAlsoWhenItWasLeftByAnother) {
  UseGnupg();
  folder_.Write("$PgpIn", "not of an encryption");
  PgpEncrypt("t", "a");
  EXPECT_EQ(folder_.Read("$PgpIn"), "not of an encryption");
  PgpDecrypt("t", "pw", nullptr, 0);
  EXPECT_EQ(LeftFiles(), "");
}

// An encryption keeps the writing end to itself and closes it: the program sees the end of its input. A
// decryption leaves a second one to the program.
TEST_F(Pgp, TheProgramSeesTheEndOfItsInputUnlessItDecrypts) {
  UseGnupg();
  Child("PATIENCE", "5000");
  PgpSign("t", "me", "pw");
  EXPECT_EQ(Noted("writer"), "gone");
  PgpEncrypt("t", "a");
  EXPECT_EQ(Noted("writer"), "gone");
  Child("PATIENCE", "300");
  PgpDecrypt("t", "pw", nullptr, 0);
  EXPECT_EQ(Noted("writer"), "stays");
}

// --- What comes back -----------------------------------------------------------------------------------

TEST_F(Pgp, TheOutputFileIsTheResult) {
  UseGnupg();
  Child("OUTPUT", "-----BEGIN-----\r\nabc\r\n");
  Child("EXIT", "7");
  EXPECT_STREQ(PgpEncrypt("t", "a"), "-----BEGIN-----\r\nabc\r\n");
  EXPECT_EQ(PgpGetExitCode(), 7);
  EXPECT_EQ(GetLastSMIMESigned(), -1);
  EXPECT_STREQ(PgpGetInfo(), "");
  EXPECT_EQ(LeftFiles(), "");
  // A result may be the next parameter.
  const char* const result = PgpDecrypt(PgpEncrypt("t", "a"), "pw", nullptr, 0);
  EXPECT_STREQ(result, "-----BEGIN-----\r\nabc\r\n");
  EXPECT_EQ(Noted("input"), "-----BEGIN-----\r\nabc\r\n");
}

TEST_F(Pgp, TheLastMessagesMayBeTheNextText) {
  UseGnupg();
  LetMessagesPass();
  Child("SAYS", "a message long enough to be noticed when its memory is gone");
  PgpEncrypt("t", "a");
  PgpEncrypt(PgpGetInfo(), "a");
  EXPECT_EQ(Noted("input"), "a message long enough to be noticed when its memory is gone");
}

TEST_F(Pgp, WithoutAnOutputFileTheResultIsEmpty) {
  UseGnupg();
  Child("EXIT", "2");
  folder_.Write("$PgpOut.asc", "left behind by an earlier run");
  EXPECT_STREQ(PgpDecrypt("t", "pw", nullptr, 0), "");
  EXPECT_EQ(PgpGetExitCode(), 2);
  EXPECT_EQ(LeftFiles(), "");
}

TEST_F(Pgp, TheResultHasZeroesBehindItAndLastsUntilTheNextOne) {
  UseGnupg();
  Child("OUTPUT", "12345");
  const char* const result = PgpEncrypt("t", "a");
  ASSERT_EQ(LocalSize(const_cast<char*>(result)), 5u + 32);
  EXPECT_EQ(std::string(result, 5 + 32), "12345" + std::string(32, '\0'));
  SetEnvironmentVariableA("CHILD_OUTPUT", nullptr);
  EXPECT_STREQ(PgpEncrypt("t", "a"), "");
  EXPECT_STREQ(result, "12345") << "a run without output leaves it alone";
  EXPECT_EQ(PgpDecrypt(nullptr, "pw", nullptr, 0), nullptr);
  host_.TakeMessages();
  EXPECT_STREQ(result, "12345");
}

TEST_F(Pgp, TheMessagesOfGnupgAreBothStreamsWithoutLinesOfTemporaryFiles) {
  UseGnupg();
  LetMessagesPass();
  Child("SAYS", "on output\r\ngpg: writing to `$PgpOut.asc'\r\n");
  Child("WARNS", "gpg: $PgpIn.asc: bad\r\non error\r\n");
  PgpEncrypt("t", "a");
  EXPECT_STREQ(PgpGetInfo(), "on output\r\non error\r\n");
  EXPECT_EQ(Noted("streams"), "oe");
  Child("SAYS", "");
  Child("WARNS", "");
  PgpEncrypt("t", "a");
  EXPECT_STREQ(PgpGetInfo(), "") << "each run forgets what the last one said";
}

TEST_F(Pgp, TheMessagesOfPgpAreItsOutput) {
  UsePgp();
  LetMessagesPass();
  Child("SAYS", "Good signature.\r\n");
  Child("WARNS", "lost\r\n");
  PgpDecrypt("t", "", nullptr, 0);
  EXPECT_STREQ(PgpGetInfo(), "Good signature.\r\n");
}

TEST_F(Pgp, TheHostMayGiveOtherMessages) {
  UseGnupg();
  Child("SAYS", "raw $PgpIn line\r\nraw\r\n");
  host_.Expect(315).Text("raw $PgpIn line\r\nraw\r\n").Answer(0);
  host_.Expect(316)
      .Text("raw $PgpIn line\r\nraw\r\n")
      .Answer(std::string("made readable\r\n$PgpOut.asc\r\n"));
  PgpEncrypt("t", "a");
  EXPECT_STREQ(PgpGetInfo(), "made readable\r\n");
  host_.Expect(315).Any().Answer(0);
  host_.Expect(316).Any().Answer(0);
  PgpEncrypt("t", "a");
  EXPECT_STREQ(PgpGetInfo(), "raw\r\n") << "no answer keeps them";
  host_.Expect(315).Any().Answer(1);
  PgpEncrypt("t", "a");
  EXPECT_STREQ(PgpGetInfo(), "raw\r\n") << "the second question is not asked";
  host_.Expect(315).Any().Answer(0);
  host_.Expect(316).Any().Answer(std::string());
  PgpEncrypt("t", "a");
  EXPECT_STREQ(PgpGetInfo(), "") << "an empty answer is one";
}

TEST_F(Pgp, BothQuestionsCarryTheInfoTextItself) {
  UseGnupg();
  Child("SAYS", "raw");
  Slot first = 0;
  host_.Expect(315).Any().Do([&](const Request& request) {
    first = request.block[0];
    EXPECT_EQ(reinterpret_cast<const char*>(first), PgpGetInfo());
    return Slot{0};
  });
  host_.Expect(316).Any().Do([&](const Request& request) {
    EXPECT_EQ(request.block[0], first);
    return first;  // its own text as the answer: copied before the old one goes
  });
  PgpEncrypt("t", "a");
  EXPECT_STREQ(PgpGetInfo(), "raw");
}

TEST_F(Pgp, AHostThatBeginsARunOfItsOwnWhileItIsAskedIsAskedOnWithoutText) {
  UseGnupg();
  Child("SAYS", "raw");
  Child("OUTPUT", "x");
  host_.Expect(315).Text("raw").Do([](const Request&) {
    EXPECT_STREQ(PgpEncryptSign("t", "a", "me", "pw"), "");
    return Slot{0};
  });
  host_.Expect(316).Text("").Answer(0);
  EXPECT_STREQ(PgpEncrypt("t", "a"), "x");
  EXPECT_STREQ(PgpGetInfo(), "");
  host_.ExpectMessages({kInvalidEncrypt});
}

TEST_F(Pgp, NothingSaidIsNotOfferedToTheHost) {
  UseGnupg();
  const int before = host_.received();
  PgpEncrypt("t", "a");
  EXPECT_EQ(host_.received(), before);
}

TEST_F(Pgp, ALargeOutputComesWhole) {
  UseGnupg();
  const std::string large(30000, 'x');  // an environment variable takes no more
  Child("OUTPUT", large);
  EXPECT_EQ(PgpEncrypt("t", "a"), large);
}

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

// --- What cannot be protected, and what must not leak --------------------------------------------------

using PgpThreats = Pgp;

TEST_F(PgpThreats, AQuoteInTheSenderReachesTheCommandLine) {
  UseGnupg();
  PgpSign("t", "me\" --output \"elsewhere", "pw");
  EXPECT_NE(Noted("command").find(" -u\"me\" --output \"elsewhere\" -sat"), std::string::npos)
      << Noted("command");
}

TEST_F(PgpThreats, RecipientsOfPgpMayBeOptions) {
  UsePgp();
  PgpEncrypt("t", "+option a@x");
  EXPECT_EQ(Noted("command"), "pgp +batchmode -o $PgpOut.asc -ea $PgpIn.asc +option a@x");
}

TEST_F(PgpThreats, AProgramInTheCurrentDirectoryComesFirst) {
  for (const char* const name : {"pgp", "gpg"}) {
    InstallPrograms(name);
    PgpSetProgram(name == std::string("gpg"));
    PgpEncrypt("t", "a");
    const std::string program = std::string(name) + ".exe";
    EXPECT_EQ(Noted("path"), ProgramFolder(name) + "\\" + program);
    CopyFileA((ProgramFolder(name) + "\\" + program).c_str(), program.c_str(), FALSE);
    PgpEncrypt("t", "a");
    const auto started = std::filesystem::path(Noted("path"));
    EXPECT_EQ(started.filename(), program);
    EXPECT_TRUE(std::filesystem::equivalent(started.parent_path(), std::filesystem::current_path()))
        << started;
  }
}

TEST_F(PgpThreats, InheritableHandlesOfTheHostReachTheProgram) {
  SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
  for (const char* const name : {"pgp", "gpg"}) {
    InstallPrograms(name);
    PgpSetProgram(name == std::string("gpg"));
    for (SECURITY_ATTRIBUTES* const security : {&inheritable, static_cast<SECURITY_ATTRIBUTES*>(nullptr)}) {
      const HANDLE event = CreateEventA(security, TRUE, FALSE, nullptr);
      Child("EVENT", std::to_string(reinterpret_cast<std::uintptr_t>(event)));
      PgpEncrypt("t", "a");
      EXPECT_EQ(WaitForSingleObject(event, 0) == WAIT_OBJECT_0, security != nullptr) << name;
      CloseHandle(event);
    }
  }
}

TEST_F(PgpThreats, NoMessageHoldsThePassPhrase) {
  PgpSetProgram(0);  // and none is there
  std::string log;
  static std::string* written = &log;
  const void* services[64] = {};
  services[32] = reinterpret_cast<const void*>(+[](const char* text, unsigned) { *written += text; });
  GetWFInfoVersion(services);
  PgpSign("t", "me", "hush hush");
  PgpDecrypt("t", "hush hush", nullptr, 0);
  PgpDecrypt("t", "hush hush", nullptr, 1);
  GetWFInfoVersion(nullptr);
  for (const std::string& message : host_.TakeMessages()) EXPECT_EQ(message.find("hush"), std::string::npos);
  EXPECT_EQ(std::string(PgpGetInfo()).find("hush"), std::string::npos);
  EXPECT_EQ(log.find("hush"), std::string::npos);
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

// --- S/MIME --------------------------------------------------------------------------------------------

TEST_F(Pgp, WithSmimeAnEncryptionGoesToCertificates) {
  InstallPrograms("pgp gpg");
  PgpSetProgram(2);
  BoxCloser boxes;
  EXPECT_STREQ(PgpEncrypt("t", "nobody@nowhere.example"), "");
  ASSERT_EQ(boxes.boxes().size(), 1u);
  EXPECT_NE(boxes.boxes()[0].text.find("nobody@nowhere.example"), std::string::npos) << boxes.boxes()[0].text;
  EXPECT_EQ(Noted("command"), "(no file)");
  EXPECT_STREQ(PgpEncrypt("t", std::string(8192, 'r').c_str()), "") << "parameters are looked at first";
  host_.ExpectMessages({"The recipient parameter string of PgpEncrypt is too long."});
  EXPECT_STREQ(PgpSign("t", nullptr, "pw"), "");
  host_.ExpectMessages({kStringMessageEnglish, kInvalidEncrypt});
}

TEST_F(Pgp, WithSmimeADecryptionIsEmptyAtOnce) {
  InstallPrograms("pgp gpg");
  PgpSetProgram(2);
  EXPECT_STREQ(PgpDecrypt("t", "pw", nullptr, 0), "");
  EXPECT_EQ(Noted("command"), "(no file)");
  EXPECT_EQ(PgpDecrypt(nullptr, "pw", nullptr, 0), nullptr) << "parameters are looked at first";
  host_.ExpectMessages({kStringMessageEnglish, kInvalidDecrypt});
}

}  // namespace
}  // namespace wfinfo_test
