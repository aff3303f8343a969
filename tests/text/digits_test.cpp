#include "src/text/digits.h"

#include <gtest/gtest.h>

namespace wfinfo {
namespace {

TEST(Digits, CountsAreDigitsOnly) {
  EXPECT_EQ(ReadCount("3"), 3);
  EXPECT_EQ(ReadCount("007"), 7);
  for (const char* text : {"", "3x", "x3", " 3", "-3", "3 ", "3.0"}) EXPECT_EQ(ReadCount(text), 0) << text;
  EXPECT_EQ(ReadCount("2147483647"), 2147483647);
  EXPECT_EQ(ReadCount("99999999999999999999999999"), 2147483647);
}

TEST(Digits, ALeadingNumberEndsBeforeWhatIsNoDigit) {
  const struct {
    const char* text;
    int expected;
  } cases[] = {{"", 0},
               {"x3", 0},
               {"-3", 0},
               {"3x", 3},
               {"007 8", 7},
               {"72.5", 72},
               {"\xB1"
                "3",
                0},
               {"99999999999999999999999999 columns", 2147483647}};
  for (const auto& c : cases) EXPECT_EQ(LeadingNumber(c.text), c.expected) << c.text;
}

}  // namespace
}  // namespace wfinfo
