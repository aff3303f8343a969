// The judgement of random texts and domains against its rule, written down without regard to speed.
#include "src/strings/randomness.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace wfinfo {
namespace {

bool IsAny(char c, std::string_view of) { return of.find(c) != of.npos; }
constexpr std::string_view kLower = "abcdefghijklmnopqrstuvwxyz", kUpper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
bool IsAnyLetter(char c) { return IsAny(c, kLower) || IsAny(c, kUpper); }

int SlowScore(std::string_view text) {
  static const std::set<std::string_view> kKnown = [] {
    std::set<std::string_view> known;
    for (std::size_t i = 0; i < 2 * kLetterPairCount; i += 2) known.insert({kLetterPairs + i, 2});
    return known;
  }();
  int letters = 0, vowels = 0, pairs = 0, known = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    letters += IsAnyLetter(text[i]);
    vowels += IsAny(text[i], "aeiou");
    const std::string_view pair = text.substr(i, 2);
    if (pair.size() < 2 || !IsAnyLetter(pair[0]) || !IsAnyLetter(pair[1])) continue;
    ++pairs;
    known += kKnown.contains(pair);
  }
  if (letters < 5) return 0;
  if (letters <= 7 && vowels * 7 >= letters) return 0;
  if (letters > 7 && vowels * 5 >= letters) return 0;
  return vowels == 0 || known * 3 < pairs * 2;
}

std::vector<std::string> SplitAt(char separator, const std::string& text) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

int SlowDomain(const std::string& domain) {
  std::string readable;  // the end of the domain that holds nothing else than labels
  for (std::size_t i = domain.size(); i-- > 0;) {
    if (!IsAnyLetter(domain[i]) && !IsAny(domain[i], "0123456789-.")) break;
    readable.insert(0, 1, domain[i]);
  }
  std::vector<std::string> labels = SplitAt('.', readable);
  labels.pop_back();
  while (!labels.empty() && labels.back().size() < 5) labels.pop_back();
  if (labels.empty()) return 0;
  int random = 0, others = 0;
  for (const std::string& run : SplitAt('-', labels.back())) {
    if (run.size() >= 5) ++(SlowScore(run) > 0 ? random : others);
  }
  return random > others;
}

// The text in memory of exactly its size, so that the sanitizer sees a byte too many.
template <class Judge>
int InExactMemory(const std::string& text, Judge judge) {
  const std::unique_ptr<char[]> exact(new char[text.size()]);
  text.copy(exact.get(), text.size());
  return judge(std::string_view(exact.get(), text.size()));
}

std::string RandomText(std::mt19937& random, std::string_view letters, std::size_t longest) {
  std::string text(random() % (longest + 1), '\0');
  for (char& c : text) c = letters[random() % letters.size()];
  return text;
}

TEST(Randomness, TextsAreJudgedByTheRule) {
  constexpr std::string_view kMixtures[] = {"aeioubcdfghklmnprstwxyz", "aeioutsrnhltsrnhltsrnhl",
                                            "ththerstsnl", "etsnrhlETSN1 ", "etsnrhlcxk"};
  std::mt19937 random(31);
  int found = 0;
  for (int round = 0; round < 40'000; ++round) {
    const std::string text = RandomText(random, kMixtures[random() % std::size(kMixtures)], 20);
    const int expected = SlowScore(text);
    ASSERT_EQ(InExactMemory(text, RandomnessScore), expected) << text;
    found += expected;
  }
  EXPECT_GT(found, 4'000);
  EXPECT_LT(found, 36'000);
}

TEST(Randomness, DomainsAreJudgedByTheRule) {
  constexpr std::string_view kPieces[] = {
      "xkqzvbnm", "internet", "qwrtz", "abcd", "x1k2q3z4", "letter", "com", "co", ".", ".",
      ".",        "-",        "-",     "@",    "7",        "9",      "_",   "x",  "z"};
  std::mt19937 random(32);
  int found = 0;
  for (int round = 0; round < 40'000; ++round) {
    std::string domain;
    for (auto n = random() % 12; n > 0; --n) domain += kPieces[random() % std::size(kPieces)];
    const int expected = SlowDomain(domain);
    ASSERT_EQ(InExactMemory(domain, DomainRandomness), expected) << domain;
    found += expected;
  }
  EXPECT_GT(found, 2'000);
  EXPECT_LT(found, 38'000);
}

}  // namespace
}  // namespace wfinfo
