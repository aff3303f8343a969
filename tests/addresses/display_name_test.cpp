#include "src/addresses/display_name.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "src/addresses/honorific.h"

namespace wfinfo {
namespace {

std::string Quoted(const std::string& name, unsigned code_page = kCodePageShiftJis) {
  std::string buffer = name + '\0';
  buffer.resize(std::max(buffer.size(), kAddressRoom), '#');
  QuoteDisplayName(buffer.data(), code_page);
  return buffer.c_str();
}

struct NameCase {
  std::string name;
  std::string quoted;
  const char* why;
};

TEST(DisplayName, IsQuotedWhereItMust) {
  const NameCase cases[] = {
      {"", "", "nothing"},
      {"John Doe", "John Doe", "no special character"},
      {"a\\b|c", "a\\b|c", "a backslash is none"},
      {"\"Doe, John\"", "\"Doe, John\"", "quoted already"},
      {"\"\"", "\"\"", "an empty quotation"},
      {"\"a\\\\\"", "\"a\\\\\"", "the last backslash is escaped itself"},
      {"\"a\\\"", "\"\\\"a\\\"\"", "the last quote is escaped: no quotation"},
      {"Doe, John", "\"Doe, John\"", "a comma"},
      {"say \"hi\"", "\"say \\\"hi\\\"\"", "quotes inside"},
      {"say \\\"hi\\\"", "\"say \\\"hi\\\"\"", "with their backslashes already"},
      {"\"a\"b\"", "\"\\\"a\\\"b\\\"\"", "a quote inside quotes"},
      {"'Doe'", "\"Doe\"", "apostrophes around"},
      {"'", "\"'\"", "one apostrophe does not enclose"},
      {"''Doe''", "\"Doe\"", "doubled ones"},
      {"\"\"Doe\"\"", "\"Doe\"", "doubled quotes"},
      {"'\"Doe\"'", "\"Doe\"", "an apostrophe and a quote"},
      {"'a \"b\"'", "\"a \\\"b\\\"\"", "quotes inside apostrophes"},
      {"\"'Doe'\"", "\"'Doe'\"", "apostrophes in a quotation stay"},
      {"a,b\\", "\"a,b\\\\\"", "a backslash at the end would hide the closing quote"},
      {"a,b\x81", "\"a,b\"", "so would half a character"},
      {"a,b\x1A\x80\x80\x84", "\"a,b\x1A\x80\x80\x84\"", "an escape's last byte is no half character"},
      {"\x95\x5C", "\x95\x5C", "a backslash as second byte"},
      {"\"\x95\x5C\"", "\"\x95\x5C\"", "in front of the closing quote"},
      {"\x83\x40\x83\x5B\x83\x5D", "\x83\x40\x83\x5B\x83\x5D", "@ [ ] as second bytes"},
      {"\x83\x40,", "\"\x83\x40,\"", "and a real comma"},
      {"\"\"\x93\xFA\"\"", "\"\x93\xFA\"", "doubled quotes around a character of two bytes"},
      {"a\"b,c\"", "\"a\\\"b,c\\\"\"", "a quote at the second place alone doubles nothing"},
      {"\"\"a\" b", "\"\\\"\\\"a\\\" b\"", "doubled in front only"},
      {"\"\"a'\"", "\"\\\"\\\"a'\\\"\"", "behind an apostrophe and a quote: no mirror"},
      {"'\"a\"\"", "\"'\\\"a\\\"\\\"\"", "nor an apostrophe here and a quote there"},
      {"'a,b", "\"'a,b\"", "an apostrophe in front only"},
      {"\"\"\"\"", "\"\"", "two empty pairs"},
      {"\"\"\"", "\"\\\"\\\"\\\"\"", "three quotes are no two pairs"},
      {"''", "\"\"", "two apostrophes and nothing between them"},
      {"xa\"x", "\"xa\\\"x\"", "letters are no outer pair"},
      {"x\"a\"x", "\"x\\\"a\\\"x\"", "nor around a pair of quotes"},
      {"\"a\"\"", "\"\\\"a\\\"\\\"\"", "doubled behind only"},
      {"\"\\\x95\x5C\"", "\"\\\x95\x5C\"", "a backslash in front of a character takes it whole"},
  };
  for (const NameCase& c : cases) {
    EXPECT_EQ(Quoted(c.name), c.quoted) << c.why;
    EXPECT_EQ(Quoted(c.quoted), c.quoted) << "again: " << c.why;
  }
}

TEST(DisplayName, EachSpecialCharacterNeedsQuotes) {
  for (int c = 1; c < 128; ++c) {
    const std::string name = {'x', static_cast<char>(c), 'y'};
    EXPECT_EQ(NeedsQuotes(name, kCodePageShiftJis), std::strchr(",<>().:;'\"@[]", c) != nullptr) << c;
  }
}

TEST(DisplayName, NeverOverrunsItsBuffer) {
  EXPECT_EQ(Quoted(std::string(511, ',')), "\"" + std::string(509, ',') + "\"")
      << "511 bytes that need quotes";
  EXPECT_EQ(Quoted(std::string(508, 'a') + ","), "\"" + std::string(508, 'a') + ",\"")
      << "the longest that fits";
  EXPECT_EQ(Quoted(std::string(508, 'a') + "\""), "\"" + std::string(508, 'a') + "\"")
      << "no room for an escape";
  EXPECT_EQ(Quoted("," + std::string(507, 'a') + "\x83\x41"), "\"," + std::string(507, 'a') + "\"")
      << "nor for a character";
  EXPECT_EQ(Quoted("," + std::string(507, 'a') + "\\\x83\x41").back(), '"');
  EXPECT_EQ(Quoted(std::string(2000, 'a')).size(), 2000u) << "a long name that needs nothing stays";
  EXPECT_EQ(Quoted(std::string(1100, '"')).size(), 510u) << "254 escaped quotes and the pair";
}

TEST(DisplayName, AZeroByteNeedsNoQuotes) {
  EXPECT_FALSE(NeedsQuotes(std::string_view("x\0y", 3), kCodePageShiftJis));
}

TEST(DisplayName, ANameOf1021BytesIsOnlyEnclosed) {
  EXPECT_EQ(Quoted("'" + std::string(1018, 'a') + "'"), "\"" + std::string(509, 'a') + "\"");
  EXPECT_EQ(Quoted("'" + std::string(1019, 'a') + "'"), "\"'" + std::string(508, 'a') + "\"");
  EXPECT_EQ(Quoted("\"\"" + std::string(1016, 'a') + "\"\""), "\"" + std::string(509, 'a') + "\"");
  EXPECT_EQ(Quoted("\"\"" + std::string(1017, 'a') + "\"\""), "\"\\\"\\\"" + std::string(505, 'a') + "\"");
}

TEST(DisplayName, HalfACharacterAtTheEndIsFoundFromTheBeginning) {
  EXPECT_EQ(WithoutHalfCharacter("\x83\x83\x83", kCodePageShiftJis), "\x83\x83");
  EXPECT_EQ(WithoutHalfCharacter("\x83\x83\x83\x83", kCodePageShiftJis), "\x83\x83\x83\x83");
}

TEST(DisplayName, Utf8SecondBytesAreNoLeadBytes) {
  EXPECT_EQ(Quoted("\xE3\x80\x81,b", kCodePageUtf8), "\"\xE3\x80\x81,b\"")
      << "as Shift-JIS its last byte would take the comma";
  EXPECT_EQ(NameElement("\\", kCodePageUtf8), 1u) << "a backslash with nothing behind it";
  EXPECT_EQ(Quoted("a,b\\", kCodePageUtf8), "\"a,b\\\\\"") << "a backslash at the end";
  EXPECT_EQ(Quoted("\x1A\x80\x80\x0D,", kCodePageUtf8), "\"\x1A\x80\x80\x0D,\"") << "an escape";
  EXPECT_EQ(Quoted("\xE8\xA1\xA8,\xE8", kCodePageUtf8), "\"\xE8\xA1\xA8,\xE8\"");
}

struct HonorificCase {
  std::string list;
  std::string_view honorific;
  bool also_without_name;
  std::string result;
  const char* why;
};

TEST(Honorific, StandsBehindTheName) {
  const std::string sama(kDefaultHonorific);
  const HonorificCase cases[] = {
      {"Taro <t@x>", kDefaultHonorific, false, "Taro" + sama + " <t@x>", "a plain name"},
      {"\"Doe, John\" <j@x>", kDefaultHonorific, false, "\"Doe, John" + sama + "\" <j@x>", "a quoted name"},
      {"J. Doe <j@x>, k@y", " Esq", false, "\"J. Doe Esq\" <j@x>",
       "a name that needs quotes; the first entry only"},
      {"Taro" + sama + " <t@x>", kDefaultHonorific, false, "Taro" + sama + " <t@x>", "there already"},
      {"\"Doe, J" + sama + "\" <j@x>", kDefaultHonorific, false, "\"Doe, J" + sama + "\" <j@x>",
       "there already, quoted"},
      {"x\x97\x97\x6C <t@x>", "\x97\x6C", false, "x\x97\x97\x6C\x97\x6C <t@x>",
       "not there: the bytes belong to others"},
      {"Taro <t@x>", " (Mr.)", false, "\"Taro (Mr.)\" <t@x>", "the honorific needs quotes"},
      {"Taro <t@x>", " \"T\"", false, "\"Taro \\\"T\\\"\" <t@x>", "and has quotes itself"},
      {"Taro", kDefaultHonorific, false, "Taro" + sama, "a name alone"},
      {"\"Doe, John\"", kDefaultHonorific, false, "\"Doe, John" + sama + "\"", "a quoted name alone"},
      {"t@x", kDefaultHonorific, false, "t@x", "an address alone"},
      {"<t@x>", kDefaultHonorific, false, "t@x", "in brackets"},
      {"t@x", kDefaultHonorific, true, "t" + sama + " <t@x>", "an address gets a name"},
      {"t.y@x", kDefaultHonorific, true, "\"t.y" + sama + "\" <t.y@x>", "one that needs quotes"},
      {"@x", kDefaultHonorific, true, "@x", "there is none to be had"},
      {"Taro <t@x>", kDefaultHonorific, true, "Taro" + sama + " <t@x>",
       "with a name the mode makes no difference"},
      {"", kDefaultHonorific, false, "", "nothing"},
      {"Taro <t@x", kDefaultHonorific, false, "", "malformed"},
      {"Taro <t@x> rest", kDefaultHonorific, false, "", "malformed behind the address"},
      {sama + " <t@x>", kDefaultHonorific, false, sama + " <t@x>", "there already, and nothing else"},
      {"<>", kDefaultHonorific, true, "", "neither name nor address"},
  };
  for (const HonorificCase& c : cases) {
    std::string result(ComposeWithHonorific(c.list, c.honorific, c.also_without_name, nullptr), '#');
    EXPECT_EQ(ComposeWithHonorific(c.list, c.honorific, c.also_without_name, result.data()), result.size());
    EXPECT_EQ(result, c.result) << c.why;
  }
}

}  // namespace
}  // namespace wfinfo
