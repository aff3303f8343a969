// The account functions against a host that lends a record.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <set>

#include "tests/support/account_loan_win.h"
#include "tests/support/bad_texts.h"

namespace wfinfo_test {
namespace {

struct GoldenKey {
  const char* word;
  std::size_t offset;
  std::size_t width;
  char holds;
  unsigned mask;
  char access;
};
constexpr GoldenKey kGolden[] = {
#include "tests/golden/account_keys.inc"
};

const char* const kTextKeys[] = {"szNewTemplate", "szReplyTemplate", "szForwardTemplate", "szSignature"};

const Texts kNotLoadedForSet = {"SetAccoutProp called even through LoadAccountProp is not called.",
                                u8"LoadAccountPropされてないのにSetAccoutPropが呼ばれました。"};
const Texts kUnknownKey = {"Unknown 1st parameter specified to GetAccountProp.",
                           u8"GetAccountPropで未知のパラメータが指定されました。"};
const Texts kPassword = {"An attempt to refer passwords by GetAccoutParam.",
                         u8"GetAccoutParamでパスワードを参照しようとしました。"};
const Texts kNotZeroOrOne = {"An attempt to set other than 0/1 to a flag property.",
                             u8"SetAccoutPropでフラグに0/1以外を設定しようとしました。"};

std::string Upper(std::string word) {
  std::transform(word.begin(), word.end(), word.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? c - 32 : c; });
  return word;
}

std::string Letters(std::size_t length) {
  std::string text;
  for (std::size_t i = 0; i < length; ++i) text += static_cast<char>('a' + i % 23);
  return text;
}

TEST_F(Account, WithoutALoanNothingIsReadOrWritten) {
  ExpectReports(host, {kNotLoadedForGet}, [] { EXPECT_EQ(GetAccountProp("szTitle"), 0); });
  ExpectReports(host, {kNotLoadedForSet}, [] { EXPECT_EQ(SetAccountProp("fDialup", 1), 0); });
  for (const char* bad : BadTexts()) {
    ExpectReports(host, {kNotLoadedForGet}, [bad] { EXPECT_EQ(GetAccountProp(bad), 0); });
    ExpectReports(host, {kNotLoadedForSet}, [bad] { EXPECT_EQ(SetAccountProp(bad, 1), 0); });
  }
  EXPECT_EQ(SaveAccountProp(), 0);
  EXPECT_EQ(host.received(), 0);
}

TEST_F(Account, AnUnknownAccountIsNotLoaded) {
  host.Expect(75).Text("Nobody").Answer(0);
  EXPECT_EQ(LoadAccountProp("Nobody"), 0);
  ExpectReports(host, {kNotLoadedForGet}, [] { EXPECT_EQ(GetAccountProp("szTitle"), 0); });
}

TEST_F(Account, ABadAccountNameSendsNothing) {
  for (const char* bad : BadTexts()) {
    ExpectReports(host, {kNoTextMessage}, [bad] { EXPECT_EQ(LoadAccountProp(bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [bad] { EXPECT_EQ(MakeAccount(bad), 0); });
  }
  EXPECT_EQ(host.received(), 0);
}

TEST_F(Account, LoadingAnotherGivesTheFirstBackUnsaved) {
  Load();
  std::vector<char> other(kRecordSize, '\0');
  host.Expect(77).Int(AsValue(record()));
  host.Expect(75).Text("Work").Answer(AsValue(other.data()));
  EXPECT_EQ(LoadAccountProp("Work"), 1);
  EXPECT_EQ(AsText(GetAccountProp("szTitle")), other.data());
  host.Expect(77).Int(AsValue(other.data()));
  host.Expect(75).Text("Nobody").Answer(0);
  EXPECT_EQ(LoadAccountProp("Nobody"), 0);
  loaded_ = false;
  EXPECT_EQ(SaveAccountProp(), 0);
}

TEST_F(Account, ABadNameStillEndsTheLoanBefore) {
  Load();
  host.Expect(77).Int(AsValue(record()));
  EXPECT_EQ(LoadAccountProp(nullptr), 0);
  host.ExpectMessages({kStringMessageEnglish});
  loaded_ = false;
  ExpectReports(host, {kNotLoadedForGet}, [] { EXPECT_EQ(GetAccountProp("szTitle"), 0); });
}

TEST_F(Account, EveryNumberAndFlagIsStoredWhereTheHostExpectsIt) {
  Load();
  for (const GoldenKey& key : kGolden) {
    if (key.holds == 't' || key.access == 'r' || key.offset == 1386) continue;
    for (const char fill : {'\0', '\xFF'}) {
      std::fill_n(record(), kRecordSize, fill);
      for (const long long value : {1, 0}) {
        const auto before = record_;
        EXPECT_EQ(SetAccountProp(key.word, value), 1) << key.word;
        const unsigned wide = static_cast<unsigned char>(before[key.offset]);
        const unsigned bits = value != 0 ? wide | key.mask : wide & ~key.mask;
        EXPECT_EQ(At(key.offset), key.mask == 0 ? value : bits) << key.word;
        for (const std::size_t offset : Changed(before)) EXPECT_EQ(offset, key.offset) << key.word;
        EXPECT_EQ(GetAccountProp(Upper(key.word).c_str()), value) << key.word;
      }
    }
  }
}

TEST_F(Account, FlagsTakeZeroAndOneOnly) {
  Load();
  for (const GoldenKey& key : kGolden) {
    if (key.holds == 't' || key.access == 'r') continue;
    const auto before = record_;
    for (const long long value : {2LL, -1LL, 256LL, 0x100000000LL}) {
      if (key.holds == 'f') {
        ExpectReports(host, {kNotZeroOrOne},
                      [&] { EXPECT_EQ(SetAccountProp(key.word, value), 0) << key.word; });
        EXPECT_EQ(record_, before) << key.word;
      } else {
        EXPECT_EQ(SetAccountProp(key.word, value), 1) << key.word;
        EXPECT_EQ(At(key.offset), static_cast<unsigned char>(value)) << key.word;
      }
    }
  }
}

TEST_F(Account, NumbersAreCutToTheirByteAndOneHasASign) {
  Load();
  EXPECT_EQ(SetAccountProp("nAccountIcon", 300), 1);
  EXPECT_EQ(GetAccountProp("nAccountIcon"), 44);
  EXPECT_EQ(SetAccountProp("nAccountIcon", 255), 1);
  EXPECT_EQ(GetAccountProp("nAccountIcon"), 255);
  EXPECT_EQ(SetAccountProp("nSendableMailInMinute", 255), 1);
  EXPECT_EQ(GetAccountProp("nSendableMailInMinute"), -1);
}

TEST_F(Account, ReadOnlyKeysAreNamedAsTheCallerSpelledThem) {
  Load();
  ExpectReports(host,
                {{"A read-only property specified at SetAccountProp. parameter=faesENCRYPT",
                  u8"SetAccountPropで、書き込み禁止のパラメータが指定されました。パラメータ=faesENCRYPT"}},
                [] { EXPECT_EQ(SetAccountProp("faesENCRYPT", 0), 0); });
  record()[3413] = 0x04;
  EXPECT_EQ(GetAccountProp("fAesEncrypt"), 1);
  int read_only = 0;
  for (const GoldenKey& key : kGolden) {
    if (key.access != 'r') continue;
    ++read_only;
    EXPECT_EQ(SetAccountProp(key.word, 2), 0);
    EXPECT_EQ(host.TakeMessages().size(), 1u) << "the read-only message comes before the 0/1 message";
  }
  EXPECT_EQ(read_only, 1);
}

TEST_F(Account, EveryTextIsStoredWhenItsEndFits) {
  Load();
  for (const GoldenKey& key : kGolden) {
    if (key.holds != 't' || std::string(key.word) == "szPop3Password" ||
        std::string(key.word) == "szBccEmail")
      continue;
    std::fill_n(record(), kRecordSize, '\x33');
    const auto before = record_;
    EXPECT_EQ(SetAccountProp(key.word, AsValue(Letters(key.width).c_str())), 0) << key.word;
    EXPECT_EQ(record_, before) << key.word;
    const std::string longest = Letters(key.width - 1);
    EXPECT_EQ(SetAccountProp(key.word, AsValue(longest.c_str())), 1) << key.word;
    EXPECT_STREQ(record() + key.offset, longest.c_str());
    for (const std::size_t offset : Changed(before)) {
      EXPECT_TRUE(offset >= key.offset && offset < key.offset + key.width) << key.word << " " << offset;
    }
    if (key.access != 'w') continue;
    EXPECT_EQ(AsText(GetAccountProp(Upper(key.word).c_str())), record() + key.offset) << key.word;
  }
}

TEST_F(Account, PasswordsAreWrittenButNotRead) {
  Load();
  for (const char* key :
       {"szPop3Password", "SZPOP3PASSWORD", "szpop3password", "szSmtpPassword", "szsmtpPASSWORD"}) {
    EXPECT_EQ(SetAccountProp(key, AsValue("secret")), 1) << key;
    ExpectReports(host, {kPassword}, [key] { EXPECT_EQ(GetAccountProp(key), 0) << key; });
  }
  EXPECT_STREQ(record() + 560, "secret");
  EXPECT_STREQ(record() + 1212, "secret");
}

TEST_F(Account, ALongPasswordGoesOnInItsOverflow) {
  Load();
  const struct {
    std::size_t length;
    int result;
    std::size_t first, second;
  } cases[] = {{0, 1, 0, 0},      {79, 1, 79, 0},    {80, 1, 79, 1},
               {206, 1, 79, 127}, {207, 0, 79, 127}, {3, 1, 3, 0}};
  for (const auto& c : cases) {
    const std::string text = Letters(c.length);
    EXPECT_EQ(SetAccountProp("szPop3Password", AsValue(text.c_str())), c.result) << c.length;
    EXPECT_EQ(std::strlen(record() + 560), c.first) << c.length;
    EXPECT_EQ(std::strlen(record() + 4520), c.second) << c.length;
    if (c.result == 0) continue;
    EXPECT_EQ(record() + 560 + std::string(record() + 4520), text) << c.length;
  }
}

TEST_F(Account, ALongBccAddressIsSplitAndJoined) {
  Load();
  const std::size_t field = 1976;
  for (const std::size_t length : {0u, 1u, 79u, 80u, 81u, 157u, 158u}) {
    const std::string text = Letters(length);
    EXPECT_EQ(SetAccountProp("szBccEmail", AsValue(text.c_str())), 1) << length;
    EXPECT_STREQ(AsText(GetAccountProp("SZBCCEMAIL")), text.c_str()) << length;
    EXPECT_EQ(std::strlen(record() + field), length < 80 ? length : 79) << length;
    EXPECT_EQ(std::strlen(record() + 4776), length < 80 ? 0 : length - 79) << length;
  }
  const auto before = record_;
  EXPECT_EQ(SetAccountProp("szBccEmail", AsValue(Letters(159).c_str())), 0);
  EXPECT_EQ(record_, before);
  const char* const joined = AsText(GetAccountProp("szBccEmail"));
  EXPECT_TRUE(joined < record() || joined > record() + kRecordSize) << "a buffer of the library";
}

TEST_F(Account, AnAliasOf300CharactersLosesTheOneAt255) {
  Load();
  const struct {
    std::size_t length;
    int result;
    std::size_t first, second;
  } cases[] = {{5, 1, 5, 0},      {255, 1, 255, 0},    {256, 1, 255, 0},    {257, 1, 255, 1},
               {300, 1, 255, 44}, {1022, 1, 255, 766}, {1023, 0, 255, 766}, {0, 1, 0, 0}};
  for (const auto& c : cases) {
    const std::string text = Letters(c.length);
    EXPECT_EQ(SetAccountProp("SzEmailAlias", AsValue(text.c_str())), c.result) << c.length;
    EXPECT_EQ(std::strlen(record() + 1476), c.first) << c.length;
    EXPECT_EQ(std::strlen(record() + 3752), c.second) << c.length;
    if (c.result == 0) continue;
    const std::string kept = c.length < 256 ? text : text.substr(0, 255) + text.substr(256);
    EXPECT_STREQ(AsText(GetAccountProp("szEmailAlias")), kept.c_str()) << c.length;
  }
}

TEST_F(Account, SavingUidlsIsForcedWhileSynchronisingNeedsIt) {
  Load();
  EXPECT_EQ(SetAccountProp("fImapSync", 1), 1);
  EXPECT_EQ(SetAccountProp("fSaveUidlInMail", 0), 1);
  EXPECT_EQ(GetAccountProp("fSaveUidlInMail"), 1);
  for (const GoldenKey& key : kGolden) {
    if (key.offset != 1386 || key.mask == 1) continue;
    record()[1386] = 0;
    EXPECT_EQ(SetAccountProp(key.word, 1), 1) << key.word;
    EXPECT_EQ(At(1386), key.mask | 1) << key.word;
    EXPECT_EQ(SetAccountProp(key.word, 0), 1) << key.word;
    EXPECT_EQ(At(1386), 1) << key.word;
  }
}

TEST_F(Account, OverlappingMasksAreLeftAsTheyAre) {
  Load();
  EXPECT_EQ(SetAccountProp("fTLS12", 1), 1);
  EXPECT_EQ(GetAccountProp("fNotSSL20"), 1);
  EXPECT_EQ(SetAccountProp("fNotSSL20", 0), 1);
  EXPECT_EQ(GetAccountProp("fTLS12"), 0);
}

TEST_F(Account, UnknownAndBadKeysAreRefused) {
  Load();
  const auto before = record_;
  for (const char* key : {"", "szUnknown", "fImap", "szTitle "}) {
    ExpectReports(host, {kUnknownKey}, [key] { EXPECT_EQ(GetAccountProp(key), 0); });
    EXPECT_EQ(SetAccountProp(key, AsValue("text")), 0) << "without a message";
    ExpectReports(host, {kNoTextMessage}, [key] { EXPECT_EQ(SetAccountProp(key, 1), 0); });
  }
  for (const char* bad : BadTexts()) {
    ExpectReports(host, {kNoTextMessage, kUnknownKey}, [bad] { EXPECT_EQ(GetAccountProp(bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [bad] { EXPECT_EQ(SetAccountProp(bad, 0), 0); });
    for (const char* key :
         {"szHeloHost", "szBccEmail", "szPop3Password", "szEmailAlias", "szSignature", "other"}) {
      ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetAccountProp(key, AsValue(bad)), 0) << key; });
    }
  }
  EXPECT_EQ(record_, before);
}

TEST_F(Account, TextsAreFetchedOnce) {
  Load();
  for (int kind = 0; kind < 4; ++kind) {
    const std::string text = "text " + std::to_string(kind);
    host.Expect(111).Int(kind).Pointer(record()).Null().Text("").Answer(text);
    const char* const first = AsText(GetAccountProp(Upper(kTextKeys[kind]).c_str()));
    EXPECT_STREQ(first, text.c_str());
    EXPECT_EQ(AsText(GetAccountProp(kTextKeys[kind])), first);
  }
}

TEST_F(Account, ATextThatTheHostDoesNotHaveIsEmpty) {
  Load();
  host.Expect(111).Int(3).Pointer(record()).Null().Text("").Answer(0);
  EXPECT_STREQ(AsText(GetAccountProp("szSignature")), "");
  EXPECT_STREQ(AsText(GetAccountProp("szSignature")), "");
}

TEST_F(Account, ASetTextIsReadBackWithoutTheHost) {
  Load();
  host.Expect(111).Int(3).Pointer(record()).Null().Text("").Answer("old");
  EXPECT_STREQ(AsText(GetAccountProp("szSignature")), "old");
  EXPECT_EQ(SetAccountProp("szSignature", AsValue("new")), 1);
  EXPECT_STREQ(AsText(GetAccountProp("szSignature")), "new");
  const std::string large(1 << 20, 'x');
  EXPECT_EQ(SetAccountProp("szSignature", AsValue(large.c_str())), 1);
  EXPECT_EQ(SetAccountProp("szSignature", GetAccountProp("szSignature")), 1) << "a text may be set to itself";
  EXPECT_EQ(AsText(GetAccountProp("szSignature")), large);
}

TEST_F(Account, ChangedTextsAreStoredInOrderAfterTheRecord) {
  Load();
  const auto lend_address = [this](const Request& request) {
    EXPECT_EQ(request.block[0], AsValue(record()));
    std::fill_n(record(), kRecordSize, '\x7F');  // the record is the host's again
    return 5LL;
  };
  host.Expect(111).Int(1).Pointer(record()).Null().Text("").Answer("read only");
  GetAccountProp("szReplyTemplate");
  SetAccountProp("szSignature", AsValue("signature"));
  SetAccountProp("szNewTemplate", AsValue("first"));
  SetAccountProp("szNewTemplate", AsValue("second"));
  host.Expect(76).Do(lend_address);
  host.Expect(112).Int(0).Text("Home").Null().Text("").Text("second");
  host.Expect(112).Int(3).Text("Home").Null().Text("").Text("signature");
  EXPECT_EQ(SaveAccountProp(), 5);
  loaded_ = false;
  EXPECT_EQ(SaveAccountProp(), 0) << "nothing is lent any more";
}

TEST_F(Account, AFailedSaveStoresNoTextAndEndsTheLoan) {
  Load();
  SetAccountProp("szSignature", AsValue("lost"));
  host.Expect(76).Int(AsValue(record())).Answer(0);
  EXPECT_EQ(SaveAccountProp(), 0);
  loaded_ = false;
  // The next loan starts without changed texts.
  Load();
  host.Expect(111).Int(3).Pointer(record()).Null().Text("").Answer("kept");
  EXPECT_STREQ(AsText(GetAccountProp("szSignature")), "kept");
  host.Expect(76).Int(AsValue(record())).Answer(1);
  EXPECT_EQ(SaveAccountProp(), 1);
  loaded_ = false;
}

TEST_F(Account, AnAccountIsMadeByTheFrame) {
  for (const long long answer : {1LL, 0LL, -1LL}) {
    host.Expect(78).Text("New account").Answer(answer);
    EXPECT_EQ(MakeAccount("New account"), answer);
  }
  host.SetActiveView(host.OpenOuterView());
  EXPECT_EQ(MakeAccount("New account"), 0) << "not on an editor";
  EXPECT_EQ(host.TakeMessages().size(), 1u);
}

}  // namespace
}  // namespace wfinfo_test
