// The pure half of the S/MIME family: reports, names, address lists, selectors.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "smime/address_words.h"
#include "smime/algorithms.h"
#include "smime/report_writer.h"

namespace wfinfo::smime {
namespace {

std::string Cleaned(std::string name, bool was_cut = false) {
  CleanName(name.data(), was_cut);
  return name.c_str();
}

TEST(SmimeReport, TextThatDoesNotFitIsCutInFrontOfACharacter) {
  char room[8];
  ReportWriter report(room, sizeof room);
  report.Add("12345");
  report.Add("\x82\xA0\x82\xA2");  // two double-byte characters, room for two bytes and the terminator
  EXPECT_EQ(report.view(), "12345\x82\xA0");
  report.Add("x");
  EXPECT_EQ(report.view(), "12345\x82\xA0") << "nothing is added after a cut";
}

TEST(SmimeReport, FormattedTextIsCutTheSameWay) {
  for (std::size_t room = 1; room < 16; ++room) {
    std::vector<char> buffer(room);
    ReportWriter report(buffer.data(), room);
    report.AddFormat("%s%08X", "\x82\xA0\x82\xA2", 0x1234u);
    const std::string whole =
        "\x82\xA0\x82\xA2"
        "00001234";
    std::size_t kept = std::min(room - 1, whole.size());
    if (kept == 1 || kept == 3) --kept;
    EXPECT_EQ(report.view(), whole.substr(0, kept)) << room;
    EXPECT_EQ(std::strlen(report.text()), kept);
  }
}

TEST(SmimeReport, AMarkIsFoundOnlyAsACharacterOfItsOwn) {
  EXPECT_TRUE(HoldsMark("a \x81\x7E b", kProblemMark));
  EXPECT_TRUE(HoldsMark("\x81\x7E", kProblemMark));
  EXPECT_FALSE(HoldsMark("", kProblemMark));
  EXPECT_FALSE(HoldsMark("\x83\x81\x7E", kProblemMark)) << "a letter that ends in 0x81, and a tilde";
  EXPECT_FALSE(HoldsMark("a \x81\x9B b", kProblemMark));
}

TEST(SmimeReport, ANameCannotPassForAFinding) {
  const struct {
    const char* name;
    const char* shown;
    const char* why;
  } cases[] = {
      {"Alice", "Alice", "plain"},
      {"Alice\r\n\x81\x9B fine", "Alice? fine", "line breaks go, marks become question marks"},
      {"\x81\x7E\x81\xA2\x81\x9B", "???", "all three marks"},
      {"\t\x01\x1F\x7F", "", "control characters only"},
      {"\x83\x81\x7E", "\x83\x81\x7E", "two bytes that look like a mark across a character"},
      {"\x81\r\x9B", "?", "a mark that comes together when a line break goes"},
      {"\x1A\x81\x82\x04", "\x81\x82", "no escape survives"},
  };
  for (const auto& test : cases) EXPECT_EQ(Cleaned(test.name), test.shown) << test.why;
  EXPECT_EQ(Cleaned("ab\x82", true), "ab") << "half a character at the end of a cut name";
  EXPECT_EQ(Cleaned("Jos\xE9", false), "Jos\xE9") << "the same byte is a letter elsewhere";
}

TEST(SmimeReport, RandomNamesNeverKeepAControlCharacterOrGrow) {
  std::mt19937 random(7);
  for (int round = 0; round < 20000; ++round) {
    std::string name(random() % 12, '\0');
    for (char& byte : name) byte = "\x81\x7E\x9B\r\nA\xE9\x1A\x04\xFF\x7F "[random() % 12];
    const std::string shown = Cleaned(name, (random() & 1) != 0);
    EXPECT_LE(shown.size(), name.size());
    for (const char byte : shown) EXPECT_FALSE(static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F);
    EXPECT_FALSE(HoldsMark(shown, kProblemMark)) << shown;
  }
}

TEST(SmimeReport, PathLinesAreIndentedFromTheRootDown) {
  char room[256];
  ReportWriter report(room, sizeof room);
  AddPathLine(report, "Root", 0, "(?)");
  AddPathLine(report, "Middle", 1, "(?)");
  AddPathLine(report, "", 2, "(?)");
  AddPathLine(report, "End", 3, "(?)");
  EXPECT_EQ(report.view(), "  Root\r\n    Middle\r\n(?)\r\n        End\r\n");
}

TEST(SmimeAddresses, RecipientsAreSplitAtSingleBlanks) {
  const struct {
    const char* list;
    std::vector<std::string> items;
  } cases[] = {
      {"a@x", {"a@x"}}, {"a@x b@y", {"a@x", "b@y"}}, {"a@x  b@y", {"a@x", "", "b@y"}}, {"", {""}},
      {" ", {"", ""}},  {"a@x ", {"a@x", ""}},
  };
  for (const auto& test : cases) {
    ASSERT_EQ(CountRecipients(test.list), test.items.size()) << test.list;
    for (std::size_t i = 0; i < test.items.size(); ++i) EXPECT_EQ(RecipientAt(test.list, i), test.items[i]);
    EXPECT_EQ(RecipientAt(test.list, test.items.size()), "") << "beyond the end";
  }
}

std::string ListOf(const std::vector<std::string>& addresses, std::size_t capacity) {
  std::vector<char> buffer(capacity, 'x');
  AddressListWriter list(buffer.data(), capacity);
  for (const std::string& address : addresses) list.Add(address);
  return buffer.data();
}

TEST(SmimeAddresses, AListEndsWithTwoDotsWhenAnItemDoesNotFit) {
  EXPECT_EQ(ListOf({}, 8), "");
  EXPECT_EQ(ListOf({"a@x", "b@y"}, 64), "a@x, b@y");
  EXPECT_EQ(ListOf({"1234"}, 10), "1234") << "shorter than the five bytes left";
  EXPECT_EQ(ListOf({"12345"}, 10), "..") << "not shorter than the five bytes left";
  EXPECT_EQ(ListOf({"12", "3", "4"}, 10), "12, ..") << "nothing follows the dots";
}

TEST(SmimeAddresses, AListNeverLeavesItsBuffer) {
  std::mt19937 random(11);
  for (int round = 0; round < 5000; ++round) {
    const std::size_t capacity = 8 + random() % 60;
    std::vector<std::string> addresses(random() % 40);
    for (std::string& address : addresses) address.assign(random() % 9, 'a');
    EXPECT_LT(ListOf(addresses, capacity).size(), capacity);  // the sanitizer watches the writes
  }
}

TEST(SmimeAddresses, ASenderMatchesWholeItemsOnly) {
  const char list[] = "first@example.org, Second@Example.org, third@example.orgx";
  const struct {
    const char* sender;
    bool holds;
    const char* why;
  } cases[] = {
      {"first@example.org", true, "the first item, followed by a comma"},
      {"second@example.ORG", true, "letter case does not count"},
      {"third@example.org", false, "followed by a letter"},
      {"third@example.orgx", true, "the last item, followed by the end"},
      {"cond@example.org", false, "not at the start of an item"},
      {"second@example", false, "followed by a dot"},
  };
  for (const auto& test : cases) EXPECT_EQ(ListHoldsSender(list, test.sender), test.holds) << test.why;
  EXPECT_TRUE(ListHoldsSender("a@x b", "a@x"));
  EXPECT_TRUE(ListHoldsSender("a@x\tb", "a@x"));
  EXPECT_FALSE(ListHoldsSender("", "a@x"));
  EXPECT_EQ(FurtherAddresses("a@x, b@y, c@z"), "b@y, c@z");
  EXPECT_EQ(FurtherAddresses("a@x"), "");
}

TEST(SmimeAddresses, TheSignersAddressIsReadFromAFixedDistance) {
  const std::string english =
      "Signer email address: ";  // 22 bytes: the first character of the address is lost
  EXPECT_EQ(SignerAddressIn("x\r\n" + english + "alice@example.org\r\nmore", english), "lice@example.org");
  const std::string label23(23, 'L');
  EXPECT_EQ(SignerAddressIn(label23 + "alice@example.org next", label23), "alice@example.org");
  EXPECT_EQ(SignerAddressIn(label23 + std::string(127, 'a'), label23), std::string(127, 'a'));
  EXPECT_EQ(SignerAddressIn(label23 + std::string(128, 'a'), label23), "");
  EXPECT_EQ(SignerAddressIn("nothing here", english), "");
  EXPECT_EQ(SignerAddressIn(english, english), "") << "the text ends with the label";
}

TEST(SmimeAddresses, OnlyHttpIsDownloaded) {
  EXPECT_TRUE(IsHttpUrl("http://x/y.crl"));
  EXPECT_TRUE(IsHttpUrl("HTTP:x"));
  EXPECT_FALSE(IsHttpUrl("https://x"));
  EXPECT_FALSE(IsHttpUrl("ldap:///cn=x"));
  EXPECT_FALSE(IsHttpUrl("http"));
}

TEST(SmimeAlgorithms, SelectorsNameTheirObjectIdentifiers) {
  const struct {
    int selector;
    const char* oid;
    unsigned bits;
  } ciphers[] = {
      {0, "1.2.840.113549.3.2", 0},     {1, "1.2.840.113549.3.7", 0},
      {2, "1.3.14.3.2.7", 0},           {3, "1.2.840.113549.3.2", 128},
      {4, "1.2.840.113549.3.2", 64},    {5, "1.2.840.113549.3.2", 40},
      {6, "2.16.840.1.101.3.4.1.2", 0}, {7, "2.16.840.1.101.3.4.1.42", 0},
      {8, "1.2.840.113549.3.2", 40},    {9, "1.2.840.113549.3.2", 40},
      {-1, "1.2.840.113549.3.2", 40},   {1 << 30, "1.2.840.113549.3.2", 40},
  };
  for (const auto& test : ciphers) {
    EXPECT_STREQ(CipherOf(test.selector).oid, test.oid) << test.selector;
    EXPECT_EQ(CipherOf(test.selector).rc2_bits, test.bits) << test.selector;
  }
  const struct {
    int selector;
    const char* oid;
  } hashes[] = {
      {0, "2.16.840.1.101.3.4.2.1"},  {1, "1.3.14.3.2.26"},           {2, "1.3.14.3.2.3"},
      {3, "2.16.840.1.101.3.4.2.1"},  {4, "2.16.840.1.101.3.4.2.3"},  {5, "2.16.840.1.101.3.4.2.1"},
      {99, "2.16.840.1.101.3.4.2.1"}, {-1, "2.16.840.1.101.3.4.2.1"},
  };
  for (const auto& test : hashes) EXPECT_STREQ(HashOidOf(test.selector), test.oid) << test.selector;
}

}  // namespace
}  // namespace wfinfo::smime
