// Simple MAPI: sessions, names, what is not supported, and the log.
#include "tests/support/mapi_host_win.h"

namespace wfinfo_test {
namespace {

TEST_F(Mapi, ALogonFindsTheRunningHostAndLeavesItRunning) {
  ScriptedHost host;
  LHANDLE session = 0;
  EXPECT_EQ(MAPILogon(0, nullptr, nullptr, 0, 0, &session), 0u);
  EXPECT_EQ(reinterpret_cast<HWND>(session), host.frame());
  EXPECT_EQ(MAPILogon(0, nullptr, nullptr, 0, 0, nullptr), 0u);
  host.ExpectCommand(40143);
  EXPECT_EQ(MAPILogon(0, nullptr, nullptr, MAPI_FORCE_DOWNLOAD, 0, &session), 0u);
  host.Verify();
  EXPECT_EQ(MAPILogoff(session, 0, 0, 0), 0u);
  MSG message;
  EXPECT_FALSE(PeekMessageA(&message, host.frame(), WM_CLOSE, WM_CLOSE, PM_NOREMOVE));
}

TEST_F(Mapi, NamesAreResolvedOnTheSpot) {
  const struct {
    std::string text;
    std::string name;
    std::string address;
  } cases[] = {{"jo@x.jp", "", "jo@x.jp"},
               {"Jo <jo@x.jp>", "Jo", "jo@x.jp"},
               {Sjis(u8"山田") + " <y@x.jp>", Sjis(u8"山田"), "y@x.jp"}};
  for (const auto& row : cases) {
    const Guarded text(row.text);
    lpMapiRecipDesc recipient = nullptr;
    ASSERT_EQ(MAPIResolveName(0, 0, text.get(), MAPI_DIALOG, 0, &recipient), 0u) << row.text;
    EXPECT_EQ(recipient->ulRecipClass, ULONG{MAPI_TO});
    EXPECT_EQ(recipient->lpszName, row.name);
    EXPECT_EQ(recipient->lpszAddress, row.address);
    EXPECT_EQ(recipient->ulEIDSize, row.address.size());
    EXPECT_EQ(recipient->lpEntryID, recipient->lpszAddress);
    EXPECT_EQ(LocalSize(recipient), 1064u);
    EXPECT_EQ(recipient->lpszName, reinterpret_cast<char*>(recipient) + 40);
    EXPECT_EQ(recipient->lpszAddress, reinterpret_cast<char*>(recipient) + 552);
    MAPIFreeBuffer(recipient);
  }
  for (const char* text : {static_cast<const char*>(nullptr), kNumberForText, "", "a <b", "a <b> c"}) {
    auto* recipient = reinterpret_cast<lpMapiRecipDesc>(42);
    EXPECT_EQ(MAPIResolveName(0, 0, Mutable(text), 0, 0, &recipient), 14u);
    EXPECT_EQ(recipient, reinterpret_cast<lpMapiRecipDesc>(42));
  }
  EXPECT_EQ(MAPIResolveName(0, 0, Mutable("a@b"), 0, 0, nullptr), 14u);
}

TEST_F(Mapi, WhatIsNotSupportedTellsSoAndSucceeds) {
  ScriptedHost host;
  BoxCloser closer;
  EXPECT_EQ(MAPIAddress(0, 0, nullptr, 0, nullptr, 0, nullptr, 0, 0, nullptr, nullptr), 0u);
  EXPECT_EQ(MAPIDetails(0, 0, nullptr, 0, 0), 0u);
  EXPECT_EQ(MAPISaveMail(0, 0, nullptr, 0, 0, nullptr), 0u);
  const auto boxes = closer.boxes();
  ASSERT_EQ(boxes.size(), 3u);
  const char* const names[] = {"MAPIAddress", "MAPIDetails", "MAPISaveMail"};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(boxes[i].text, "TamarinMail: " + std::string(names[i]) +
                                 " called but this MAPI api is not supported by TamarinMail.");
  }
}

TEST_F(Mapi, TheLogTellsWhatWasDone) {
  MapiHost mapi;
  const LogLines log;
  Send(mapi, "the subject", "the text");
  EXPECT_EQ(log.Take(), (std::vector<std::string>{"MAPISendMail64", "Addr = SMTP:a@b.c",
                                                  "subject=the subject", "body=the text"}));
  MAPILogon(0, nullptr, nullptr, 5, 0, nullptr);
  MAPILogoff(0, 0, 0, 0);
  MAPIFreeBuffer(nullptr);
  EXPECT_EQ(log.Take(), (std::vector<std::string>{"MapiLogon64 flFlags=5", "MapiLogon ret", "MAPILogoff64",
                                                  "MAPIFreeBuffer64", "ret"}));
  mapi.host.ExpectCommand(40143);
  MAPILogon(0, nullptr, nullptr, MAPI_FORCE_DOWNLOAD, 0, nullptr);
  EXPECT_EQ(log.Take(), (std::vector<std::string>{"MapiLogon64 flFlags=4096", "MapiLogon: receive all",
                                                  "MapiLogon: receive all done", "MapiLogon ret"}));
  MAPIResolveName(0, 0, nullptr, 0, 0, nullptr);
  MAPISendDocuments(0, nullptr, nullptr, nullptr, 0);
  EXPECT_EQ(log.Take(), (std::vector<std::string>{"MAPIResolveName64", "MAPISendDocuments64"}));
}

TEST_F(Mapi, TheLogTellsAllPartsOfAMail) {
  MapiHost mapi;
  Set("MapiSendMacro", REG_SZ, "m", 2);
  MapiRecipDesc recipients[] = {{0, MAPI_TO, Mutable("Jo"), Mutable("x"), 0, nullptr},
                                {0, 9, Mutable("Al"), nullptr, 0, nullptr}};
  MapiFileDesc file{0, 0, 0, Mutable("C:\\a"), Mutable("b"), nullptr};
  MapiMessage message{};
  message.lpszSubject = Mutable("s");
  message.lpszNoteText = Mutable("n");
  message.nRecipCount = 2;
  message.lpRecips = recipients;
  message.nFileCount = 1;
  message.lpFiles = &file;
  const LogLines log;
  MAPISendMail(0, 0, &message, 0, 0);
  EXPECT_EQ(log.Take(), (std::vector<std::string>{"MAPISendMail64", "Addr = x", "Name = Jo", "Name = Al",
                                                  "macro=m", "subject=s", "body=n", "attach=C:\\a"}));
}

TEST_F(Mapi, WhatIsNotSupportedIsLoggedInTheHostsLanguage) {
  ScriptedHost host;
  BoxCloser closer;
  const LogLines log;
  MAPISaveMail(0, 0, nullptr, 0, 0, nullptr);
  host.SetLanguage(Language::kJapanese);
  MAPIAddress(0, 0, nullptr, 0, nullptr, 0, nullptr, 0, 0, nullptr, nullptr);
  MAPIDetails(0, 0, nullptr, 0, 0);
  const std::string rest =
      Sjis(u8" が呼び出されましたが、このMAPI APIはタマリンメールではサポートされていません。");
  EXPECT_EQ(log.Take(),
            (std::vector<std::string>{
                "MAPISaveMail64",
                "TamarinMail: MAPISaveMail called but this MAPI api is not supported by TamarinMail.",
                "MAPIAddress64", Sjis(u8"タマリンメール: MAPIAddress") + rest, "MAPIDetails64",
                Sjis(u8"タマリンメール: MAPIDetails") + rest}));
}

}  // namespace
}  // namespace wfinfo_test
