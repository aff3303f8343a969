#include "src/text/cpu.h"

#include <gtest/gtest.h>

namespace wfinfo {
namespace {

// The compiler's test, which the library itself does without, as the judge.
TEST(Cpu, SaysWhatTheCompilersTestSays) {
  const bool expected = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("pclmul") &&
                        __builtin_cpu_supports("popcnt") && __builtin_cpu_supports("bmi");
  const bool wide = expected && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw");
  const Vectors widest = wide ? Vectors::kAvx512 : expected ? Vectors::kAvx2 : Vectors::kSse2;
  EXPECT_EQ(AskForVectors(), widest);
  EXPECT_EQ(g_vectors.load(), widest) << "what is kept";
  EXPECT_EQ(HasAvx2(), expected) << "also from memory";
  EXPECT_EQ(HasAvx512(), wide) << "also from memory";
  g_vectors.store(Vectors::kNotAsked);
  EXPECT_EQ(HasAvx2(), expected) << "asked by the first question";
}

// Bits of the words by the processor's manual, without which some instruction of the routines cannot run.
TEST(Cpu, NothingThatTheRoutinesUseMayBeMissing) {
  const CpuWords whole = {1u << 1 | 1u << 23 | 1u << 27 | 1u << 28, 1u << 3 | 1u << 5, 6};
  EXPECT_TRUE(AllowsAvx2(whole));
  EXPECT_TRUE(AllowsAvx2({0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF})) << "a processor that can do more";
  EXPECT_FALSE(AllowsAvx2({})) << "one that says nothing";
  EXPECT_FALSE(AllowsAvx512(whole)) << "one with AVX2 alone";
  EXPECT_EQ(WidestOf({}), Vectors::kSse2);
  EXPECT_EQ(WidestOf(whole), Vectors::kAvx2);
  EXPECT_EQ(WidestOf({0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}), Vectors::kAvx512);
  EXPECT_TRUE(AllowsAvx512(
      {whole.features, whole.extended | 1u << 16 | 1u << 30, whole.saved | 1u << 5 | 1u << 6 | 1u << 7}));
  const struct {
    std::uint32_t CpuWords::*word;
    int bit;
    const char* why;
    bool wide_only = false;  // asked for by the routines in AVX-512 alone
  } cases[] = {
      {&CpuWords::features, 1, "the carry-less product"},
      {&CpuWords::features, 23, "POPCNT"},
      {&CpuWords::features, 27, "a system that keeps vectors"},
      {&CpuWords::features, 28, "AVX"},
      {&CpuWords::extended, 3, "BMI1"},
      {&CpuWords::extended, 5, "AVX2"},
      {&CpuWords::saved, 1, "the lower halves kept"},
      {&CpuWords::saved, 2, "the upper halves kept"},
      {&CpuWords::extended, 16, "the foundation of AVX-512", true},
      {&CpuWords::extended, 30, "its operations on bytes", true},
      {&CpuWords::saved, 5, "the masks kept", true},
      {&CpuWords::saved, 6, "the upper halves of 64 bytes kept", true},
      {&CpuWords::saved, 7, "the upper sixteen vectors kept", true},
  };
  for (const auto& c : cases) {
    CpuWords words = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
    words.*c.word &= ~(1u << c.bit);
    EXPECT_EQ(AllowsAvx2(words), c.wide_only) << c.why;
    EXPECT_FALSE(AllowsAvx512(words)) << c.why;
  }
}

TEST(Cpu, OfSetsAllButTheLastRunEverywhere) {
  static constexpr int kSets[] = {1, 2, 3};
  EXPECT_EQ(RunnableOf(kSets).data(), kSets);
  EXPECT_EQ(RunnableOf(kSets).size(), HasAvx2() ? 3u : 2u);
}

}  // namespace
}  // namespace wfinfo
