// Find packs, address book and templates of the small host.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "host/mail/find_pack.h"
#include "host/user/address_book.h"
#include "host/user/templates.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMail = "From: Alice\r\nX: one\r\nX: Two\r\nSubject: Minutes\r\n\r\nbody Text\r\n";

TEST(FindPack, AllConditionsMustHold) {
  struct Case {
    const char* pack;
    bool found;
    const char* why;
  };
  const Case cases[] = {
      {"", true, "no condition"},
      {"Subject: minutes", true, "no case"},
      {"subject:MINUTES\r\nfrom: ali\n\n", true, "both; empty lines"},
      {"Subject: minutes\nFrom: bob", false, "the second does not hold"},
      {"X: two", true, "any occurrence"},
      {"Y: two", false, "no such header"},
      {"Y:", false, "no such header, whatever it holds"},
      {"X:", true, "the header is there"},
      {"Body: text", true, ""},
      {"Body: Alice", false, "that stands in a header"},
      {"Any: alice", true, ""},
      {"text", true, "no colon: anywhere"},
      {"nothing", false, ""},
  };
  for (const Case& c : cases) EXPECT_EQ(Finds(c.pack, kMail), c.found) << c.pack << " " << c.why;
  EXPECT_TRUE(Finds("Body: x", "\r\nx")) << "a mail without headers";
  EXPECT_FALSE(Finds("Body: x", "X: x")) << "a mail without a body";
}

TEST(HoldsText, BeginsAtCharacters) {
  EXPECT_TRUE(HoldsText("\x83\x5C\x83\x65", "\x83\x65"));
  EXPECT_FALSE(HoldsText("\x83\x5C", "\\")) << "a second byte is no backslash";
  EXPECT_FALSE(HoldsText("\x82\x61", "A")) << "nor a letter";
  EXPECT_FALSE(HoldsText("\x82\x61", "\x82\x41")) << "second bytes have no case";
  EXPECT_TRUE(HoldsText("", ""));
  EXPECT_FALSE(HoldsText("ab", "abc"));
}

constexpr std::string_view kBook =
    "\xEF\xBB\xBF# people\r\nName, address ,group,NOTE8,colour,date\r\n"
    "Alice, alice@example.com, Work/Office, \"a, \"\"b\"\"\", red, 2025-01-31\r\n"
    "\"Baker, Bob\",bob@example.com,Work\n\n , carol@example.com\nnobody,\n";

TEST(AddressBook, FindsByAddress) {
  AddressBook book;
  EXPECT_TRUE(book.empty());
  EXPECT_EQ(book.Read(kBook), std::nullopt);
  EXPECT_EQ(book.Part("ALICE@example.com", 1), "Alice");
  EXPECT_EQ(book.Part("A. <alice@example.com>", 4), "Work/Office");
  EXPECT_EQ(book.Part("alice@example.com", 5), "2025-01-31");
  EXPECT_EQ(book.Part("alice@example.com", 13), "a, \"b\"");
  EXPECT_EQ(book.Part("alice@example.com", 14), "");
  EXPECT_EQ(book.Part("carol@example.com", 1), "");
  EXPECT_NE(book.Find("carol@example.com"), nullptr);
  EXPECT_EQ(book.Find("x@example.com"), nullptr);
  EXPECT_EQ(book.Find(""), nullptr);
}

TEST(AddressBook, SearchesAllPartsAndGroups) {
  AddressBook book;
  EXPECT_EQ(book.Read(kBook), std::nullopt);
  using Texts = std::vector<std::string>;
  EXPECT_EQ(book.Search("OFFICE"), Texts{"Alice <alice@example.com>"});
  EXPECT_EQ(book.Search("").size(), 3u);
  EXPECT_EQ(book.Search("carol"), Texts{"carol@example.com"});
  EXPECT_EQ(book.Search("red"), Texts{}) << "a column that is left alone";
  EXPECT_EQ(book.Members("work"), (Texts{"Alice <alice@example.com>", "Baker, Bob <bob@example.com>"}));
  EXPECT_EQ(book.Members("Work/Off"), Texts{});
  EXPECT_EQ(book.Members(""), Texts{});
  EXPECT_EQ(LastGroup("Work/Office"), "Office");
  EXPECT_EQ(LastGroup("Work"), "Work");
  EXPECT_EQ(TextBlock({"a", "bc"}), std::string("a\0bc\0\0", 6));
}

TEST(AddressBook, NeedsAnAddressColumn) {
  EXPECT_NE(AddressBook().Read("name, mail\n"), std::nullopt);
  EXPECT_EQ(AddressBook().Read(""), std::nullopt);
  EXPECT_NE(AddressBook().Open("/no/such/book.csv"), std::nullopt);
}

class HostTemplates : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("wrenfold-templates-" + std::to_string(getpid()));
    Write("reply/Thanks.txt", "#sign Work\nThank you.\n{body}\r\n");
    Write("reply/bare.TXT", "no end");
    Write("reply/readme.md", "x");
    Write("sign/Work.txt", "-- \nAlice\n");
    Write("secret.txt", "secret");
    templates_.Open(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }
  void Write(const std::string& name, const std::string& text) const {
    fs::create_directories((folder_ / name).parent_path());
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }

  fs::path folder_;
  TemplateFolder templates_;
};

TEST_F(HostTemplates, AreTextFilesByKind) {
  EXPECT_EQ(templates_.Names(1), (std::vector<std::string>{"Thanks", "bare"}));
  EXPECT_EQ(templates_.Names(0), std::vector<std::string>{});
  EXPECT_EQ(templates_.Names(4), std::vector<std::string>{});
  EXPECT_EQ(templates_.Text(1, "thanks"), "Thank you.\r\n{body}\r\n");
  EXPECT_EQ(templates_.Text(1, "bare"), "no end");
  EXPECT_EQ(templates_.Sign(1, "Thanks"), "Work");
  EXPECT_EQ(templates_.Sign(1, "bare"), "");
  EXPECT_EQ(templates_.Text(3, "Work"), "-- \r\nAlice\r\n");
  EXPECT_EQ(templates_.Text(1, "../secret"), "") << "no way out of the folder";
  EXPECT_TRUE(templates_.Has(3, "WORK"));
  EXPECT_FALSE(templates_.Has(3, "Thanks"));
  EXPECT_EQ(TemplateFolder().Names(1), std::vector<std::string>{}) << "no folder at all";
}

}  // namespace
}  // namespace wrenfold
