// The pure half of the S/MIME family: reports, names, address lists, selectors.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "src/smime/address_words.h"
#include "src/smime/algorithms.h"
#include "src/smime/mail_names.h"
#include "src/smime/report_writer.h"

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

TEST(SmimeReport, IsTerminatedFromTheBeginning) {
  char room[] = "xxxxxxx";
  ReportWriter report(room, sizeof room);
  EXPECT_STREQ(report.text(), "");
  report.Add("ab");
  EXPECT_STREQ(report.text(), "ab");
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

TEST(SmimeReport, FormattedTextKnowsTheConversionsOfTheReports) {
  const struct {
    const char* format;
    unsigned number;
    const char* expected;
    const char* why;
  } cases[] = {
      {"%u", 0, "0", "a digit at least"},
      {"%u", 4294967295u, "4294967295", "the largest"},
      {"%02u/", 7, "07/", "zeroes fill"},
      {"%02u", 2026, "2026", "the width is no limit"},
      {"%08X", 0x800B0109u, "800B0109", "capital letters"},
      {"%X", 0xA, "A", "hexadecimal without a width"},
      {"%u", 10, "10", "a first digit of 1"},
      {"%X", 0x1F, "1F", "a first digit of 1"},
      {"100%% of %u", 3, "100% of 3", "a percent sign"},
      {"%u%", 3, "3", "half a conversion at the end"},
      {"%99u", 1, "0000000000000001", "as wide as a number may be"},
      {"", 1, "", "nothing"},
  };
  for (const auto& test : cases) {
    char text[64];
    ReportWriter report(text, sizeof text);
    report.AddFormat(test.format, test.number);
    EXPECT_EQ(report.view(), test.expected) << test.why;
  }
  char text[64];
  ReportWriter report(text, sizeof text);
  report.AddFormat("%s=%02u, %s", "a%s", 5u, "");
  EXPECT_EQ(report.view(), "a%s=05, ") << "in their order; a text is no format";
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
  EXPECT_EQ(Cleaned("ab", true), "ab") << "whole ones stay";
  EXPECT_EQ(Cleaned("a\x82\xA0", true), "a\x82\xA0") << "whole ones stay";
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
  EXPECT_EQ(ListOf({"1", "2"}, 64), "1, 2") << "items of one byte";
  char room[10];
  AddressListWriter list(room, sizeof room);
  EXPECT_TRUE(list.Add("1234"));
  EXPECT_FALSE(list.Add("5"));
  EXPECT_FALSE(list.Add("")) << "nor anything behind that";
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

TEST(SmimeAddresses, AddressesAreComparedWhole) {
  const struct {
    const char* own;
    const char* sender;
    bool is_same;
    const char* why;
  } cases[] = {
      {"second@Example.org", "SECOND@example.org", true, "letter case does not count"},
      {"third@example.orgx", "third@example.org", false, "followed by a letter"},
      {"second@example.org", "cond@example.org", false, "not from the start"},
      {"a@x b", "a@x", false, "what stands behind a blank is a part of the address"},
      {"a@x, b@y", "a@x", false, "and so is what stands behind a comma"},
      {"\x83\x41@x", "\x83\x61@x", false, "two double-byte characters whose second bytes look like A and a"},
      {"\x83\x41@x", "\x83\x41@X", true, "the letters around them still do"},
      {"third@example.org", "third@example.orgx", false, "a beginning of the other"},
      {"\x1A\x80\x80\x84", "\x1A\x80\x80x", false, "an escape and bytes that begin like one"},
      {"ab@x", "\x83\x62@x", false, "two letters and a character"},
      {"\x83\x62@x", "ab@x", false, "a character and two letters"},
  };
  for (const auto& test : cases) EXPECT_EQ(IsSameAddress(test.own, test.sender), test.is_same) << test.why;
  EXPECT_FALSE(IsSameAddress(std::string_view("a@x\0b", 5), "a@x")) << "a zero is a part of it";
  EXPECT_EQ(FurtherAddresses("a@x, b@y, c@z"), "b@y, c@z");
  EXPECT_EQ(FurtherAddresses("a@x"), "");
}

TEST(SmimeAddresses, ACommaInAnAddressSeparatesNothing) {
  EXPECT_EQ(ListOf({"\"a, victim@x \"@y", "b@y"}, 64), "\"a? victim@x \"@y, b@y");
  EXPECT_EQ(FurtherAddresses(ListOf({"\"a, victim@x \"@y"}, 64)), "");
}

std::vector<std::string> MailNamesIn(std::string_view encoded) {
  std::vector<std::string> names;
  MailNames walk(encoded);
  while (const auto name = walk.Next()) names.emplace_back(*name);
  return names;
}

TEST(SmimeMailNames, AreFoundAmongNamesOfOtherKinds) {
  const auto text = [](const char* bytes, std::size_t size) { return std::string(bytes, size); };
  const std::string mail = text(
      "\x81\x03"
      "a@x",
      5);
  const std::string host = text(
      "\x82\x01"
      "h",
      3);
  const std::string zero = text(
      "\x81\x05"
      "a@\0xy",
      7);
  const std::string is_long = text("\x81\x81\xC8", 3) + std::string(200, 'n');
  const auto sequence = [](const std::string& content) {
    return content.size() < 0x80 ? "\x30" + std::string(1, static_cast<char>(content.size())) + content
                                 : "\x30\x82" + std::string(1, static_cast<char>(content.size() >> 8)) +
                                       std::string(1, static_cast<char>(content.size())) + content;
  };
  using Names = std::vector<std::string>;
  const struct {
    std::string encoded;
    Names names;
    const char* why;
  } cases[] = {
      {sequence(host + mail + host + zero), {"a@x", text("a@\0xy", 5)}, "the zero stays"},
      {sequence(is_long + mail), {std::string(200, 'n'), "a@x"}, "a length of two bytes"},
      {sequence(""), {}, "no names"},
      {"", {}, "nothing"},
      {mail, {}, "not in a sequence"},
      {text("\x30\x80", 2) + mail + text("\0\0", 2), {}, "an indefinite length is no DER"},
      {text("\x30\x06", 2) + mail, {}, "longer than what is there"},
      {sequence(mail + text("\x81\x7F"
                            "a",
                            3)),
       {"a@x"},
       "a name that is cut short"},
      {sequence(text("\x9F\x81\x00", 3) + mail), {}, "a long tag"},
      {text("\x30\x82\x01", 3), {}, "a length that is cut short"},
      {sequence(text("\x81\x85\x00\x00\x00\x00\x03", 7) + "a@x"),
       {},
       "a length of five bytes that would fit"},
      {sequence(text("\x81\x84\x00\x00\x00\x03", 6) + "a@x"), {"a@x"}, "one of four bytes"},
      {sequence(text("\x81\x00", 2)), {""}, "an empty name at the end"},
      {sequence(text("\x81\x81\x00", 3)), {""}, "the same with a length of two bytes"},
      {sequence(text("\x81\x80", 2) + std::string(128, 'n')), {}, "no definite length: not 128"},
      {sequence(text("\x81\x82\x01\x2C", 4) + std::string(300, 'n') + mail),
       {std::string(300, 'n'), "a@x"},
       "a length whose bytes both count"},
      {"\x31\x05" + mail, {}, "in a set, which is no sequence"},
      {sequence(text("\x81\x85\x01\x01\x01\x01\x01", 7)), {}, "a length of five bytes"},
  };
  for (const auto& test : cases) EXPECT_EQ(MailNamesIn(test.encoded), test.names) << test.why;
}

TEST(SmimeAddresses, TheSignersAddressIsReadFromAFixedDistance) {
  const std::string english =
      "Signer email address: ";  // 22 bytes: the first character of the address is lost
  EXPECT_EQ(SignerAddressIn("x\r\n" + english + "alice@example.org\r\nmore", english), "lice@example.org");
  const std::string label23(23, 'L');
  EXPECT_EQ(SignerAddressIn(label23 + "alice@example.org next", label23), "alice@example.org");
  EXPECT_EQ(SignerAddressIn(label23 + std::string(127, 'a'), label23), std::string(127, 'a'));
  EXPECT_EQ(SignerAddressIn(label23 + std::string(128, 'a'), label23), "");
  EXPECT_EQ(SignerAddressIn(label23 + "a!b@x next", label23), "a!b@x") << "the byte behind the blank is part";
  EXPECT_EQ(SignerAddressIn("nothing here", english), "");
  EXPECT_EQ(SignerAddressIn("Signer: x" + label23 + "other@x\r\n" + label23 + "alice@x\r\n", label23),
            "alice@x")
      << "a name may hold the label";
  EXPECT_EQ(SignerAddressIn("Signer: x\r\r\n" + label23 + "other@x\r\n" + label23 + "alice@x\r\n", label23),
            "alice@x")
      << "also where an edit control folds the line";
  EXPECT_EQ(SignerAddressIn("Signer: x" + label23 + "other@x\r\n", label23), "") << "inside a line only";
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
