// The accounts file of the small host.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <fstream>

#include "host/base/settings_text.h"
#include "host/files/whole_file.h"
#include "host/user/accounts.h"
#include "src/commands/account_fields.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

TEST(SettingsText, ReadsSectionsAndValues) {
  const SettingsText settings(
      "\xEF\xBB\xBF# first = no\n[ One ]\r\nA = 1\nb= x = y \n; a = 3\na = 2\n\n[two]\n"
      "t=\\sa\\nb\\\\n\\s\nno value\n[one]\na = 9\n");
  EXPECT_EQ(settings.Sections(), (std::vector<std::string>{"One", "two", "one"}));
  struct Case {
    const char* section;
    const char* key;
    std::optional<std::string> expected;
    const char* why;
  };
  const Case cases[] = {
      {"one", "a", "1", "no case counts, the first of two counts"},
      {"One", "B", "x = y", "only the first equals sign"},
      {"One", "first", std::nullopt, "a comment, and not in a section"},
      {"two", "T", " a\r\nb\\n ", "escapes"},
      {"two", "no value", std::nullopt, "no equals sign"},
      {"three", "a", std::nullopt, "no such section"},
  };
  for (const Case& c : cases) EXPECT_EQ(settings.Value(c.section, c.key), c.expected) << c.why;
}

TEST(SettingsText, ChangesOneLineAndLeavesTheRest) {
  SettingsText settings("# top\n[a]\n# about x\nX = 1\n\n[b]\ny=2");
  settings.Set("A", "x", " two\r\nlines\nand \\ ");
  settings.Set("a", "new", "3");
  settings.Set("b", "z", "");
  settings.Set("none", "z", "");
  settings.RenameSection("B", "c");
  settings.AddSection("d");
  settings.Set("d", "k", "v");
  EXPECT_EQ(settings.Text(),
            "# top\r\n[a]\r\n# about x\r\nx = \\stwo\\nlines\\nand \\\\\\s\r\nnew = 3\r\n\r\n[c]\r\ny=2\r\nz "
            "= \r\n\r\n"
            "[d]\r\nk = v\r\n");
  EXPECT_EQ(SettingsText(settings.Text()).Value("a", "X"), " two\r\nlines\r\nand \\ ");
}

TEST(SettingsText, TellsTheLinesThatMeanNothing) {
  const SettingsText settings(
      "# c\nfirst = 1\n[a]\nk = 1\n\nno value\n= 2\n[b\n; c\n[]\nlist = [1]\n[c = d\n");
  std::string told;
  for (const LineComplaint& complaint : settings.Complaints())
    told += std::to_string(complaint.line) + " " + complaint.why + "\n";
  EXPECT_EQ(told,
            "2 it stands in front of the first [section]\n"
            "6 it is neither [section] nor key = value\n"
            "7 it is neither [section] nor key = value\n"
            "8 a section is a name in brackets, [name]\n"
            "10 a section is a name in brackets, [name]\n");
}

TEST(SettingsText, SaysTheSameWhenItIsReadAgain) {
  for (const char* text : {"\xEF\xBB\xBF[a]\nk=1", "\xEF\xBB\xBF\xEF\xBB\xBF[a]\nk=1"}) {
    const SettingsText settings(text);
    EXPECT_EQ(settings.Value("a", "k"), "1");
    EXPECT_EQ(SettingsText(settings.Text()).Text(), settings.Text());
  }
}

TEST(SettingsText, KeepsBlanksAtTheEndsOfAValue) {
  for (const char* value : {" a ", "\ta\t", "\t", " ", "  ", "\t \t", "a\tb", "\\t", "\\s "}) {
    SettingsText settings("[a]\n");
    settings.Set("a", "k", value);
    EXPECT_EQ(SettingsText(settings.Text()).Value("a", "k"), value);
  }
}

TEST(SettingsText, KnowsWhatCanBeASection) {
  for (const char* name : {"a", "a b", "\xE4\xBB\x95"}) EXPECT_TRUE(SettingsText::CanBeSection(name)) << name;
  for (const char* name : {"", " a", "a]", "[a", "a\nb", "a\t"})
    EXPECT_FALSE(SettingsText::CanBeSection(name)) << name;
}

class HostAccounts : public testing::Test {
 protected:
  void SetUp() override {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = fs::temp_directory_path() / ("wrenfold-" + std::to_string(getpid()) + "-" + info->name());
    fs::create_directories(folder_);
    file_ = folder_ / "accounts.txt";
  }
  void TearDown() override { fs::remove_all(folder_); }

  void OpenWith(const std::string& text) {
    std::ofstream(file_, std::ios::binary) << text;
    EXPECT_EQ(store_.Open(file_), std::nullopt);
  }
  std::string FileText() const { return ReadWholeFile(file_).value_or("(unreadable)"); }
  static void SetNumber(char* record, const char* key, long long value) {
    wfinfo::StoreAccountNumber(*wfinfo::FindAccountKey(key), value, record);
  }
  static void SetText(char* record, const char* key, std::string_view value) {
    EXPECT_TRUE(wfinfo::StoreAccountText(*wfinfo::FindAccountKey(key), value, record));
  }

  fs::path folder_;
  fs::path file_;
  AccountStore store_;
};

TEST_F(HostAccounts, AMissingFileHoldsNoAccountsAndIsMadeForTheFirst) {
  EXPECT_EQ(store_.Open(file_), std::nullopt);
  EXPECT_TRUE(store_.Names().empty());
  EXPECT_FALSE(fs::exists(file_));
  EXPECT_EQ(store_.Create("local"), std::nullopt);
  EXPECT_EQ(store_.Create("LOCAL"), "there is an account 'LOCAL' already");
  EXPECT_EQ(store_.Create("a]b"), "'a]b' cannot be the name of an account");
  EXPECT_EQ(store_.Create(""), "an account needs a name");
  EXPECT_EQ(FileText(), "[local]\r\n");
}

TEST_F(HostAccounts, AFolderIsNoFile) { EXPECT_NE(store_.Open(folder_), std::nullopt); }

TEST_F(HostAccounts, AFileInAnotherEncodingIsRefusedWithItsLine) {
  OpenWith("[local]\n");
  std::ofstream(file_, std::ios::binary) << "# \xE5\xB1\xB1\r\n[\x8E\x52]\r\n";
  EXPECT_EQ(store_.Reload(), "the accounts " + file_.string() + " are to be UTF-8: line 2 is not");
  EXPECT_EQ(store_.Names(), std::vector<std::string>{"local"}) << "those that were read before";
}

TEST_F(HostAccounts, ALentRecordHoldsWhatTheFileSays) {
  OpenWith(
      "[local]\nszSecondPop3Server = pop.example.com\nfImapSync = 1\nnSendableMailInMinute = -3\n"
      "szEmailAlias = " +
      std::string(300, 'a') + "\nrecvSrv = junk\n");
  char* record = store_.Lend("Local");
  ASSERT_NE(record, nullptr);
  EXPECT_STREQ(record, "local") << "as the file spells it";
  EXPECT_STREQ(record + 3499, "pop.example.com");
  EXPECT_EQ(record[1386], 0x05) << "fImapSync and the flag that it forces";
  EXPECT_EQ(static_cast<signed char>(record[3620]), -3);
  EXPECT_EQ(record[724], 0);
  EXPECT_EQ(std::strlen(record + 1476), 255u);
  EXPECT_EQ(std::strlen(record + 3752), 44u);
  EXPECT_EQ(store_.Lend("other"), nullptr);
}

TEST_F(HostAccounts, SavingWritesWhatWasChangedAndKeepsTheRest) {
  OpenWith("# mine\r\n[local]\r\nfTLS12 = 1\r\nunknown = kept\r\n\r\n[other]\r\n");
  char* record = store_.Lend("local");
  ASSERT_NE(record, nullptr);
  SetNumber(record, "nAccountIcon", 44);
  SetText(record, "szCcEmail", "c@example.com");
  SetText(record, "szSmtpPassword", "secret");
  EXPECT_EQ(store_.Save(record), std::nullopt);
  EXPECT_EQ(store_.Save(record), "the record is not lent") << "any more";
  EXPECT_EQ(FileText(),
            "# mine\r\n[local]\r\nfTLS12 = 1\r\nunknown = kept\r\nnAccountIcon = 44\r\n"
            "szCcEmail = c@example.com\r\n\r\n[other]\r\n");
  EXPECT_STREQ(store_.Lend("local") + 1212, "secret") << "a password lives as long as the program";
}

TEST_F(HostAccounts, SavingWithoutAChangeKeepsEachLine) {
  const std::string text = "[ one ]\r\n # c\r\nfTLS12=1\r\n";
  OpenWith(text);
  EXPECT_EQ(store_.Save(store_.Lend("one")), std::nullopt);
  EXPECT_EQ(FileText(), text);
}

TEST_F(HostAccounts, ReleasingForgetsTheChanges) {
  OpenWith("[local]\r\n");
  char* const record = store_.Lend("local");
  SetNumber(record, "nAccountIcon", 1);
  EXPECT_TRUE(store_.Release(record));
  EXPECT_FALSE(store_.Release(record)) << "it is lent no more";
  EXPECT_EQ(store_.Lend("local")[3320], 0);
  EXPECT_EQ(FileText(), "[local]\r\n");
}

TEST_F(HostAccounts, AnotherTitleRenamesTheAccount) {
  OpenWith("[local]\r\n[other]\r\n");
  const auto save_as = [this](const char* title) {
    char* const record = store_.Lend("local");
    SetText(record, "szTitle", title);
    return store_.Save(record);
  };
  EXPECT_EQ(save_as("OTHER"), "there is an account 'OTHER' already");
  EXPECT_EQ(save_as(""), "an account needs a name");
  EXPECT_EQ(save_as("home"), std::nullopt);
  EXPECT_EQ(FileText(), "[home]\r\n[other]\r\n");
}

TEST_F(HostAccounts, EachLoanIsARecordOfItsOwn) {
  OpenWith("[local]\r\n[other]\r\nfImapSync = 1\r\n");
  char* const local = store_.Lend("local");
  SetNumber(local, "nAccountIcon", 7);
  char* const other = store_.Lend("other");
  char* const again = store_.Lend("local");
  ASSERT_NE(other, local);
  ASSERT_NE(again, local);
  EXPECT_EQ(other[1386], 0x05);
  EXPECT_EQ(again[3320], 0) << "what was changed in another loan is not saved yet";
  EXPECT_TRUE(store_.Release(other));
  EXPECT_TRUE(store_.Release(again));
  EXPECT_EQ(local[3320], 7);
  EXPECT_EQ(store_.Save(local), std::nullopt);
  EXPECT_EQ(FileText(), "[local]\r\nnAccountIcon = 7\r\n[other]\r\nfImapSync = 1\r\n");
}

TEST_F(HostAccounts, ALoanKnowsItsAccountWhateverItsTitleSays) {
  OpenWith("[local]\r\n[other]\r\n");
  char* const first = store_.Lend("LOCAL");
  char* const second = store_.Lend("local");
  SetText(first, "szTitle", "home");
  EXPECT_EQ(store_.LentName(first), "local");
  EXPECT_EQ(store_.Save(first), std::nullopt);
  EXPECT_EQ(store_.LentName(first), std::nullopt);
  EXPECT_EQ(store_.LentName(second), "home") << "the account has that name since";
  EXPECT_EQ(store_.Save(second), std::nullopt) << "with its title of before, which is free again";
  EXPECT_EQ(FileText(), "[local]\r\n[other]\r\n");
  EXPECT_EQ(store_.LentName(nullptr), std::nullopt);
}

TEST_F(HostAccounts, KeepsTheLongTexts) {
  OpenWith("[local]\r\nszSignature = -- \\nAlice\r\n");
  EXPECT_EQ(store_.Text("local", 3), "-- \r\nAlice");
  EXPECT_EQ(store_.Text("local", 0), "");
  EXPECT_EQ(store_.SetText("local", 0, "Dear\r\n\r\n"), std::nullopt);
  EXPECT_EQ(store_.SetText("local", 4, ""), "there is no long text 4");
  EXPECT_EQ(store_.SetText("none", 0, ""), "no account 'none'");
  EXPECT_EQ(FileText(), "[local]\r\nszSignature = -- \\nAlice\r\nszNewTemplate = Dear\\n\\n\r\n");
}

TEST_F(HostAccounts, AFileThatCannotBeWrittenLeavesEverythingAsItWas) {
  EXPECT_EQ(store_.Open(folder_ / "none" / "accounts.txt"), std::nullopt);
  const fs::path missing = folder_ / "none";
  EXPECT_EQ(store_.Create("local"), "cannot write " + (missing / "accounts.txt").string() +
                                        ": there is no folder " + missing.string());
  EXPECT_TRUE(store_.Names().empty());
}

TEST_F(HostAccounts, AFileThatCannotBeReadAnyMoreIsToldAndLeftAlone) {
  OpenWith("[local]\r\n");
  fs::remove(file_);
  fs::create_directory(file_);
  const std::string told = store_.SetText("local", 0, "Dear").value_or("");
  EXPECT_TRUE(told.starts_with("cannot read the accounts " + file_.string() + ": ")) << told;
  EXPECT_EQ(store_.Text("local", 0), "");
}

}  // namespace
}  // namespace wrenfold
