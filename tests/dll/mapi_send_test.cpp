// Simple MAPI: from a caller's mail to the command line that the host receives.
#include "tests/support/mapi_host_win.h"

namespace wfinfo_test {
namespace {

TEST_F(Mapi, TheSettingChoosesTheCommandWord) {
  MapiHost mapi;
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Subject=s body=n To=a@b%2Ec")
      << "nothing set; no signature for that";
  SetMode(0);
  EXPECT_EQ(Send(mapi, "s", "n"), "sendnow Subject=s body=n To=a@b%2Ec");
  SetMode(1);
  EXPECT_EQ(Send(mapi, "s", "n"), "unsentmail Subject=s body=n To=a@b%2Ec");
  SetMode(7);
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Subject=s body=n To=a@b%2Ec");
  Set("MapiSend", REG_BINARY, "\0\0\0", 4);
  EXPECT_EQ(Send(mapi, "s", "n").substr(0, 8), "sendnow ") << "the type is not looked at";
  Set("MapiSend", REG_BINARY, "\0\0", 2);
  EXPECT_EQ(Send(mapi, "s", "n").substr(0, 8), "newmail ") << "another size counts as nothing";
  Set("MapiSend", REG_BINARY, "\0\0\0\0\0\0\0", 8);
  EXPECT_EQ(Send(mapi, "s", "n").substr(0, 8), "newmail ");
}

TEST_F(Mapi, WhatForcesTheDialogAsksForASignatureToo) {
  MapiHost mapi;
  SetMode(0);
  EXPECT_EQ(Send(mapi, "s", nullptr), "newmail Subject=s To=a@b%2Ec template=1 sign=1");
  EXPECT_EQ(Send(mapi, nullptr, "n"), "newmail body=n To=a@b%2Ec sign=1");
  EXPECT_EQ(Send(mapi, "s", "n", MAPI_DIALOG), "newmail Subject=s body=n To=a@b%2Ec sign=1");
  MapiMessage message{};
  message.lpszSubject = Mutable("s");
  message.lpszNoteText = Mutable("n");
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  EXPECT_EQ(mapi.lines.back(), "newmail Subject=s body=n sign=1");
}

TEST_F(Mapi, TheMacroBelongsToTheNewMailWindowThatTheSettingAsksFor) {
  MapiHost mapi;
  Set("MapiSendMacro", REG_SZ, "a b", 4);
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Macro=a%20b Subject=s body=n To=a@b%2Ec");
  for (const DWORD mode : {0u, 1u}) {
    SetMode(mode);
    EXPECT_EQ(Send(mapi, "s", nullptr), "newmail Subject=s To=a@b%2Ec template=1 sign=1") << mode;
  }
  SetMode(2);
  EXPECT_EQ(Send(mapi, "s", nullptr), "newmail Macro=a%20b Subject=s To=a@b%2Ec template=1 sign=1");
  const std::string longest(259, 'm');
  Set("MapiSendMacro", REG_SZ, longest.c_str(), longest.size() + 1);
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Macro=" + longest + " Subject=s body=n To=a@b%2Ec");
  const std::string longer(260, 'm');
  Set("MapiSendMacro", REG_SZ, longer.c_str(), longer.size() + 1);
  EXPECT_EQ(Send(mapi, "s", "n"), "newmail Subject=s body=n To=a@b%2Ec");
}

TEST_F(Mapi, SubjectAndTextBecomeHostText) {
  MapiHost mapi;
  const auto utf8 = [](std::u8string_view text) { return std::string(text.begin(), text.end()); };
  const std::string japanese = Sjis(u8"日本語");
  EXPECT_EQ(Send(mapi, utf8(u8"日本語").c_str(), utf8(u8"é").c_str()),
            "newmail Subject=" + japanese + " body=\x1A\xE9\x80\x85 To=a@b%2Ec");
  EXPECT_EQ(Send(mapi, japanese.c_str(), "plain"), "newmail Subject=" + japanese + " body=plain To=a@b%2Ec");
}

TEST_F(Mapi, MissingAndUnreadableMembersAreNoHarm) {
  MapiHost mapi;
  EXPECT_EQ(MAPISendMail(0, 0, nullptr, 0, 0), 0u);
  MapiMessage message{};
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  message.nRecipCount = 3;
  message.nFileCount = 3;
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  message.lpRecips = reinterpret_cast<lpMapiRecipDesc>(123);
  message.lpFiles = reinterpret_cast<lpMapiFileDesc>(123);
  message.lpszSubject = Mutable(kNumberForText);
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  EXPECT_EQ(MAPISendMail(0, 0, reinterpret_cast<lpMapiMessage>(123), 0, 0), 0u);
  EXPECT_EQ(mapi.lines, std::vector<std::string>(5, "newmail template=1 sign=1"));
  EXPECT_EQ(MAPISendDocuments(0, nullptr, nullptr, nullptr, 0), 0u);
  EXPECT_EQ(MAPISendDocuments(0, Mutable(";"), Mutable(""), nullptr, 0), 0u);
  EXPECT_EQ(mapi.lines.size(), 5u) << "no paths, no mail";
}

TEST_F(Mapi, TextsAreReadToTheirEndAndNotBeyond) {
  MapiHost mapi;
  const Guarded subject("s"), note("n"), name("Jo"), address("SMTP:x"), path("C:\\a"), file_name("a"),
      paths("p;q"), mark(";");
  MapiRecipDesc recipient{0, MAPI_CC, name.get(), address.get(), 0, nullptr};
  MapiFileDesc file{0, 0, 0, path.get(), file_name.get(), nullptr};
  MapiMessage message{};
  message.lpszSubject = subject.get();
  message.lpszNoteText = note.get();
  message.nRecipCount = message.nFileCount = 1;
  message.lpRecips = &recipient;
  message.lpFiles = &file;
  MAPISendMail(0, 0, &message, 0, 0);
  MAPISendDocuments(0, mark.get(), paths.get(), nullptr, 0);
  EXPECT_EQ(mapi.lines, (std::vector<std::string>{"newmail Subject=s body=n Cc=Jo%20%3Cx%3E Attach=C%3A\\a*a",
                                                  "newmail attach=\"p\" attach=\"q\" template=1 sign=1"}));
}

TEST_F(Mapi, RecordsAreReadToTheirEndAndNotBeyond) {
  MapiHost mapi;
  const Guarded message(sizeof(MapiMessage)), recipients(2 * sizeof(MapiRecipDesc)),
      files(sizeof(MapiFileDesc));
  recipients.as<MapiRecipDesc>()[0] = {0, MAPI_BCC, Mutable("a"), nullptr, 0, nullptr};
  recipients.as<MapiRecipDesc>()[1] = {0, MAPI_BCC, Mutable("b"), nullptr, 0, nullptr};
  files.as<MapiFileDesc>()->lpszPathName = Mutable("C:\\a");
  auto& mail = *message.as<MapiMessage>();
  mail.lpszSubject = Mutable("s");
  mail.lpszNoteText = Mutable("n");
  mail.nRecipCount = 2;
  mail.lpRecips = recipients.as<MapiRecipDesc>();
  mail.nFileCount = 1;
  mail.lpFiles = files.as<MapiFileDesc>();
  EXPECT_EQ(MAPISendMail(0, 0, &mail, 0, 0), 0u);
  EXPECT_EQ(mapi.lines.back(), "newmail Subject=s body=n Bcc=a%2C%20b Attach=C%3A\\a");
  mail.nRecipCount = 3;
  mail.nFileCount = 2;
  EXPECT_EQ(MAPISendMail(0, 0, &mail, 0, 0), 0u);
  EXPECT_EQ(mapi.lines.back(), "newmail Subject=s body=n sign=1") << "arrays that reach too far are none";
}

TEST_F(Mapi, ThousandsOfRecipientsAndDocumentsArriveWhole) {
  MapiHost mapi;
  std::vector<MapiRecipDesc> recipients(2000, {0, MAPI_TO, Mutable("a(b"), Mutable("SMTP:c@d"), 0, nullptr});
  MapiMessage message{};
  message.lpszSubject = Mutable("s");
  message.lpszNoteText = Mutable("n");
  message.nRecipCount = 2000;
  message.lpRecips = recipients.data();
  EXPECT_EQ(MAPISendMail(0, 0, &message, 0, 0), 0u);
  std::string expected = "newmail Subject=s body=n To=%22a%28b%22%20%3Cc@d%3E";
  for (int i = 1; i < 2000; ++i) expected += "%2C%20%22a%28b%22%20%3Cc@d%3E";
  EXPECT_EQ(mapi.lines.back(), expected);
  EXPECT_EQ(MAPISendDocuments(0, Mutable(";"), Mutable(std::string(5000, ';').c_str()), nullptr, 0), 0u);
  expected = "newmail";
  for (int i = 0; i <= 5000; ++i) expected += " attach=\"\"";
  EXPECT_EQ(mapi.lines.back(), expected + " template=1 sign=1");
}

TEST_F(Mapi, DocumentsGoAsTheyStand) {
  MapiHost mapi;
  SetMode(0);
  Set("MapiSendMacro", REG_SZ, "m", 2);
  EXPECT_EQ(MAPISendDocuments(0, Mutable(";"), Mutable("C:\\x.doc;C:\\y.doc"), Mutable("x;y"), 0), 0u);
  EXPECT_EQ(MAPISendDocuments(0, nullptr, Mutable("C:\\x;y"), nullptr, 0), 0u);
  EXPECT_EQ(MAPISendDocuments(0, Mutable(kNumberForText), Mutable("C:\\x;y"), nullptr, 0), 0u);
  EXPECT_EQ(mapi.lines,
            (std::vector<std::string>{"newmail attach=\"C:\\x.doc\" attach=\"C:\\y.doc\" template=1 sign=1",
                                      "newmail attach=\"C:\\x;y\" template=1 sign=1",
                                      "newmail attach=\"C:\\x;y\" template=1 sign=1"}));
}

}  // namespace
}  // namespace wfinfo_test
