#include "src/addresses/address_entry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "src/addresses/address_bytes.h"
#include "src/addresses/address_list.h"
#include "src/addresses/address_quick.h"
#include "src/text/host_text.h"
#include "tests/support/slow_address_entry.h"

namespace wfinfo {
namespace {

using namespace std::string_literals;

struct EntryCase {
  std::string list;
  const char* name;
  const char* address;
  std::size_t next;
  const char* why;
};

void ExpectEntry(const EntryCase& c, const AddressSyntax& syntax = {}) {
  AddressParts parts;
  const std::string before = c.list;
  const AddressEntry entry = SplitAddressEntry(c.list, &parts, syntax);
  EXPECT_EQ(entry.error, AddressError::kNone) << c.why;
  EXPECT_STREQ(parts.name, c.name) << c.why;
  EXPECT_STREQ(parts.address, c.address) << c.why;
  EXPECT_EQ(entry.next, c.next) << c.why;
  EXPECT_EQ(c.list, before) << c.why;
}

TEST(AddressEntry, IsTakenApart) {
  const EntryCase cases[] = {
      {"a@b, c@d", "", "a@b", 4, "a comma separates"},
      {"a@b; c@d", "", "a@b", 4, "so does a semicolon"},
      {"a@b", "", "a@b", 3, "the end of the text"},
      {" \t a@b \t ,", "", "a@b", 10, "blanks around"},
      {",a@b", "", "", 1, "an empty entry is an entry"},
      {"Taro Yamada <t@x>", "Taro Yamada", "t@x", 17, "name and address"},
      {"<t@x>", "", "t@x", 5, "brackets alone"},
      {"Taro<t@x >,", "Taro", "t@x", 11, "blanks before the bracket's end"},
      {"\"Doe, John\" <j@x>, y", "\"Doe, John\"", "j@x", 18, "a comma in quotes"},
      {"(a, comment) x@y, z", "", "(a, comment) x@y", 17, "a comma in a comment"},
      {"Taro (a (b, c) d, e) <t@x>", "\"Taro (a (b, c) d, e)\"", "t@x", 26,
       "nested comments; parentheses need quotes"},
      {"'Doe, John' <j@x>", "\"Doe, John\"", "j@x", 17, "apostrophes at the start of the entry quote"},
      {"O'Neil, x", "", "O'Neil", 7, "an apostrophe inside does not"},
      {"'a@b' , c", "", "a@b", 7, "an address loses its apostrophes"},
      {"<'a@b '>", "", "a@b", 8, "in brackets too, and blanks inside them"},
      {"<a,b;c@d>, e", "", "a,b;c@d", 10, "separators in brackets do not separate"},
      {"\"say \\\"x, y\\\"\" <a@b>", "\"say \\\"x, y\\\"\"", "a@b", 20, "escaped quotes"},
      {"\"\"Doe, John\"\" <a@b>", "\"Doe, John\"", "a@b", 19, "a doubled run reaches to its mirror"},
      {"\"\\\"Doe, J\\\"\" <a@b>", "\"\\\"Doe, J\\\"\"", "a@b", 18, "a run with an escaped quote"},
      {"\"\"Doe, John\" <a@b>", "", "\"\"Doe", 6,
       "no mirrored run: one quote shorter, so the quotation is empty"},
      {"\"\" <a@b>, \"\" <c@d>", "\"\"", "a@b", 9, "an empty quotation does not reach to the next one"},
      {"a\\,b <c@d>", "\"a\\,b\"", "c@d", 10, "a backslash outside quotes takes the next unit"},
      {"a\\ (b <c@d>", "\"a\\ (b\"", "c@d", 11, "a backslash, a blank and a parenthesis"},
      {"A\r\n B <a@b>\r\n , c", "A\r\n B", "a@b", 15, "folds belong to the entry"},
      {"A\r\n <a@b>", "A", "a@b", 9, "a fold is a blank at a name's end"},
      {"a@b\r\nc@d", "", "a@b", 3, "a line end without a blank ends the entry"},
      {"a@b\n\tc@d", "", "a@b\n\tc@d", 8, "a lone LF folds too"},
      {"\r\n a@b", "", "a@b", 6, "a fold in front"},
      {"<<a@b>", "\"<\"", "a@b", 6, "the last bracket counts"},
      {"x > y <a@b>", "\"x > y\"", "a@b", 11, "a closing bracket alone means nothing"},
      {"<\"a>b\"@c>", "", "\"a>b\"@c", 9, "a quoted bracket does not close"},
  };
  for (const EntryCase& c : cases) ExpectEntry(c);
}

// Second bytes that look like delimiters, escapes whose last byte looks like a line end, units cut off at
// the end.
TEST(AddressEntry, StepsOverUnitsWhole) {
  const EntryCase cases[] = {
      {"\x8A\x5C\x95\x5C,x", "", "\x8A\x5C\x95\x5C", 5, "backslashes as second bytes"},
      {"\x83\x5C (\x83\x5C) <a@b>, c", "\"\x83\x5C (\x83\x5C)\"", "a@b", 14,
       "one in front of a closing parenthesis"},
      {"\"\x83\x5C\" <a@b>", "\"\x83\x5C\"", "a@b", 10, "one in front of a closing quote"},
      {"\x83\x40 <a@b>", "\x83\x40", "a@b", 8, "an at sign as second byte needs no quotes"},
      {"\x83\x5B\x83\x5D <a@b>", "\x83\x5B\x83\x5D", "a@b", 10, "square brackets"},
      {"\x83\x7C <a@b>", "\x83\x7C", "a@b", 8, "a pipe"},
      {"a\x81,b <c@d>, e", "a\x81,b", "c@d", 11, "a comma taken by a broken lead byte does not separate"},
      {"\x81\x22 <a@b>", "\x81\x22", "a@b", 8, "nor does such a quote open"},
      {"\x81  <a@b>", "\x81 ", "a@b", 8, "nor is such a blank trimmed"},
      {"\x1A\x80\x80\x0D <a@b>", "\x1A\x80\x80\x0D", "a@b", 10, "the CR of an escape ends nothing"},
      {"\x1A\x80\x80\x0D\n <a@b>", "\x1A\x80\x80\x0D", "a@b", 11, "a fold behind it"},
      {"\"\x1A\x80\x80\x0D\" <a@b>", "\"\x1A\x80\x80\x0D\"", "a@b", 12, "the same in quotes"},
      {"a@b\x81", "", "a@b\x81", 4, "a lead byte at the end"},
      {"a@b\x1A\x80\x80", "", "a@b\x1A\x80\x80", 6, "half an escape at the end"},
      {"a\\ <b@c>", "a\\ ", "b@c", 8, "an escaped blank is no blank"},
  };
  for (const EntryCase& c : cases) ExpectEntry(c);
}

TEST(AddressEntry, Utf8HasItsOwnUnits) {
  const AddressSyntax utf8{kCodePageUtf8, false};
  ExpectEntry({"\xE8\xA1\xA8 <a@b>, c", "\xE8\xA1\xA8", "a@b", 10, "a name"}, utf8);
  ExpectEntry({"\xE8,x", "", "\xE8", 2, "a cut-off sequence takes no delimiter with it"}, utf8);
  const AddressEntry comma = ScanAddressEntry("<a@b>\xEF\xBC\x8C<c", 0, utf8);
  EXPECT_EQ(comma.error, AddressError::kNoCommaBetween) << "not reached: another bracket follows";
  EXPECT_EQ(ScanAddressEntry("<a@b>\xEF\xBC\x8C c", 0, utf8).error, AddressError::kFullWidthComma);
}

TEST(AddressEntry, EncodedWordsAreUnitsOnRequest) {
  const AddressSyntax words{kCodePageShiftJis, true};
  ExpectEntry({"=?x?B?a,b?= <a@b>, c", "\"=?x?B?a,b?=\"", "a@b", 18, "a comma inside a word"}, words);
  ExpectEntry({"=?x?Q?=41,?= <a@b>", "\"=?x?Q?=41,?=\"", "a@b", 18, "a word whose text begins with ="},
              words);
  ExpectEntry({"A\r\n B <a@b>", "A B", "a@b", 11, "folds are left out"}, words);
  ExpectEntry({"=?x, y", "", "=?x", 4, "no end: no word"}, words);
  ExpectEntry({"a=b, c", "", "a=b", 4, "a sign that begins no word"}, words);
  ExpectEntry({"=?x?BB?=, y", "", "=?x?BB?=", 9, "an encoding of two letters: up to the next end"}, words);
  ExpectEntry({"=?x?=?, y", "", "=?x?=?", 7, "the sign behind the charset ends the word"}, words);
  ExpectEntry({"=?x?=?,b?=", "", "=?x?=?", 7, "whatever end follows"}, words);
  ExpectEntry({"=?x?B?a?=?b,c?=", "", "=?x?B?a?=?b", 12, "the end's sign begins no word"}, words);
  ExpectEntry({"=?x?B?a,\r\n b?= <c@d>", "", "=?x?B?a", 8, "no word goes over a line's end"}, words);
  ExpectEntry({"=?x?B?a,b?= <a@b>", "", "=?x?B?a", 8, "without the request"});
}

// 31 quotes open a section; those behind them are part of what it holds.
TEST(AddressEntry, ARunOfQuotesHasALimit) {
  for (const std::size_t quotes : {29u, 31u, 33u}) {
    const std::string run(quotes, '"');
    const std::string list = run + "a, b" + run + " <c@d>, e";
    const AddressEntry entry = ScanAddressEntry(list, 0, {});
    EXPECT_EQ(entry.error, AddressError::kNone) << quotes;
    EXPECT_EQ(entry.name, run + "a, b" + run) << quotes;
    EXPECT_EQ(entry.address, "c@d") << quotes;
    EXPECT_EQ(entry.next, list.size() - 2) << quotes;
  }
}

struct ErrorCase {
  std::string list;
  AddressError error;
  const char* why;
};

TEST(AddressEntry, MalformedOnesAreRefused) {
  using enum AddressError;
  const ErrorCase cases[] = {
      {"", kNoEntry, "nothing"},
      {" \t ", kNoEntry, "blanks only"},
      {"\r\na@b", kNoEntry, "a line end without a blank in front"},
      {"a \"b", kOpenSection, "a quote to the end"},
      {"\"b\r\nc\" <a@b>", kOpenSection, "a quote to the end of the line"},
      {"a (b (c) d", kOpenSection, "a comment one parenthesis short"},
      {"'Doe <a@b>", kOpenSection, "an apostrophe at the start"},
      {"\"a\\\" <b@c>", kOpenSection, "the closing quote is escaped"},
      {"A <a@b> <c@d>", kNoCommaBetween, "two addresses and a blank"},
      {"A <a@b> B <c@d>", kNoCommaBetween, "two addresses with names"},
      {"<a@b> B <c> <d@e>", kNoCommaBetween, "any bracketed address counts"},
      {"<x> a@b> <c@d>", kNoCommaBetween, "the last < stands before the last @"},
      {"<a@b>\x81\x43 <c@d>", kNoCommaBetween, "a full-width comma between two"},
      {"A <a@b", kBracketMismatch, "no closing bracket"},
      {"A <a@b, c@d", kBracketMismatch, "nor in what follows"},
      {"A <a@b, C <c@d>", kBracketMismatch, "the entry would swallow the next"},
      {"<a@b>\x81\x43 c", kFullWidthComma, "a full-width comma"},
      {"<a@b> \x81\x43", kFullWidthComma, "behind a blank"},
      {"<a@b>\r\n \x81\x43", kFullWidthComma, "behind a fold"},
      {"<a@b> c", kNoComma, "other text behind the bracket"},
      {"<a@b>\"x\"", kNoComma, "a quotation"},
      {"<a@b> (c), d", kNoComma, "even a comment"},
      {std::string(512, 'a'), kAddressTooLong, "a bare address of 512 bytes"},
      {"<" + std::string(512, 'a') + ">", kAddressTooLong, "a bracketed one"},
      {std::string(512, 'n') + " <a@b>", kNameTooLong, "a name of 512 bytes"},
      {std::string(1024, 'a'), kEntryTooLong, "an entry of 1024 bytes"},
      {std::string(1024, 'a') + ",b", kEntryTooLong, "the same with a separator"},
      {"\"" + std::string(2000, 'a') + "\" <a@b>", kEntryTooLong, "a quotation that leads beyond"},
      {"(" + std::string(2000, 'a'), kEntryTooLong, "a comment that leads beyond"},
      {"'" + std::string(2000, 'a'), kEntryTooLong, "an apostrophe that does"},
      {"\"\\\"" + std::string(2000, 'a'), kEntryTooLong, "a run of quotes that does"},
      {"(\r\n " + std::string(2000, 'a'), kEntryTooLong, "a comment with a fold that does"},
      {"\"Doe <a@b>\r\n" + std::string(2000, 'a'), kOpenSection, "a quotation that ends with its line"},
      {"(Doe\n" + std::string(2000, 'a'), kOpenSection, "a comment that does"},
      {"'Doe\r" + std::string(2000, 'a'), kOpenSection, "an apostrophe that does"},
      {"\"\\\"Doe\r\n" + std::string(2000, 'a'), kOpenSection, "a run of quotes that does"},
      {"(Doe\r\n Ray\r\n" + std::string(2000, 'a'), kOpenSection, "a comment that ends with its folded line"},
      {"\"" + std::string(1022, 'a') + "\r\nb", kOpenSection, "a line's end as the 1024th byte"},
      {"\"" + std::string(1023, 'a') + "\r\nb", kEntryTooLong, "one byte later"},
      {"\"" + std::string(1022, 'a'), kOpenSection, "the end of the text behind 1023 bytes"},
      {"\"" + std::string(1023, 'a'), kEntryTooLong, "behind 1024 bytes"},
      {"(" + std::string(1022, 'a'), kOpenSection, "a comment up to the end of 1023 bytes"},
      {"(" + std::string(1023, 'a'), kEntryTooLong, "of 1024 bytes"},
  };
  for (const ErrorCase& c : cases) {
    AddressParts parts;
    EXPECT_EQ(SplitAddressEntry(c.list, &parts).error, c.error) << c.why;
    EXPECT_STREQ(parts.name, "") << c.why;
    const bool behind_bracket = c.error == kFullWidthComma || c.error == kNoComma;
    EXPECT_STREQ(parts.address, behind_bracket ? "a@b" : "") << c.why;
  }
}

TEST(AddressEntry, LimitsAreExact) {
  const auto error = [](const std::string& list) { return ScanAddressEntry(list, 0).error; };
  EXPECT_EQ(error(std::string(511, 'a')), AddressError::kNone);
  EXPECT_EQ(error("<" + std::string(511, 'a') + ">"), AddressError::kNone);
  EXPECT_EQ(error(std::string(511, 'n') + "<a@b>"), AddressError::kNone);
  const std::string name(505, 'n'), address(509, 'a');
  const std::string entry = name + std::string(7, ' ') + "<" + address + ">";
  ASSERT_EQ(entry.size(), 1023u);
  for (const std::string& tail : {""s, ","s, ",x"s, "\r\nx"s})
    EXPECT_EQ(error(entry + tail), AddressError::kNone) << tail;
  EXPECT_EQ(error(" " + entry), AddressError::kNone) << "blanks in front do not count";
  for (const std::string& tail : {" "s, " ,"s, "\r\n "s})
    EXPECT_EQ(error(entry + tail), AddressError::kEntryTooLong) << tail;
}

struct ListCase {
  std::string list;
  std::vector<std::string> entries;
  const char* why;
  AddressError end = AddressError::kNoEntry;
};

TEST(AddressList, IsWalked) {
  const ListCase cases[] = {
      {"a@b, c@d; e@f", {"a@b", "c@d", "e@f"}, "both separators"},
      {"a@b ;", {"a@b"}, "a separator at the end adds nothing"},
      {"a@b,,c@d", {"a@b", "", "c@d"}, "an empty entry counts"},
      {"\"Doe, J\" <j@x> , (a, b) c@d", {"\"Doe, J\" <j@x>", "(a, b) c@d"}, "as they stand"},
      {"a@b,\r\n c@d", {"a@b", "c@d"}, "over a fold"},
      {"a@b, c@d\r\ne@f", {"a@b", "c@d"}, "up to a line end"},
      {"a@b, <c@d> x, e@f", {"a@b"}, "up to a malformed entry", AddressError::kNoComma},
      {"<a@b> x, e@f", {}, "a first entry that is malformed", AddressError::kNoComma},
      {"\r\na@b", {}, "a line end in front"},
      {"a\\,, b", {"a\\,", "b"}, "an escaped comma stays"},
      {"", {}, "nothing"},
  };
  for (const ListCase& c : cases) {
    EXPECT_EQ(CountAddresses(c.list).entries, c.entries.size()) << c.why;
    EXPECT_EQ(CountAddresses(c.list).end, c.end) << c.why;
    EXPECT_EQ(NthAddress(c.list, 1000).error, c.end) << c.why;
    for (std::size_t i = 0; i < c.entries.size(); ++i)
      EXPECT_EQ(NthAddress(c.list, i).text, c.entries[i]) << c.why;
    EXPECT_EQ(NthAddress(c.list, c.entries.size()).text, "") << c.why;
    EXPECT_EQ(NthAddress(c.list, 1000).text, "") << c.why;
  }
}

// --- Generated lists -----------------------------------------------------------------------------------

using Random = std::mt19937;

std::string Pick(Random& random, const std::vector<std::string>& pieces, std::size_t most) {
  std::string text;
  for (std::size_t n = 1 + random() % most; n > 0; --n) text += pieces[random() % pieces.size()];
  return text;
}

struct Composed {
  std::string text, name, address;
};

const std::vector<std::string> kAtoms = {"a",
                                         "Bc",
                                         "x1",
                                         "-",
                                         "\x8E\x52",
                                         "\x95\x5C",
                                         "\x83\x40",
                                         "\x83\x7C",
                                         "\xB1",
                                         "\x1A\x80\x80\x0D",
                                         "\x1A\x9A\x80\x84"};

Composed Compose(Random& random) {
  std::vector<std::string> inside = kAtoms;
  inside.insert(inside.end(), {", ", ";", "<", ">", "@", "(", ")", "\\\"", "\\\\", "\r\n "});
  const std::string address =
      Pick(random, {"a", "bc", "d.e", "f-g"}, 4) + "@" + Pick(random, {"x", "yz.", "w1"}, 3);
  switch (random() % 5) {
    case 0:
      return {address, "", address};
    case 1:
      return {"<" + address + ">", "", address};
    case 2: {
      const std::string name = Pick(random, kAtoms, 6);
      return {name + " <" + address + ">", name, address};
    }
    case 3: {
      const std::string name = "\"n" + Pick(random, inside, 8) + "n\"";
      return {name + "\t<" + address + " >", name, address};
    }
    default: {
      const std::string name = Pick(random, kAtoms, 2) + " (" + Pick(random, kAtoms, 3) + ", x)";
      return {name + "\r\n <" + address + ">", name, address};
    }
  }
}

TEST(AddressListProperty, ParsingGivesBackWhatWasComposed) {
  Random random(4);
  for (int round = 0; round < 3000; ++round) {
    std::vector<Composed> entries;
    std::string list;
    for (std::size_t n = random() % 6; n > 0; --n) {
      entries.push_back(Compose(random));
      list += Pick(random, {" ", "\t", "\r\n "}, 2) + entries.back().text +
              (n > 1 || random() % 2 == 0 ? "," : "");
    }
    ASSERT_EQ(CountAddresses(list).entries, entries.size()) << list;
    AddressReader reader(list);
    for (const Composed& entry : entries) {
      ASSERT_TRUE(reader.Read());
      ASSERT_EQ(reader.entry().name, entry.name) << list;
      ASSERT_EQ(reader.entry().address, entry.address) << list;
      ASSERT_EQ(reader.entry().text, entry.text) << list;
    }
  }
}

// A list from which one delimiter was taken: what is still read are addresses that were put in, or texts that
// hold no bracket, and never two addresses as one.
TEST(AddressListProperty, AMalformedListGivesNoWrongAddress) {
  Random random(5);
  for (int round = 0; round < 5000; ++round) {
    std::vector<std::string> addresses;
    std::string list;
    for (std::size_t n = 2 + random() % 4; n > 0; --n) {
      addresses.push_back(Pick(random, {"a", "bc", "d.e"}, 4) + "@" + Pick(random, {"x", "yz", "w1"}, 3));
      const std::string name =
          random() % 2 == 0 ? "\"Doe, " + Pick(random, kAtoms, 3) + "\" " : Pick(random, kAtoms, 3) + " ";
      list += name + "<" + addresses.back() + ">" + (n > 1 ? ", " : "");
    }
    const std::size_t gone = list.find_first_of("<>,", random() % list.size());
    if (gone == std::string::npos) continue;
    const char what = list[gone];
    list.erase(gone, 1);
    for (AddressReader reader(list); reader.Read();) {
      const std::string address(reader.entry().address);
      const bool known = std::find(addresses.begin(), addresses.end(), address) != addresses.end();
      const bool bare = what != ',' && reader.entry().name.empty();
      ASSERT_TRUE(known || bare) << list << "\nread as " << address;
    }
  }
}

std::string Garbage(Random& random) {
  static const std::vector<std::string> pieces = {"\"",
                                                  "\"\"",
                                                  "'",
                                                  "(",
                                                  ")",
                                                  "<",
                                                  ">",
                                                  "@",
                                                  ",",
                                                  ";",
                                                  "\\",
                                                  "\\\"",
                                                  " ",
                                                  "\t",
                                                  "\r",
                                                  "\n",
                                                  "\r\n ",
                                                  "\x81",
                                                  "\x81\x43",
                                                  "\x83\x5C",
                                                  "\x1A",
                                                  "\x1A\x80\x80\x0D",
                                                  "a",
                                                  "b@c",
                                                  "\xE8\xA1\xA8",
                                                  "\x80",
                                                  "\xFF",
                                                  std::string(300, 'z')};
  return Pick(random, pieces, 30);
}

TEST(AddressListProperty, TheFastParserAgreesWithThePlainOne) {
  Random random(6);
  for (int round = 0; round < 40000; ++round) {
    const std::string list = Garbage(random);
    for (const bool utf8 : {false, true}) {
      const AddressSyntax syntax{utf8 ? kCodePageUtf8 : kCodePageShiftJis, false};
      for (std::size_t at = 0;;) {
        const AddressEntry fast = ScanAddressEntry(list, at, syntax);
        const wfinfo_test::SlowAddressEntry slow(list, at, utf8);
        ASSERT_EQ(fast.error, slow.error) << list;
        ASSERT_EQ(fast.next, slow.next) << list;
        if (fast.error != AddressError::kNone) break;
        ASSERT_EQ(fast.name, slow.name) << list;
        ASSERT_EQ(fast.address, slow.address) << list;
        ASSERT_EQ(fast.text, slow.text) << list;
        at = fast.next;
      }
    }
  }
}

// False when the masks leave the entry at `begin` to the scanner; what they understand, they understand as the
// plain parser does.
bool IsUnderstood(const AddressKernels& kernels, const std::string& list, std::size_t begin) {
  QuickAddress quick;
  if (!kernels.scan(std::string_view(list).substr(begin), &quick)) return false;
  const wfinfo_test::SlowAddressEntry slow(list, begin);
  EXPECT_EQ(slow.error, AddressError::kNone) << kernels.name << ": " << list;
  const std::size_t end = begin + quick.end;
  EXPECT_EQ(end + (end < list.size() ? 1 : 0), slow.next) << kernels.name << ": " << list;
  if (quick.open < quick.end) {
    EXPECT_EQ(quick.close + 1, quick.end) << kernels.name << ": " << list;
    EXPECT_EQ(list.substr(begin, quick.open).rfind(slow.name, 0), 0u) << kernels.name << ": " << list;
  } else {
    EXPECT_TRUE(slow.name.empty()) << kernels.name << ": " << list;
    EXPECT_EQ(quick.open, quick.end) << kernels.name << ": " << list;
    EXPECT_EQ(quick.close, quick.end) << kernels.name << ": " << list;
  }
  return true;
}

// What the masks of each instruction set understand, they understand as the plain parser does.
TEST(AddressKernels, AgreeWithThePlainParserWhereTheyUnderstand) {
  for (const AddressKernels* const set : RunnableAddressKernels()) {
    Random random(8);
    std::size_t understood = 0;
    for (int round = 0; round < 20000 && !HasFailure(); ++round) {
      const std::string list = Garbage(random);
      const std::size_t begin = list.find_first_not_of(" \t\r\n");
      if (begin != std::string::npos && IsUnderstood(*set, list, begin)) ++understood;
    }
    EXPECT_EQ(understood > 1000, std::string_view(set->name) != "scanner") << set->name << understood;
  }
}

// Every byte in every place: as a lead byte takes what follows, and none else does.
TEST(AddressKernels, ReadEachByteAsThePlainParserDoes) {
  for (const AddressKernels* const set : RunnableAddressKernels()) {
    for (int value = 0; value < 256 && !HasFailure(); ++value) {
      const std::string byte(1, static_cast<char>(value));
      for (const std::string& entry :
           {byte, "a" + byte, "a" + byte + "<x@y>", "<x@y" + byte + ">", "\"" + byte + "\" <x@y>",
            "(" + byte + ") x@y", "\\" + byte, "a " + byte + "b c"}) {
        for (const std::string& rest :
             {""s, ",b"s, ";b"s, "," + std::string(80, 'b'), std::string(80, 'b')}) {
          const std::string list = entry + rest;
          const std::size_t begin = list.find_first_not_of(" \t\r\n");
          if (begin != std::string::npos) IsUnderstood(*set, list, begin);
        }
      }
    }
  }
}

TEST(AddressKernels, TakeNoEntryToEndTooEarlyOrTooLate) {
  const struct {
    std::string list;
    const char* why;
  } cases[] = {
      {"\"\"a\" <x@y>, \"b\"\" <c@d>", "a run of quotes that its mirror closes in the next entry"},
      {"\"\\\"a\" <x@y>, \"b\\\"\" <c@d>", "a run with a backslash"},
      {"a\\ (b, c) d", "a backslash takes a blank and a parenthesis"},
      {"a\\\x83\x5C, b", "a backslash in front of a double-byte character"},
      {"a\\\x81, b", "and of a lead byte alone"},
      {"\"(\" (\") <x@y>, b", "a parenthesis in quotes, a quote in a comment"},
      {"(a (b) c, d) <x@y>", "comments that nest"},
      {"b@c>, d", "a closing bracket alone"},
      {"<x@y, d", "an opening one"},
  };
  for (const AddressKernels* const set : RunnableAddressKernels()) {
    for (const auto& c : cases) {
      SCOPED_TRACE(c.why);
      IsUnderstood(*set, c.list, 0);
    }
  }
}

TEST(AddressKernels, CountAsThePlainParserDoesAsFarAsTheyGo) {
  for (const AddressKernels* const set : RunnableAddressKernels()) {
    const AddressKernels& kernels = *set;
    Random random(9);
    for (int round = 0; round < 6000; ++round) {
      const std::string list = Garbage(random);
      std::size_t at = 0;
      const std::size_t count = kernels.count(list, &at);
      std::size_t plain_at = 0;
      for (std::size_t i = 0; i < count; ++i) {
        const wfinfo_test::SlowAddressEntry slow(list, plain_at);
        ASSERT_EQ(slow.error, AddressError::kNone) << kernels.name << ": " << list;
        plain_at = slow.next;
      }
      ASSERT_EQ(at, plain_at) << kernels.name << ": " << list;
    }
  }
}

TEST(AddressKernels, UnderstandTheCommonShapes) {
  const std::string_view common[] = {
      "taro@example.com, b@c",
      "Taro Yamada <taro@example.com>, b@c",
      "\"Yamada, Taro\" <taro@example.com>",
      "\"Taro \\\"T\\\" Yamada\" <taro@example.com>; x",
      "Taro (Sales, Osaka) <taro@example.com>",
      "\x8E\x52\x93\x63\x81\x40\x91\xBE\x98\x59 <taro@example.com>",
      "\x83\x5C\x83\x5C <a@b>",
      "<a@b>",
      "<taro@example.com>; x",
  };
  for (const AddressKernels* const set : RunnableAddressKernels().subspan(1)) {
    const AddressKernels& kernels = *set;
    for (const std::string_view list : common) {
      QuickAddress quick;
      EXPECT_TRUE(kernels.scan(list, &quick)) << kernels.name << ": " << list;
    }
  }
}

TEST(AddressBytes, TheBlockKernelAgreesWithThePlainOne) {
  Random random(7);
  char block[kAddressBlock];
  for (int round = 0; round < 20000; ++round) {
    for (char& c : block) c = static_cast<char>(random());
    ASSERT_EQ(AddressByteMask(block), AddressByteMaskPortable(block));
  }
}

}  // namespace
}  // namespace wfinfo
