#include "src/commands/keyword_table.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

#include "src/commands/folder_words.h"
#include "src/commands/log_words.h"
#include "src/commands/mail_words.h"
#include "src/commands/navigation_words.h"
#include "src/commands/reply_words.h"
#include "src/commands/template_words.h"
#include "src/commands/transfer_words.h"

namespace wfinfo {
namespace {

using namespace std::string_view_literals;

constexpr Keyword kRows[] = {{"ab", 1}, {"abc", 2}, {"x-Y", 4}, {"ab", 8}};
constexpr KeywordTable kFolded{kRows};
constexpr KeywordTable kExact{kRows, LetterCase::kCounts};

TEST(KeywordTable, FindsWholeWordsAndTheFirstOfEqualOnes) {
  const struct {
    std::string_view text;
    long long folded, exact;
    const char* why;
  } cases[] = {
      {"ab", 1, 1, "first of two rows"},
      {"AB", 1, -1, "letter case"},
      {"abc", 2, 2, "a word that another begins"},
      {"abcd", -1, -1, "a word with something behind it"},
      {"a", -1, -1, "a part of a word"},
      {"", -1, -1, "no row for the empty text"},
      {"x-y", 4, -1, "only letters have case"},
      {"X-Y", 4, -1, "only letters have case"},
      {"x\x0DY", -1, -1, "0x0D and '-' differ by the case bit"},
      {"ab\0"sv, -1, -1, "a zero counts like any byte"},
      {"\x81\x61"
       "ab",
       -1, -1, "a double-byte character in front"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(KeywordOr(kFolded, c.text, -1), c.folded) << c.why;
    EXPECT_EQ(KeywordOr(kExact, c.text, -1), c.exact) << c.why;
  }
}

TEST(KeywordTable, OnlyAsciiLettersFold) {
  for (int byte = 0; byte < 256; ++byte) {
    for (int other = 0; other < 256; ++other) {
      const char a = static_cast<char>(byte);
      const char b = static_cast<char>(other);
      const bool letters = (byte | 0x20) >= 'a' && (byte | 0x20) <= 'z' && (byte | 0x20) == (other | 0x20);
      EXPECT_EQ(SameWord({&a, 1}, {&b, 1}, LetterCase::kIgnored), byte == other || letters)
          << byte << " " << other;
    }
  }
}

TEST(KeywordTable, PrefixesAreTriedInTheOrderOfTheTable) {
  EXPECT_EQ(FindKeywordPrefix(kFolded, "ABCD")->code, 1);
  EXPECT_EQ(FindKeywordPrefix(kFolded, "x-yz")->code, 4);
  EXPECT_EQ(FindKeywordPrefix(kExact, "x-yz"), nullptr);
  EXPECT_EQ(FindKeywordPrefix(kFolded, "a"), nullptr);
  EXPECT_EQ(FindKeywordPrefix(kFolded, ""), nullptr);
}

TEST(KeywordTable, ScansWordsWithAndWithoutPlus) {
  const struct {
    std::string_view text;
    long long codes;
    std::string_view rest;
    const char* why;
  } cases[] = {
      {"", 0, "", "nothing"},
      {"batch", 0x1, "", "one word"},
      {"hotonly+smallretain", 0xC, "", "two joined by a plus"},
      {"yesallbatch", 0x11, "", "two run together"},
      {"YesAll+BATCH+", 0x11, "", "a plus at the end, letter case"},
      {"under+under", 0x2, "", "the same word twice"},
      {"+under", 0, "+under", "a plus in front is no word"},
      {"under++batch", 0x2, "+batch", "only one plus is skipped"},
      {"under,batch", 0x2, ",batch", "no other separator"},
      {"underx", 0x2, "x", "an unknown word"},
      {"unde", 0, "unde", "a part of a word"},
  };
  for (const auto& c : cases) {
    const KeywordScan scan = ScanKeywords(kDuplicationModes, c.text);
    EXPECT_EQ(scan.codes, c.codes) << c.why;
    EXPECT_EQ(scan.rest, c.rest) << c.why;
  }
}

TEST(KeywordTable, AnEmptyWordEndsAScanInsteadOfStandingStill) {
  constexpr Keyword kWithEmpty[] = {{"", 1}, {"a", 2}};
  const KeywordScan scan = ScanKeywords(KeywordTable{kWithEmpty}, "b");
  EXPECT_EQ(scan.codes, 0);
  EXPECT_EQ(scan.rest, "b");
}

// The obvious way: cut off whatever word fits, letter by letter in lower case.
KeywordScan ScanSlowly(const KeywordTable& table, std::string_view text) {
  std::string rest(text);
  for (char& letter : rest) letter = static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter + 32 : letter);
  long long codes = 0;
  for (bool found = true; found && !rest.empty();) {
    found = false;
    for (const Keyword& row : table.rows) {
      if (rest.compare(0, row.word.size(), row.word) != 0) continue;
      codes |= row.code;
      rest.erase(0, row.word.size());
      if (!rest.empty() && rest[0] == '+') rest.erase(0, 1);
      found = true;
      break;
    }
  }
  return {codes, text.substr(text.size() - rest.size())};
}

TEST(KeywordTable, ScansLikeTheObviousWay) {
  std::mt19937 random(20240501);
  const auto rows = kDuplicationOptions.rows;
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (auto parts = random() % 5; parts > 0; --parts) {
      text += rows[random() % rows.size()].word.substr(0, random() % 8 == 0 ? 4 : std::string_view::npos);
      if (random() % 2 == 0) text += '+';
      if (!text.empty() && random() % 3 == 0) text[random() % text.size()] ^= 0x20;
    }
    const KeywordScan fast = ScanKeywords(kDuplicationOptions, text);
    const KeywordScan slow = ScanSlowly(kDuplicationOptions, text);
    ASSERT_EQ(fast.codes, slow.codes) << text;
    ASSERT_EQ(fast.rest, slow.rest) << text;
  }
}

TEST(KeywordTable, NoRowIsHiddenByAnEarlierOne) {
  const KeywordTable whole_words[] = {
      kNavigationTargets, kDirections,      kNavigationUnits, kRollModes,     kReplyKinds,  kReplyAttachments,
      kMultiReplies,      kResendModes,     kLogKinds,        kImportTypes,   kImportTimes, kExportTypes,
      kExportNamings,     kExportEncodings, kExportWrites,    kTemplateKinds, kMailCounts,  kCharSets};
  for (const KeywordTable& table : whole_words) {
    for (const Keyword& row : table.rows) EXPECT_EQ(FindKeyword(table, row.word), &row) << row.word;
  }
  const KeywordTable prefixes[] = {kExportPrefixes, kDuplicationModes, kDuplicationOptions};
  for (const KeywordTable& table : prefixes) {
    for (const Keyword& row : table.rows) EXPECT_EQ(FindKeywordPrefix(table, row.word), &row) << row.word;
  }
  for (const MailFlagName& row : kMailFlagNames) EXPECT_EQ(FindMailFlag(row.word), &row) << row.word;
}

TEST(KeywordTable, ScannedWordsHaveBitsOfTheirOwn) {
  for (const KeywordTable& table : {kDuplicationModes, kDuplicationOptions}) {
    long long seen = 0;
    for (const Keyword& row : table.rows) {
      EXPECT_EQ(seen & row.code, 0) << row.word;
      seen |= row.code;
    }
  }
}

TEST(KeywordTable, TwoPairsOfMailFlagsShareABit) {
  std::multiset<std::uint32_t> bits;
  for (const MailFlagName& row : kMailFlagNames) bits.insert(row.bit);
  for (const std::uint32_t bit : bits) {
    EXPECT_EQ(bits.count(bit), bit == 0x00200000 || bit == 0x00400000 ? 2u : 1u) << bit;
  }
}

TEST(ExportType, NeedsANamingWordInSmallLettersBehindItsPrefix) {
  const struct {
    const char* text;
    bool known;
    long long type, naming;
    const char* why;
  } cases[] = {
      {"mbox", true, 0, 0, "whole word"},
      {"MBOX", true, 0, 0, "letter case"},
      {"Wrenfold", true, 1, 0, "letter case"},
      {"tamarinmail", true, 1, 0, "second name"},
      {"period", true, 3, 0, "whole word"},
      {"eml-number", true, 2, 0, "naming"},
      {"EML-subject", true, 2, 1, "the prefix has no case"},
      {"eml-Subject", false, 0, 0, "the naming has"},
      {"eml-date", true, 2, 2, "naming"},
      {"eml-filename", true, 2, 3, "naming"},
      {"eml-unique", true, 2, 3, "the same naming as filename"},
      {"emltxt-unique", true, 6, 3, "second prefix"},
      {"EmlTxt-number", true, 6, 0, "second prefix, letter case"},
      {"eml", false, 0, 0, "no naming"},
      {"eml-", false, 0, 0, "empty naming"},
      {"eml-numbers", false, 0, 0, "more behind the naming"},
      {"emltxt", false, 0, 0, "no naming"},
      {"", false, 0, 0, "nothing"},
      {"mboxx", false, 0, 0, "more behind the word"},
  };
  for (const auto& c : cases) {
    const ExportType parsed = ParseExportType(c.text);
    EXPECT_EQ(parsed.known, c.known) << c.text << ": " << c.why;
    EXPECT_EQ(parsed.type, c.type) << c.text << ": " << c.why;
    EXPECT_EQ(parsed.naming, c.naming) << c.text << ": " << c.why;
  }
}

}  // namespace
}  // namespace wfinfo
