#include "host/terminal/progress.h"

#include <gtest/gtest.h>

#include "host/terminal/answers.h"

namespace wrenfold {
namespace {

class FakeScreen : public ProgressScreen {
 public:
  FakeScreen() { SetProgressScreen(this); }
  ~FakeScreen() override { SetProgressScreen(nullptr); }
  std::uint64_t NowMs() override { return now; }
  void Show(std::string_view line) override { lines.emplace_back(line); }

  std::uint64_t now = 1000;
  std::vector<std::string> lines;
};

using Lines = std::vector<std::string>;

TEST(Progress, ShortWorkShowsNothing) {
  FakeScreen screen;
  {
    Progress progress("reading", 3);
    screen.now += Progress::kSilentMs - 1;
    progress.Step();
  }
  EXPECT_EQ(screen.lines, Lines());
}

TEST(Progress, LongWorkShowsALineAtTimesAndTakesItAway) {
  FakeScreen screen;
  {
    Progress progress("reading", 4000);
    for (int i = 0; i < 2000; ++i) {
      ++screen.now;
      progress.Step();
    }
    EXPECT_EQ(screen.lines.size(), 1 + (2000 - Progress::kSilentMs) / Progress::kEveryMs);
  }
  EXPECT_EQ(screen.lines.front(), "reading: 500 of 4,000, 1,000 a second");
  EXPECT_EQ(screen.lines.back(), "");
}

TEST(Progress, WithoutAScreenNothingShows) {
  Progress progress("reading");
  progress.Step();
}

TEST(Progress, LineTellsCountAndRate) {
  EXPECT_EQ(ProgressLine("x", 1234567, 0, 1000), "x: 1,234,567, 1,234,567 a second");
  EXPECT_EQ(ProgressLine("x", 1, 20, 0), "x: 1 of 20");
}

TEST(ScriptedAnswers, AreLinesInTheirOrder) {
  ScriptedAnswers answers("\xEF\xBB\xBFone\r\n\ntwo");
  EXPECT_EQ(answers.Next(), "one");
  EXPECT_EQ(answers.Next(), "");
  EXPECT_EQ(answers.Next(), "two");
  EXPECT_EQ(answers.Next(), std::nullopt);
}

}  // namespace
}  // namespace wrenfold
