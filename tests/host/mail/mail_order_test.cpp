// Sorting mails.
#include "host/mail/mail_order.h"

#include <gtest/gtest.h>

#include "src/dates/civil_time.h"

namespace wrenfold {
namespace {

using Places = std::vector<std::size_t>;

TEST(SortMethod, HasANumberForEachOrderAndItsReverse) {
  EXPECT_EQ(SortMethodOf(0)->key, SortKey::kArrival);
  EXPECT_EQ(SortMethodOf(9)->key, SortKey::kAttachments);
  EXPECT_FALSE(SortMethodOf(9)->backwards);
  EXPECT_EQ(SortMethodOf(102)->key, SortKey::kSubject);
  EXPECT_TRUE(SortMethodOf(102)->backwards);
  for (const std::int64_t none : {-1, 10, 99, 110, 202}) EXPECT_FALSE(SortMethodOf(none)) << none;
}

TEST(SortedPlaces, KeepTheOrderOfEqualKeys) {
  const std::vector<OrderKey> keys = {{2, "b"}, {1, "z"}, {2, "a"}, {2, "b"}};
  EXPECT_EQ(SortedPlaces(keys, false), (Places{1, 2, 0, 3}));
  EXPECT_EQ(SortedPlaces(keys, true), (Places{0, 3, 2, 1}));
  EXPECT_EQ(SortedPlaces({}, false), Places{});
}

TEST(SubjectToSortBy, LeavesAnswersBesideTheirMail) {
  struct Case {
    std::string_view subject;
    std::string_view expected;
    const char* why;
  };
  const Case cases[] = {
      {"Minutes", "minutes", "case does not count"},
      {"Re: Minutes", "minutes", "an answer"},
      {"RE:Minutes", "minutes", "no blank"},
      {"Re: Fwd: re[12]: Minutes", "minutes", "several marks"},
      {"Fw: \"Minutes\"", "minutes", "quotation marks"},
      {"Re:", "", "nothing else"},
      {"Regarding: x", "regarding: x", "only looks like one"},
      {"re[x]: y", "re[x]: y", "no number"},
      {"re[1: y", "re[1: y", "no end"},
      {"A\r\n\t folded  one", "a folded one", "folds and blanks are one blank"},
      {"\x83\x41\x83\x5C", "\x83\x41\x83\x5C", "second bytes that look like letters stay"},
  };
  for (const Case& c : cases) EXPECT_EQ(SubjectToSortBy(c.subject), c.expected) << c.why;
}

TEST(MomentOf, ComparesAcrossZones) {
  EXPECT_LT(MomentOf("Mon, 2 Jun 2025 19:30:00 +0900"), MomentOf("Mon, 2 Jun 2025 11:00:00 +0000"));
  EXPECT_EQ(MomentOf("Mon, 2 Jun 2025 13:00:00 +0200"), MomentOf("Mon, 2 Jun 2025 11:00:00 +0000"));
  EXPECT_EQ(MomentOf("Mon, 2 Jun 2025 13:00:00 +0200") - MomentOf("Mon, 2 Jun 2025 12:59:59 +0200"),
            wfinfo::kTicksPerSecond);
  EXPECT_EQ(MomentOf("no date"), -1);
}

}  // namespace
}  // namespace wrenfold
