#include "tools/kit/verdict.h"

#include <gtest/gtest.h>

namespace {

using kit::Ended;
using kit::JudgeMacros;
using kit::JudgeTest;
using kit::MacroRun;
using kit::Outcome;

Ended EndedWith(std::uint32_t code, std::string output) {
  Ended ended;
  ended.code = code;
  ended.output = std::move(output);
  return ended;
}

TEST(KitListing, NamesTestsBySuite) {
  EXPECT_EQ(
      kit::ListedTests("Running main() from main.cpp\r\nA.\r\n  One\r\n  Two\r\nSystem/B.\n"
                       "  Reads/Aes  # GetParam() = 16-byte object\nC/0.  # TypeParam = int\n  Three\n"),
      (std::vector<std::string>{"A.One", "A.Two", "System/B.Reads/Aes", "C/0.Three"}));
  EXPECT_EQ(kit::ListedTests(""), std::vector<std::string>{});
}

TEST(KitVerdict, TellsHowATestEnded) {
  Ended hung = EndedWith(75, "half"), stopped = EndedWith(75, ""), missing;
  hung.hung = true;
  stopped.stopped = true;
  missing.started = false;
  missing.errors = "error 2";
  const std::string good = "[  PASSED  ] 1 test.\n";
  const struct {
    Ended ended;
    Outcome outcome;
    const char* reason;
  } kCases[] = {
      {EndedWith(0, good), Outcome::kPassed, ""},
      {EndedWith(0, "a.cpp:1: Skipped\r\nno gpg\r\n\r\n[  SKIPPED ] A.B (0 ms)\n"), Outcome::kSkipped,
       "no gpg"},
      {EndedWith(0, "a.cpp:1: Skipped\n\n\n[  SKIPPED ] A.B (0 ms)\n"), Outcome::kSkipped,
       "the test gives no reason"},
      {EndedWith(0, ""), Outcome::kFailed, "ended with 0 and did not say that it passed"},
      {EndedWith(0, "[  PASSED  ] 0 tests."), Outcome::kFailed,
       "ended with 0 and did not say that it passed"},
      {EndedWith(1, "x\ntests/a.cpp:7: Failure\nExpected: 1\n"), Outcome::kFailed,
       "tests/a.cpp:7: Expected: 1"},
      {EndedWith(3, good), Outcome::kFailed, "ended with 3 and without a failure that it told"},
      {EndedWith(0xC0000005, good), Outcome::kFailed, "crashed: 0xC0000005"},
      {hung, Outcome::kFailed, "hung: ended after 9 seconds"},
      {stopped, Outcome::kNotRun, "stopped by Ctrl+C"},
      {missing, Outcome::kFailed, "could not be started: error 2"},
  };
  for (const auto& [ended, outcome, reason] : kCases) {
    const kit::Verdict verdict = JudgeTest(ended, 9);
    EXPECT_EQ(verdict.outcome, outcome) << reason;
    EXPECT_EQ(verdict.reason, reason);
    EXPECT_EQ(verdict.output.empty(), outcome != Outcome::kFailed || ended.output + ended.errors == "")
        << reason;
  }
}

TEST(KitVerdict, KeepsBeginningAndEndOfALongOutput) {
  const std::string output = "begin" + std::string(100000, 'x') + "end";
  const kit::Verdict verdict = JudgeTest(EndedWith(1, output), 9);
  EXPECT_LT(verdict.output.size(), 21000u);
  EXPECT_TRUE(verdict.output.starts_with("begin") && verdict.output.ends_with("end"));
  EXPECT_NE(verdict.output.find("80008 bytes left out"), verdict.output.npos);
}

TEST(KitVerdict, ComparesWhatMacrosPrintByteForByte) {
  MacroRun run{};
  run.output = "a\nb\nc\n";
  run.errors = "e\n";
  Ended ended = EndedWith(0, "a\nb\nc\n");
  ended.errors = "e\n";
  EXPECT_EQ(JudgeMacros(ended, run).outcome, Outcome::kPassed);
  ended.output = "a\nB\nc\n";
  EXPECT_EQ(JudgeMacros(ended, run).output, "standard output, from line 2 on:\n- b\n+ B\n");
  ended.output = "a\nb\nc";
  EXPECT_EQ(JudgeMacros(ended, run).output, "standard output, from line 3 on:\n- c\n+ c(no line end)\n");
  ended.output = run.output;
  ended.errors = "";
  EXPECT_EQ(JudgeMacros(ended, run).output, "standard error, from line 1 on:\n- e\n");
  ended.errors = run.errors;
  ended.code = 1;
  EXPECT_EQ(JudgeMacros(ended, run).reason, "ended with 1");
}

TEST(KitVerdict, LeavesOutBlankLinesInFrontOfAnExampleOnly) {
  MacroRun run{};
  run.joined = true;
  run.output = "## A\na\n## B\nb\n";
  EXPECT_EQ(JudgeMacros(EndedWith(1, "## A\r\na\n\n\n## B\nb\n\n"), run).outcome, Outcome::kPassed);
  EXPECT_EQ(JudgeMacros(EndedWith(0, "## A\n\na\n## B\nb\n"), run).outcome, Outcome::kFailed);
}

}  // namespace
