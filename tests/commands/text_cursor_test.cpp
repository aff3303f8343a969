#include "src/commands/text_cursor.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>
#include <vector>

namespace wfinfo {
namespace {

constexpr char kThree[] = "one\0two\0three\0";

TEST(TextCursor, ReadsInAnyOrder) {
  TextCursor cursor(kThree);
  const struct {
    int index;
    const char* text;
  } reads[] = {{0, "one"}, {1, "two"}, {2, "three"}, {3, ""},    {2, "three"},  {0, "one"},    {2, "three"},
               {5, ""},    {1, "two"}, {-1, ""},     {0, "one"}, {INT_MAX, ""}, {INT_MIN, ""}, {2, "three"}};
  for (const auto& read : reads) EXPECT_STREQ(cursor.Text(read.index), read.text) << read.index;
}

TEST(TextCursor, TellsWhereInTheSequenceATextStands) {
  TextCursor cursor(kThree);
  EXPECT_EQ(cursor.Text(1), kThree + 4);
  EXPECT_EQ(cursor.Text(2), kThree + 8);
  EXPECT_EQ(cursor.texts(), kThree);
}

TEST(TextCursor, AnEmptyOrMissingSequenceHasNoText) {
  TextCursor none;
  TextCursor empty("");
  for (const int index : {0, 1, -1, INT_MAX}) {
    EXPECT_STREQ(none.Text(index), "") << index;
    EXPECT_STREQ(empty.Text(index), "") << index;
  }
  EXPECT_EQ(none.texts(), nullptr);
}

TEST(TextCursor, ReadsLikeAList) {
  std::mt19937 random(11);
  for (int round = 0; round < 500; ++round) {
    std::vector<std::string> list(random() % 6);
    std::string texts;
    for (std::string& text : list) {
      text.assign(1 + random() % 9, static_cast<char>('a' + random() % 26));
      texts += text + '\0';
    }
    texts += '\0';
    TextCursor cursor(texts.data());
    for (int reads = 0; reads < 20; ++reads) {
      const int index = static_cast<int>(random() % 8) - 1;
      const bool there = index >= 0 && index < static_cast<int>(list.size());
      ASSERT_EQ(cursor.Text(index), there ? list[static_cast<std::size_t>(index)] : "") << index;
    }
  }
}

}  // namespace
}  // namespace wfinfo
