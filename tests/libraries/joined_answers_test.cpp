#include "src/libraries/joined_answers.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace wfinfo {
namespace {

constexpr std::size_t kMostBytes = 65519;  // of joined answers, the terminator not counted

// A block of its exact size, so that a byte behind it is noticed.
std::unique_ptr<char[]> Block() { return std::make_unique<char[]>(kJoinedAnswersRoom); }

TEST(JoinedAnswers, StandOneBehindTheOther) {
  const auto block = Block();
  JoinedAnswers answers(block.get(), "(cut)");
  EXPECT_STREQ(block.get(), "");
  for (const char* answer : {"a", "", "b c"}) EXPECT_TRUE(answers.Add(answer));
  EXPECT_STREQ(block.get(), "a, , b c") << "an empty answer keeps its place";
}

TEST(JoinedAnswers, AnAnswerIsTakenWholeOrTheMarkStandsInItsPlace) {
  const struct {
    std::size_t first, second;  // bytes
    bool fits;
    const char* why;
  } cases[] = {
      {kMostBytes, 0, false, "the separator behind a full block leaves no room for an empty answer"},
      {kMostBytes - 2, 0, true, "an empty one ends where the room does"},
      {kMostBytes - 3, 1, true, "the last byte"},
      {kMostBytes - 3, 2, false, "one byte more"},
      {1, 100000, false, "more than the block holds"},
  };
  for (const auto& c : cases) {
    const auto block = Block();
    const std::string first(c.first, 'x'), second(c.second, 'y');
    JoinedAnswers answers(block.get(), "(cut)");
    EXPECT_TRUE(answers.Add(first)) << c.why;
    EXPECT_EQ(answers.Add(second), c.fits) << c.why;
    EXPECT_EQ(block.get(), first + ", " + (c.fits ? second : "(cut)")) << c.why;
  }
}

TEST(JoinedAnswers, AFirstAnswerThatIsTooLongIsTheMarkAlone) {
  const auto block = Block();
  EXPECT_FALSE(JoinedAnswers(block.get(), "(cut)").Add(std::string(kMostBytes + 1, 'x')));
  EXPECT_STREQ(block.get(), "(cut)");
}

}  // namespace
}  // namespace wfinfo
