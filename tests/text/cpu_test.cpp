#include "src/text/cpu.h"

#include <gtest/gtest.h>

namespace wfinfo {
namespace {

// The compiler's test, which the library itself does without, as the judge.
TEST(Cpu, SaysWhatTheCompilersTestSays) {
  const bool expected = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("pclmul") &&
                        __builtin_cpu_supports("popcnt") && __builtin_cpu_supports("bmi");
  EXPECT_EQ(AskForAvx2(), expected);
  EXPECT_EQ(g_avx2.load(), expected ? CpuAnswer::kYes : CpuAnswer::kNo) << "what is kept";
  EXPECT_EQ(HasAvx2(), expected) << "also from memory";
  g_avx2.store(CpuAnswer::kNotAsked);
  EXPECT_EQ(HasAvx2(), expected) << "asked by the first question";
}

TEST(Cpu, OfSetsAllButTheLastRunEverywhere) {
  static constexpr int kSets[] = {1, 2, 3};
  EXPECT_EQ(RunnableOf(kSets).data(), kSets);
  EXPECT_EQ(RunnableOf(kSets).size(), HasAvx2() ? 3u : 2u);
}

}  // namespace
}  // namespace wfinfo
