#include "tools/kit/report.h"

#include <gtest/gtest.h>

namespace {

using kit::Outcome;
using kit::Report;
using kit::Result;

Report Sample() {
  Report report{"1.0", "abc", "2026-11-22 09:00:00", 12.5};
  report.system = {{"Windows", "10.0 <x>"}};
  report.notes = {"a & b"};
  report.results = {{"a.First", true, 1, {Outcome::kPassed, "", ""}, {"failed", "there"}},
                    {"a.Second", false, 0.25, {Outcome::kFailed, "r<1>", "out\x01put"}, {"passed", ""}},
                    {"a.Third", false, 0, {Outcome::kSkipped, "why", ""}, {}}};
  return report;
}

TEST(KitReport, CountsAFailureUnlessWineFailedTooAndThatIsAskedFor) {
  const Result both{"x", false, 0, {Outcome::kFailed, "", ""}, {"failed", ""}};
  const Result here{"x", false, 0, {Outcome::kFailed, "", ""}, {"passed", ""}};
  EXPECT_TRUE(Counts(both, false));
  EXPECT_FALSE(Counts(both, true));
  EXPECT_TRUE(Counts(here, true));
  EXPECT_FALSE(kit::Counts({"x", false, 0, {Outcome::kSkipped, "", ""}, {}}, false));
}

TEST(KitReport, TellsProgramsEachTest) {
  const auto json = kit::ReadJson(JsonOf(Sample()));
  ASSERT_TRUE(json.has_value());
  EXPECT_EQ((*json)["counts"]["failed"].Int(-1), 1);
  EXPECT_EQ((*json)["system"]["Windows"].text, "10.0 <x>");
  const kit::Json& second = (*json)["tests"].items[1];
  EXPECT_EQ(second["outcome"].text, "failed");
  EXPECT_EQ(second["output"].text, "out\x01put");
  EXPECT_EQ(second["wine"].text, "passed");
  EXPECT_EQ(second["seconds"].number, 0.25);
}

TEST(KitReport, ShowsPeopleWhatMattersFirst) {
  const std::string page = HtmlOf(Sample());
  const char* const in_this_order[] = {
      "What only Windows can judge (1)", "Failed (1)",  "Other than under Wine (2)",
      "Output of what failed",           "Skipped (1)", "Passed (1)"};
  std::size_t at = 0;
  for (const char* const title : in_this_order) {
    at = page.find(title, at);
    ASSERT_NE(at, page.npos) << title;
  }
  EXPECT_NE(page.find("r&lt;1&gt;"), page.npos);
  EXPECT_NE(page.find("out?put"), page.npos);
  EXPECT_EQ(page.find("<x>"), page.npos);
  EXPECT_EQ(page.find("http"), page.npos) << "nothing is fetched";
}

}  // namespace
