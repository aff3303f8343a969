// Loans of account records within loans: macros that run while one begins or ends, and IsImapSyncAccount beside one.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "tests/support/account_loan_win.h"

namespace wfinfo_test {
namespace {

// --- Macros that run while a loan begins or ends ---

TEST_F(Account, ALoanThatAMacroBeginsWhileTheOneBeforeEndsIsGivenBack) {
  Load();
  std::vector<char> nested(kRecordSize, '\0');
  std::vector<char> work(kRecordSize, '\0');
  host.Expect(77).Int(AsValue(record())).Do([&](const Request&) {
    ExpectReports(host, {kNotLoadedForGet}, [] { EXPECT_EQ(GetAccountProp("szTitle"), 0); });
    EXPECT_EQ(SaveAccountProp(), 0) << "it is given back once";
    host.Expect(75).Text("Nested").Answer(AsValue(nested.data()));
    EXPECT_EQ(LoadAccountProp("Nested"), 1);
    EXPECT_EQ(AsText(GetAccountProp("szTitle")), nested.data());
    host.Expect(75).Text("Work").Answer(AsValue(work.data()));
    host.Expect(77).Int(AsValue(nested.data()));
    return 0LL;
  });
  EXPECT_EQ(LoadAccountProp("Work"), 1);
  host.Verify();
  EXPECT_EQ(AsText(GetAccountProp("szTitle")), work.data());
  host.Expect(77).Int(AsValue(work.data()));
  EXPECT_EQ(LoadAccountProp(nullptr), 0);
  loaded_ = false;
  host.ExpectMessages({kStringMessageEnglish});
}

TEST_F(Account, ATextThatComesAfterAMacroHasLoadedAnotherAccountIsNotTheOtherOnes) {
  Load();
  std::vector<char> work(kRecordSize, '\0');
  char text_of_home[] = "signature of Home";
  host.Expect(111).Int(3).Pointer(record()).Null().Text("").Do([&](const Request&) {
    host.Expect(77).Int(AsValue(record()));
    host.Expect(75).Text("Work").Answer(AsValue(work.data()));
    EXPECT_EQ(LoadAccountProp("Work"), 1);
    return AsValue(text_of_home);
  });
  EXPECT_STREQ(AsText(GetAccountProp("szSignature")), text_of_home);
  host.Expect(111).Int(3).Pointer(work.data()).Null().Text("").Answer("signature of Work");
  EXPECT_STREQ(AsText(GetAccountProp("szSignature")), "signature of Work");
  host.Verify();
  host.Expect(76).Int(AsValue(work.data())).Answer(0);
  EXPECT_EQ(SaveAccountProp(), 0);
  loaded_ = false;
}

TEST_F(Account, ALoanEndsUnheardOfWhileADialogRefusesRequests) {
  const struct {
    const char* why;
    std::function<int()> call;
  } cases[] = {{"LoadAccountProp", [] { return LoadAccountProp("Work"); }},
               {"SaveAccountProp", [] { return SaveAccountProp(); }}};
  for (const auto& c : cases) {
    Load();
    const int before = host.received();
    const HWND dialog = host.OpenDialog(host.frame(), true);
    {
      BoxCloser closer;
      EXPECT_EQ(c.call(), 0) << c.why;
      EXPECT_EQ(closer.boxes().size(), 1u) << c.why;
    }
    EXPECT_EQ(host.received(), before) << c.why;
    DestroyWindow(dialog);
    EnableWindow(host.frame(), TRUE);
    SetActiveWindow(host.frame());
    loaded_ = false;
    ExpectReports(host, {kNotLoadedForGet}, [] { EXPECT_EQ(GetAccountProp("szTitle"), 0); });
  }
}

TEST_F(Account, ALoanThatAMacroBeginsWhileAnotherBeginsIsGivenBack) {
  for (const bool exists : {true, false}) {
    std::vector<char> nested(kRecordSize, '\0');
    host.Expect(75).Text("Home").Do([&](const Request&) {
      host.Expect(75).Text("Nested").Answer(AsValue(nested.data()));
      EXPECT_EQ(LoadAccountProp("Nested"), 1);
      host.Expect(77).Int(AsValue(nested.data()));
      return exists ? AsValue(record()) : 0LL;
    });
    EXPECT_EQ(LoadAccountProp("Home"), exists ? 1 : 0);
    host.Verify();
    loaded_ = exists;
    GiveBack();
  }
}

TEST_F(Account, ASavedAccountKeepsItsOwnTextsWhenAMacroLoadsAnother) {
  for (const int code : {76, 112}) {
    Load();
    SetAccountProp("szNewTemplate", AsValue("first of Home"));
    SetAccountProp("szSignature", AsValue("signature of Home"));
    std::vector<char> work(kRecordSize, '\0');
    const auto macro = [&](const Request& request) {
      if (request.code != code) return 1LL;
      EXPECT_EQ(SaveAccountProp(), 0) << "it is saved once";
      host.Expect(75).Text("Work").Answer(AsValue(work.data()));
      EXPECT_EQ(LoadAccountProp("Work"), 1);
      SetAccountProp("szSignature", AsValue("signature of Work"));
      if (code == 76) host.Expect(112).Int(0).Text("Home").Null().Text("").Text("first of Home");
      host.Expect(112).Int(3).Text("Home").Null().Text("").Text("signature of Home");
      return 1LL;
    };
    host.Expect(76).Int(AsValue(record())).Do(macro);
    if (code == 112) host.Expect(112).Int(0).Text("Home").Null().Text("").Text("first of Home").Do(macro);
    EXPECT_EQ(SaveAccountProp(), 1);
    host.Verify();
    EXPECT_EQ(AsText(GetAccountProp("szTitle")), work.data()) << "the macro's loan stays";
    EXPECT_STREQ(AsText(GetAccountProp("szSignature")), "signature of Work");
    host.Expect(76).Int(AsValue(work.data())).Answer(0);
    EXPECT_EQ(SaveAccountProp(), 0);
    loaded_ = false;
  }
}

// --- IsImapSyncAccount beside a loan ---

constexpr std::size_t kSynchronising = 1386;
constexpr char kImapSyncBit = 0x04;

TEST_F(Account, TheLoadedAccountTellsOfImapByItsLoadedRecord) {
  Load();
  EXPECT_EQ(IsImapSyncAccount("Home"), 0);
  EXPECT_EQ(SetAccountProp("fImapSync", 1), 1);
  EXPECT_EQ(IsImapSyncAccount("Home"), 1) << "set, though not saved";
  EXPECT_EQ(host.received(), 1) << "only the loan";
  EXPECT_EQ(SetAccountProp("szTitle", AsValue("Work")), 1);
  EXPECT_EQ(IsImapSyncAccount("Home"), 1) << "it has this name until it is saved";
  std::vector<char> work(kRecordSize, '\0');
  std::strcpy(work.data(), "Work");
  host.Expect(75).Text("Work").Answer(AsValue(work.data()));
  host.Expect(77).Int(AsValue(work.data()));
  EXPECT_EQ(IsImapSyncAccount("Work"), 0) << "that is another account";
}

TEST_F(Account, AnotherAccountIsBorrowedBesideTheLoan) {
  Load();
  std::vector<char> work(kRecordSize, '\0');
  std::strcpy(work.data(), "Work");
  work[kSynchronising] = kImapSyncBit;
  host.Expect(75).Text("Work").Answer(AsValue(work.data()));
  host.Expect(77).Int(AsValue(work.data())).Do([&](const Request& request) {
    EXPECT_EQ(request.block[0], AsValue(work.data()));
    std::fill(work.begin(), work.end(), '\x7F');  // the host's again
    request.block[0] = 0;                         // as a host may mark it
    return 1LL;
  });
  EXPECT_EQ(IsImapSyncAccount("Work"), 1);
  EXPECT_EQ(AsText(GetAccountProp("szTitle")), record()) << "the loan stays";
  host.Expect(75).Text("Nobody").Answer(0);
  EXPECT_EQ(IsImapSyncAccount("Nobody"), 0);
  EXPECT_EQ(GetAccountProp("fImapSync"), 0);
}

TEST_F(Account, ARecordThatIsLentTwiceIsNotGivenBack) {
  Load();
  record()[kSynchronising] = kImapSyncBit;
  host.Expect(75).Text("HOME").Answer(AsValue(record()));
  EXPECT_EQ(IsImapSyncAccount("HOME"), 1);
  host.Verify();
  EXPECT_EQ(GetAccountProp("fImapSync"), 1);
}

TEST_F(Account, ACopyOfTheLoadedAccountIsGivenBackAndTheLoanIsRead) {
  Load();
  std::vector<char> copy(record_.begin(), record_.begin() + kRecordSize);
  EXPECT_EQ(SetAccountProp("fImapSync", 1), 1);
  host.Expect(75).Text("HOME").Answer(AsValue(copy.data()));
  host.Expect(77).Int(AsValue(copy.data()));
  EXPECT_EQ(IsImapSyncAccount("HOME"), 1);
}

Slot HandleSlot(HWND window) { return static_cast<Slot>(reinterpret_cast<INT_PTR>(window)); }

TEST(ImapAccount, AnAccountsImapFlagIsReadFromItsBorrowedRecord) {
  ScriptedHost host;
  static char record[4896];
  record[1386] = 0x04;
  const auto address = HandleSlot(reinterpret_cast<HWND>(record));
  host.Expect(75).Text("home").Answer(address);
  host.Expect(77).Int(address);
  EXPECT_EQ(IsImapSyncAccount("home"), 1);
  record[1386] = 0x03;
  host.Expect(75).Text("home").Answer(address);
  host.Expect(77).Int(address);
  EXPECT_EQ(IsImapSyncAccount("home"), 0);
  host.Expect(75).Text("none").Answer(0);
  EXPECT_EQ(IsImapSyncAccount("none"), 0);
  EXPECT_EQ(IsImapSyncAccount(nullptr), 0);
  host.ExpectMessages({kStringMessageEnglish});
}

}  // namespace
}  // namespace wfinfo_test
