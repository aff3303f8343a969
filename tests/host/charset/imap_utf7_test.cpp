// IMAP's folder names, held against a second writing of the RFC in Python.
#include "host/charset/imap_utf7.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <sstream>
#include <vector>

namespace wrenfold {
namespace {

struct Pair {
  std::u16string name;
  std::string encoded;
};

std::vector<Pair> ReferencePairs() {
  std::vector<Pair> pairs;
  std::string printed;
  FILE* const pipe = popen("python3 '" WFINFO_SOURCE_DIR "/tests/host/charset/imap_utf7_reference.py'", "r");
  if (pipe == nullptr) return pairs;
  char buffer[4096];
  for (std::size_t got; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) printed.append(buffer, got);
  if (pclose(pipe) != 0) return pairs;
  std::istringstream lines(printed);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t blank = line.find(' ');
    Pair& pair = pairs.emplace_back();
    pair.encoded = line.substr(blank + 2, line.size() - blank - 3);
    std::istringstream units(line.substr(0, blank));
    for (std::string unit; line[0] != '-' && std::getline(units, unit, ',');) {
      pair.name += static_cast<char16_t>(std::stoul(unit, nullptr, 16));
    }
  }
  return pairs;
}

TEST(ImapUtf7, IsWhatTheReferenceMakesBothWays) {
  const std::vector<Pair> pairs = ReferencePairs();
  ASSERT_GT(pairs.size(), 3000u);
  EXPECT_EQ(pairs[0].encoded, "~peter/mail/&U,BTFw-/&ZeVnLIqe-") << "the example of the RFC";
  for (const Pair& pair : pairs) {
    EXPECT_EQ(ToImapUtf7(pair.name), pair.encoded);
    EXPECT_EQ(FromImapUtf7(pair.encoded), pair.name) << pair.encoded;
  }
}

TEST(ImapUtf7, ReadsWhatCarelessWritersMake) {
  EXPECT_EQ(FromImapUtf7("&AEE-"), u"A") << "shifted, though it can stand for itself";
  EXPECT_EQ(FromImapUtf7("&U,BTFw-&ZeVnLIqe-"), u"\u53F0\u5317\u65E5\u672C\u8A9E")
      << "two shifts next to each other";
}

TEST(ImapUtf7, RefusesWhatIsNoName) {
  struct Case {
    std::string_view encoded;
    const char* why;
  };
  const Case cases[] = {
      {"a&", "a shift without its end"},
      {"&AE", "without its end"},
      {"&AE/-", "a digit of ordinary base 64"},
      {"&A-", "bits left over"},
      {"&AEE-&AEF-", "bits left over that are not 0"},
      {"&2AA-", "half a character"},
      {"&3AA-", "the other half"},
      {"caf\xC3\xA9", "a byte of eight bits"},
      {"tab\t", "a control character"},
      {"del\x7F", "a control character"},
      {"&AEE=-", "padding"},
  };
  for (const Case& c : cases) EXPECT_EQ(FromImapUtf7(c.encoded), std::nullopt) << c.why;
}

TEST(ImapUtf7, MakesReadableNamesOfBrokenCharacters) {
  EXPECT_EQ(FromImapUtf7(ToImapUtf7(std::u16string(1, 0xD800))), u"\uFFFD");
  EXPECT_EQ(FromImapUtf7(ToImapUtf7(std::u16string{0xDC00, u'a', 0xD83D, 0xDE00})), u"\uFFFDa\U0001F600");
}

TEST(ImapUtf7, WhatIsReadIsWrittenAndReadAgain) {
  std::mt19937 random(5);
  constexpr std::string_view kBytes = "&&&-ABab09+, /~\x7F";
  for (int round = 0; round < 50'000; ++round) {
    std::string encoded;
    for (std::size_t n = random() % 12; n > 0; --n) encoded += kBytes[random() % kBytes.size()];
    const auto name = FromImapUtf7(encoded);
    if (!name) continue;
    EXPECT_EQ(FromImapUtf7(ToImapUtf7(*name)), name) << encoded;
  }
}

}  // namespace
}  // namespace wrenfold
