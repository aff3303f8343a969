// PGP and GnuPG through the exports, with a recording child program: what it is given, what comes back, what
// must not leak.
#include "tests/support/pgp_exports_win.h"

namespace wfinfo_test {
namespace {

TEST(PgpState, BeforeAnyRunIsZeroAndEmpty) {
  EXPECT_EQ(PgpGetExitCode(), 0);
  EXPECT_EQ(GetLastSMIMESigned(), 0);
  EXPECT_STREQ(PgpGetInfo(), "");
}

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
