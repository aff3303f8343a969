// The address book of the small host.
#include <gtest/gtest.h>

#include <unistd.h>

#include <fstream>

#include "host/files/whole_file.h"
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
  EXPECT_EQ(book.Members("work"), (Texts{"Alice <alice@example.com>", "\"Baker, Bob\" <bob@example.com>"}))
      << "a comma in a name divides no list";
  EXPECT_EQ(book.Members("Work/Off"), Texts{});
  EXPECT_EQ(book.Members(""), Texts{});
  EXPECT_EQ(LastGroup("Work/Office"), "Office");
  EXPECT_EQ(LastGroup("Work"), "Work");
  EXPECT_EQ(TextBlock({"a", "bc"}), std::string("a\0bc\0\0", 6));
}

TEST(AddressBook, PassesOverLinesThatMeanNothingAndTellsThem) {
  AddressBook book;
  EXPECT_EQ(
      book.Read("# c\naddress, name, note1\na@x, A\n, nobody\n\"b@x, B\nc@x, \"C\" D, n\nd@x, Doe, Dan, n\n"
                "e@x, E, n, ,\nf x, F\ng@x, \xE9\nh@x, \"H, \"\"h\"\"\" , n\n"),
      std::nullopt);
  std::string told;
  for (const LineComplaint& complaint : book.complaints())
    told += std::to_string(complaint.line) + " " + complaint.why + "\n";
  EXPECT_EQ(told,
            "4 it has no address\n"
            "5 a quote is not closed\n"
            "6 something stands between a closing quote and the next comma\n"
            "7 it has more values than there are columns; one with a comma in it stands in double quotes\n"
            "9 its address is not one address\n"
            "10 it is not UTF-8\n");
  std::string read;
  for (const BookEntry& entry : book.entries()) read += entry[0] + " " + entry[1] + ";";
  EXPECT_EQ(read, "a@x A;e@x E;h@x H, \"h\";");
}

TEST(AddressBook, NeedsAnAddressColumn) {
  EXPECT_NE(AddressBook().Read("name, mail\n"), std::nullopt);
  EXPECT_EQ(AddressBook().Read(""), std::nullopt);
  EXPECT_NE(AddressBook().Open("/no/such/book.csv"), std::nullopt);
}

class AddressBookFile : public testing::Test {
 protected:
  void SetUp() override {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() /
              ("wrenfold-" + std::to_string(getpid()) + "-" + info->name());
    std::filesystem::create_directories(folder_);
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::filesystem::path Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name, std::ios::binary) << text;
    return folder_ / name;
  }
  static BookEntry Entry(std::string address, std::string name, std::string group = "") {
    BookEntry entry;
    entry[0] = std::move(address);
    entry[1] = std::move(name);
    entry[static_cast<std::size_t>(BookPart::kGroup)] = std::move(group);
    return entry;
  }

  std::filesystem::path folder_;
};

TEST_F(AddressBookFile, TakesAnEntryBehindItsLastLine) {
  const auto file = Write("book.csv", "# people\r\nname, colour, address\r\nA, red, a@x\r\n# the end");
  AddressBook book;
  ASSERT_EQ(book.Open(file), std::nullopt);
  EXPECT_EQ(book.Add(Entry("b@x", " Jr., \"B\" #1\r\n ")), std::nullopt);
  EXPECT_EQ(
      ReadWholeFile(file),
      "# people\r\nname, colour, address\r\nA, red, a@x\r\n# the end\r\n\"Jr., \"\"B\"\" #1\", , b@x\r\n");
  AddressBook again;
  ASSERT_EQ(again.Open(file), std::nullopt);
  EXPECT_EQ(again.Part("b@x", 1), "Jr., \"B\" #1");
  EXPECT_EQ(book.Add(Entry("B@x", "")), "\"B@x\" is in the address book already");
  EXPECT_EQ(book.Add(Entry("", "x")), "an entry needs an address");
  EXPECT_EQ(book.Add(Entry("c@x.jp, d@x.jp", "")), "\"c@x.jp, d@x.jp\" is not one address");
  EXPECT_NE(book.Add(Entry("c@x", "C", "Work")), std::nullopt) << "no column for groups";
  EXPECT_EQ(book.Find("c@x"), nullptr);
  EXPECT_NE(AddressBook().Add(Entry("c@x", "C")), std::nullopt) << "no file";
}

TEST_F(AddressBookFile, StaysWholeWhenItCannotBeWritten) {
  const auto file = Write("book.csv", "address\na@x\n");
  AddressBook book;
  ASSERT_EQ(book.Open(file), std::nullopt);
  std::filesystem::create_directories(folder_ / "book.csv.new");
  EXPECT_NE(book.Add(Entry("b@x", "")), std::nullopt);
  EXPECT_EQ(book.Find("b@x"), nullptr);
  EXPECT_EQ(ReadWholeFile(file), "address\na@x\n");
}

TEST_F(AddressBookFile, OneOfSeveralIsSelected) {
  AddressBooks books;
  EXPECT_TRUE(books.selected().empty());
  EXPECT_FALSE(books.Select(""));
  ASSERT_EQ(books.Open(Write("Home.csv", "address\na@x\n")), std::nullopt);
  ASSERT_EQ(books.Open(Write("work.csv", "address\nb@x\n")), std::nullopt);
  EXPECT_NE(books.selected().Find("b@x"), nullptr) << "the last one at first";
  EXPECT_TRUE(books.Select("HOME"));
  EXPECT_NE(books.selected().Find("a@x"), nullptr);
  EXPECT_TRUE(books.Select("work.csv"));
  EXPECT_FALSE(books.Select("none"));
  EXPECT_NE(books.selected().Find("b@x"), nullptr);
  EXPECT_NE(books.Open(folder_ / "none.csv"), std::nullopt);
}

}  // namespace
}  // namespace wrenfold
