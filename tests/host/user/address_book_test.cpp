// The address book of the small host.
#include <gtest/gtest.h>

#include "host/user/address_book.h"

namespace wrenfold {
namespace {

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

}  // namespace
}  // namespace wrenfold
