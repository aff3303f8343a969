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

// Bits of the words by the processor's manual, without which some instruction of the routines cannot run.
TEST(Cpu, NothingThatTheRoutinesUseMayBeMissing) {
  const CpuWords whole = {1u << 1 | 1u << 23 | 1u << 27 | 1u << 28, 1u << 3 | 1u << 5, 6};
  EXPECT_TRUE(AllowsAvx2(whole));
  EXPECT_TRUE(AllowsAvx2({0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF})) << "a processor that can do more";
  EXPECT_FALSE(AllowsAvx2({})) << "one that says nothing";
  const struct {
    std::uint32_t CpuWords::*word;
    int bit;
    const char* why;
  } cases[] = {
      {&CpuWords::features, 1, "the carry-less product"},
      {&CpuWords::features, 23, "POPCNT"},
      {&CpuWords::features, 27, "a system that keeps vectors"},
      {&CpuWords::features, 28, "AVX"},
      {&CpuWords::extended, 3, "BMI1"},
      {&CpuWords::extended, 5, "AVX2"},
      {&CpuWords::saved, 1, "the lower halves kept"},
      {&CpuWords::saved, 2, "the upper halves kept"},
  };
  for (const auto& c : cases) {
    CpuWords words = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
    words.*c.word &= ~(1u << c.bit);
    EXPECT_FALSE(AllowsAvx2(words)) << c.why;
  }
}

TEST(Cpu, OfSetsAllButTheLastRunEverywhere) {
  static constexpr int kSets[] = {1, 2, 3};
  EXPECT_EQ(RunnableOf(kSets).data(), kSets);
  EXPECT_EQ(RunnableOf(kSets).size(), HasAvx2() ? 3u : 2u);
}

}  // namespace
}  // namespace wfinfo
