#include "src/text/measured_text.h"

#include <gtest/gtest.h>

#include <string>

namespace wfinfo {
namespace {

// Writes `count` stars, or only tells how many.
std::size_t Stars(char* out, std::size_t count) {
  if (out != nullptr) std::string(count, '*').copy(out, count);
  return count;
}

std::size_t Compose(MeasuredText text, bool terminate) {
  text.Add("ab");
  text.Add("");
  text.Add(std::string_view());
  text.AddWritten([](char* out) { return Stars(out, 3); });
  text.Add(std::string_view("c\0d", 3));
  return terminate ? text.Terminate() : text.length();
}

TEST(MeasuredText, MeasuresWithoutAPlaceWhatItWritesToOne) {
  const std::string expected("ab***c\0d", 8);
  ASSERT_EQ(Compose(MeasuredText(nullptr), false), expected.size());
  std::string out(expected.size(), '?');
  EXPECT_EQ(Compose(MeasuredText(out.data()), false), expected.size());
  EXPECT_EQ(out, expected);
}

TEST(MeasuredText, TheZeroIsWrittenAndNotCounted) {
  EXPECT_EQ(Compose(MeasuredText(nullptr), true), 8u);
  std::string out(10, '?');
  EXPECT_EQ(Compose(MeasuredText(out.data()), true), 8u);
  EXPECT_EQ(out, std::string("ab***c\0d\0?", 10));
}

}  // namespace
}  // namespace wfinfo
