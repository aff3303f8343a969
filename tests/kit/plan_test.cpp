#include "tools/kit/plan.h"

#include <gtest/gtest.h>

namespace {

using kit::Matches;
using kit::ReadPlan;
using kit::Record;

TEST(KitPatterns, StandForNames) {
  const struct {
    const char* patterns;
    const char* name;
    bool fits;
    const char* why;
  } kCases[] = {
      {"dll.A.B", "dll.A.B", true, "the name itself"},  {"dll.A", "dll.A.B", false, "not its beginning"},
      {"dll.*", "dll.A.B", true, "a star at the end"},  {"*A*", "dll.A.B", true, "stars on both sides"},
      {"*.B*C", "x.B.B.C", true, "the star gives way"}, {"dll.?.B", "dll.A.B", true, "one character"},
      {"dll.?.B", "dll..B", false, "not none"},         {"x:dll.*:y", "dll.A.B", true, "one of several"},
      {"x:y", "dll.A.B", false, "none of several"},     {"*", "", true, "a star is nothing too"},
      {"", "a", false, "an empty pattern is no star"}};
  for (const auto& [patterns, name, fits, why] : kCases) EXPECT_EQ(Matches(patterns, name), fits) << why;
}

TEST(KitPlan, IsReadWithWhatItLeavesOpen) {
  const auto plan = ReadPlan(R"({"version": "1", "suites": [{"name": "a", "program": "p/a.exe", "folder": "p",
    "desktop": true, "first": true, "seconds": 7}, {"name": "b"}],
    "macros": [{"name": "m", "copies": {"samples": "s"}, "arguments": ["--x", "y"], "output": "o", "joined": true}],
    "left_out": [{"pattern": "a.*", "reason": "r"}], "absent": [{"name": "c", "reason": "r"}]})");
  ASSERT_TRUE(plan.has_value());
  EXPECT_EQ(plan->suites[0].seconds, 7);
  EXPECT_TRUE(plan->suites[0].desktop && plan->suites[0].first);
  EXPECT_EQ(plan->suites[1].seconds, 120);
  EXPECT_FALSE(plan->suites[1].desktop);
  EXPECT_EQ(plan->macros[0].copies[0].second, "s");
  EXPECT_EQ(plan->macros[0].arguments[1], "y");
  EXPECT_TRUE(plan->macros[0].joined);
  EXPECT_EQ(plan->left_out[0].pattern, "a.*");
  EXPECT_EQ(plan->absent[0].pattern, "c");
  EXPECT_FALSE(ReadPlan("{}").has_value());
  EXPECT_FALSE(ReadPlan("no plan").has_value());
}

TEST(KitRecord, FindsATestByItsName) {
  const Record record(
      R"({"system": "Wine 1", "tests": {"b": {"outcome": "failed", "why": "w"}, "a": {"outcome": "passed"}}})");
  EXPECT_EQ(record.system(), "Wine 1");
  EXPECT_EQ(record.Of("a").outcome, "passed");
  EXPECT_EQ(record.Of("b").why, "w");
  EXPECT_EQ(record.Of("c").outcome, "");
  EXPECT_EQ(Record("").Of("a").outcome, "");
}

}  // namespace
