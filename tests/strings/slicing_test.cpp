#include "src/strings/slicing.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>

#include "src/strings/letter_case.h"
#include "src/strings/randomness.h"

namespace wfinfo {
namespace {

const std::string kEscape = "\x1A\x80\x80\x0D";

struct PartCase {
  std::string text;
  int start, count;
  std::string left, right, middle;  // Left(count), Right(count), Middle(start, count)
  const char* why;
};

TEST(Slicing, KeepsCharactersWhole) {
  const PartCase cases[] = {
      {"abcdef", 2, 3, "abc", "def", "cde", "single bytes"},
      {"abcdefghijkl", 10, 5, "abcde", "hijkl", "kl", "a count beyond the end"},
      {"abc", 0, 100, "abc", "abc", "abc", "more than there is"},
      {"abc", 3, 1, "a", "c", "", "a start at the end"},
      {"abc", 9, 1, "a", "c", "", "a start beyond"},
      {"abc", -1, 1, "a", "c", "", "a start in front"},
      {"abc", 1, 0, "", "", "", "a count of nothing"},
      {"abc", 1, -2, "", "", "", "a negative count"},
      {"a\x83\x5C"
       "d",
       2, 2, "a",
       "\x83\x5C"
       "d",
       "\x83\x5C"
       "d",
       "a cut inside a character"},
      {"a" + kEscape + "z", 3, 3, "a", kEscape + "z", kEscape + "z", "a cut inside an escape"},
      {"a" + kEscape + "z", 1, 4, "a", kEscape + "z", kEscape, "an escape exactly, and cut"},
      {"\x83\x83\x83\x83", 1, 2, "\x83\x83", "\x83\x83", "\x83\x83",
       "second bytes that look like lead bytes"},
      {"", 0, 5, "", "", "", "nothing"},
      {"ab\x1A", 0, 3, "ab", "ab", "ab", "a 0x1A near the cut is taken for an escape's, also at the end"},
  };
  for (const PartCase& c : cases) {
    EXPECT_EQ(LeftPart(c.text, c.count), c.left) << c.why;
    EXPECT_EQ(RightPart(c.text, c.count), c.right) << c.why;
    EXPECT_EQ(MiddlePart(c.text, c.start, c.count), c.middle) << c.why;
  }
}

// The rule looks for a 0x1A in the three bytes before a cut or a start, the nearest first.
TEST(Slicing, TheNearestOfThreeBytesDecides) {
  EXPECT_EQ(RightPart("\x1A"
                      "ab\x1Axyz",
                      4),
            "\x1A"
            "ab\x1Axyz")
      << "what stands at the start itself does not count";
  EXPECT_EQ(RightPart("\x1A"
                      "abcdefg",
                      4),
            "defg")
      << "four bytes before";
  EXPECT_EQ(RightPart("a\x1A"
                      "b\x1Axyz",
                      3),
            "\x1Axyz")
      << "the nearest of two";
  EXPECT_EQ(MiddlePart("abc", 1, 1), "b");
}

std::set<std::size_t> Borders(std::string_view text) {
  std::set<std::size_t> borders = {0};
  for (std::size_t at = 0; at < text.size(); borders.insert(at)) at += UnitLength(text.substr(at));
  return borders;
}

TEST(SlicingProperty, PartsBeginAndEndAtBorders) {
  std::mt19937 random(8);
  const char alphabet[] = "a\x81\x5C\x1A\x80\x84\x0D\x22\x97\xFC";
  for (int round = 0; round < 20000; ++round) {
    std::string text(random() % 24, '\0');
    for (char& c : text) c = alphabet[random() % (sizeof alphabet - 1)];
    const auto borders = Borders(text);
    const int start = static_cast<int>(random() % 26), count = static_cast<int>(random() % 26);
    for (const std::string_view part :
         {LeftPart(text, count), RightPart(text, count), MiddlePart(text, start, count)}) {
      if (part.empty()) continue;
      const auto begin = static_cast<std::size_t>(part.data() - text.data());
      ASSERT_TRUE(borders.count(begin) == 1 && borders.count(begin + part.size()) == 1) << round;
    }
    ASSERT_LE(LeftPart(text, count).size(), static_cast<std::size_t>(count));
  }
}

std::string Escaped(const std::string& text) {
  std::string out(kEscapedRoom, '#');
  out.resize(EscapeQuotes(text, out.data()));
  return out;
}

TEST(Slicing, QuotesAndBackslashesAreEscaped) {
  EXPECT_EQ(Escaped(""), "");
  EXPECT_EQ(Escaped("a\"b\\c"), "a\\\"b\\\\c");
  EXPECT_EQ(Escaped("\x95\x5C" + kEscape + "\x81"), "\x95\x5C" + kEscape + "\x81") << "second bytes stay";
}

TEST(Slicing, EscapingStopsBeforeTheUnitBehind8190Bytes) {
  EXPECT_EQ(Escaped(std::string(9000, 'a')).size(), 8190u);
  EXPECT_EQ(Escaped(std::string(8189, 'a') + "\"b"), std::string(8189, 'a') + "\\\"");
  EXPECT_EQ(Escaped(std::string(8189, 'a') + "\x83\x41"
                                             "b"),
            std::string(8189, 'a') + "\x83\x41");
  EXPECT_EQ(Escaped(std::string(8189, 'a') + kEscape + "b"), std::string(8189, 'a') + kEscape)
      << "the longest there is";
  EXPECT_EQ(Escaped(std::string(8190, 'a') + kEscape).size(), 8190u);
}

TEST(Slicing, EnclosingQuotesAreRecognised) {
  for (const char* text : {"\"a\"", "\"\"\"", "\"a b\""}) EXPECT_TRUE(IsEnclosedInQuotes(text)) << text;
  for (const char* text : {"", "\"", "\"\"", "a\"", "\"a", "\"a\x81\"", "ab\"", "\"ab", "abc"})
    EXPECT_FALSE(IsEnclosedInQuotes(text)) << text;
  EXPECT_TRUE(IsEnclosedInQuotes("\"" + std::string(8189, 'a') + "\""));
  EXPECT_FALSE(IsEnclosedInQuotes("\"" + std::string(8190, 'a') + "\""));
}

TEST(Slicing, BaseNamesStandBehindTheLastBackslash) {
  EXPECT_EQ(BaseName("C:\\a\\b.txt"), "b.txt");
  EXPECT_EQ(BaseName("b.txt"), "b.txt");
  EXPECT_EQ(BaseName("\\b.txt"), "b.txt");
  EXPECT_EQ(BaseName("C:\\a\\"), "");
  EXPECT_EQ(BaseName(""), "");
  EXPECT_EQ(BaseName("C:\\\x95\x5C.txt"), "\x95\x5C.txt") << "a second byte is no backslash";
  EXPECT_EQ(BaseName("a/b"), "a/b");
}

TEST(Slicing, PartsAreFoundFromAUnitOn) {
  const struct {
    std::string text, part;
    bool found;
    const char* why;
  } cases[] = {
      {"abc", "bc", true, "plain"},
      {"abc", "", true, "an empty part"},
      {"", "a", false, "an empty text"},
      {"abc", "BC", false, "letter case counts"},
      {"\x83\x5C", "\\", false, "a second byte"},
      {"\x83\x41"
       "A",
       "A", true, "skipped inside a character, found behind it"},
      {"\x83\x83\x41", "\x83\x41", false, "across two characters"},
      {"\x83\x83\x83\x41", "\x83\x41", true, "the second character"},
      {kEscape, "\r", false, "inside an escape"},
      {kEscape + "\r", "\r", true, "behind an escape"},
  };
  for (const auto& c : cases) EXPECT_EQ(Includes(c.text, c.part), c.found) << c.why;
}

TEST(LetterCase, ChangesAsciiLettersAlone) {
  std::string text = "aZ@[`{ \x83\x61\x83\x41\xB1z" + kEscape + "z\x81";
  MakeUpperCase(text);
  EXPECT_EQ(text, "AZ@[`{ \x83\x61\x83\x41\xB1Z" + kEscape + "Z\x81");
  MakeLowerCase(text);
  EXPECT_EQ(text, "az@[`{ \x83\x61\x83\x41\xB1z" + kEscape + "z\x81");
  std::string cut = "\x1A\x80\x80";
  MakeUpperCase(cut);
  EXPECT_EQ(cut, "\x1A\x80\x80");
}

TEST(Randomness, TheLetterPairsAreAsTheyShould) {
  const std::string_view pairs = kLetterPairs;
  ASSERT_EQ(pairs.size(), 772u);
  EXPECT_EQ(pairs.substr(0, 40), "thheineranreonatenndtiesorteofedisitalar");
  std::set<std::string_view> known;
  for (std::size_t i = 0; i < pairs.size(); i += 2) known.insert(pairs.substr(i, 2));
  EXPECT_EQ(known.size(), 386u) << "no pair twice";
  EXPECT_EQ(pairs.find_first_not_of("abcdefghijklmnopqrstuvwxyz"), pairs.npos);
}

TEST(Randomness, TextsAreJudged) {
  const struct {
    const char* text;
    int score;
    const char* why;
  } cases[] = {
      {"xkqzvbnm", 1, "no vowels"},
      {"internet", 0, "three vowels in eight letters"},
      {"QWRTZ", 1, "upper case, no vowels counted"},
      {"AEIOU", 1, "upper-case vowels are none"},
      {"xkqz", 0, "fewer than five letters"},
      {"x1k2q3z4", 0, "digits are no letters"},
      {"axkqzvb", 0, "one vowel in seven letters"},
      {"axkqzvbn", 1, "one in eight: unknown pairs"},
      {"strengthsstr", 0, "few vowels, known pairs"},
      {"thrast", 0, "each of the five vowels counts: one in six letters"},
      {"threst", 0, "each of the five vowels counts: one in six letters"},
      {"thrist", 0, "each of the five vowels counts: one in six letters"},
      {"throst", 0, "each of the five vowels counts: one in six letters"},
      {"thrust", 0, "each of the five vowels counts: one in six letters"},
      {"thryst", 1, "y is none"},
      {"ththththe", 0, "known pairs"},
      {"tHtHtHtHe", 1, "a pair with a capital letter is not known"},
      {"", 0, "nothing"},
      {"\x82\xA0\x82\xA2\x82\xA4\x82\xA6\x82\xA8", 0, "no letters at all"},
  };
  for (const auto& c : cases) EXPECT_EQ(RandomnessScore(c.text), c.score) << c.why;
}

TEST(Randomness, DomainsAreJudgedByOneLabel) {
  const struct {
    const char* domain;
    int random;
    const char* why;
  } cases[] = {
      {"xkqzvbnm.com", 1, "the label left of the top level"},
      {"internet.com", 0, "a word"},
      {"internet.xkqzvbnm", 0, "the top-level domain does not count"},
      {"xkqzvbnm", 0, "there is nothing but the last label"},
      {"xkqzvbnm.co.jp", 1, "short labels are passed over"},
      {"www.abcd.com", 0, "only short labels"},
      {"xkqzvbnm.internet.com", 0, "the first long one from the right"},
      {"xkqzvbnm-internet.com", 0, "as many random runs as others"},
      {"xkqzvbnm-qwrtz-internet.com", 1, "more random runs"},
      {"a-b-c-d-e.com", 0, "short runs do not count"},
      {"xkqzvbnm@internet.com", 0, "letters behind another byte"},
      {"internet@xkqzvbnm.com", 1, "the label ends at another byte"},
      {"xkqzvbnm.com>", 0, "another byte at the end"},
      {"xkqzvbnm.com.", 1, "a dot at the end"},
      {"xkq1zvb2nm.com", 1, "digits are part of a label"},
      {"..", 0, "empty labels"},
      {"", 0, "nothing"},
  };
  for (const auto& c : cases) EXPECT_EQ(DomainRandomness(c.domain), c.random) << c.why;
}

}  // namespace
}  // namespace wfinfo
