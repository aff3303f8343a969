#include "src/message/line_ends.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/message/line_reference.h"

namespace wfinfo {
namespace {

std::string Rewritten(const std::string& text, LineEnd form) {
  const FoldSize size = MeasureLineEnds(text.c_str(), form);
  std::string out(size.output, '?');
  WriteLineEnds(text.c_str(), form, size, out.data());
  return out;
}

struct RewriteCase {
  const char* text;
  const char* folded;
  const char* unfolded;
  const char* why;
};

TEST(LineEnds, AreRewritten) {
  const RewriteCase cases[] = {
      {"", "", "", "an empty text stays empty"},
      {"a", "a\r\n", "a\r\r\n", "the last line gets a line end"},
      {"a\r\r\nb", "a\r\nb\r\n", "a\r\r\nb\r\r\n", "CR CR LF is one line end"},
      {"a\nb\n", "a\r\nb\r\n", "a\r\r\nb\r\r\n", "LF"},
      {"a\rb\r", "a\r\nb\r\n", "a\r\r\nb\r\r\n", "CR"},
      {"a\r\rb", "a\r\nb\r\n", "a\r\r\nb\r\r\n", "CR CR is one line end"},
      {"a\r\n\r\nb\r\n", "a\r\n\r\nb\r\n", "a\r\r\n\r\r\nb\r\r\n", "an empty line between"},
      {"\r\r\r", "\r\n\r\n", "\r\r\n\r\r\n", "CR CR and CR"},
      {"\n\r", "\r\n\r\n", "\r\r\n\r\r\n", "LF and CR are two"},
      {"x\x1A\x81\x82\r\ny", "x\x1A\x81\x82\r\r\ny\r\n", "x\x1A\x81\x82\r\r\r\ny\r\r\n",
       "an escape keeps its CR"},
  };
  for (const RewriteCase& c : cases) {
    EXPECT_EQ(Rewritten(c.text, LineEnd::kCrLf), c.folded) << c.why;
    EXPECT_EQ(Rewritten(c.text, LineEnd::kCrCrLf), c.unfolded) << c.why;
  }
}

// A line that ends with the first three bytes of an escape swallows the CR that is written behind it, so that
// a text with such a line reads differently the second time.
bool HasCutEscape(std::string_view text) {
  for (std::size_t at = text.find('\x1A'); at != std::string_view::npos; at = text.find('\x1A', at + 1)) {
    const std::string_view rest = text.substr(at, 4);
    if (rest.size() >= 3 && (rest[1] & 0x80) != 0 && (rest[2] & 0x80) != 0 &&
        (rest.size() == 3 || rest[3] == '\n')) {
      return true;
    }
  }
  return false;
}

TEST(LineEnds, ALineThatEndsInsideAnEscapeStillGetsItsLineEnd) {
  EXPECT_EQ(Rewritten("\x1A\x81\x82\nb", LineEnd::kCrLf), "\x1A\x81\x82\r\nb\r\n");
  EXPECT_EQ(Rewritten("\x1A\x81\x82", LineEnd::kCrCrLf), "\x1A\x81\x82\r\r\n");
}

TEST(LineEnds, RewritingAgainChangesNothing) {
  std::mt19937 random(5);
  for (int round = 0; round < 2000; ++round) {
    const std::string text = reference::HostileText(random, random() % 300);
    const std::string folded = Rewritten(text, LineEnd::kCrLf);
    const std::string unfolded = Rewritten(text, LineEnd::kCrCrLf);
    ASSERT_EQ(folded, reference::Fold(text, "\r\n"));
    ASSERT_EQ(unfolded, reference::Fold(text, "\r\r\n"));
    if (HasCutEscape(text)) continue;
    ASSERT_EQ(Rewritten(folded, LineEnd::kCrLf), folded);
    ASSERT_EQ(Rewritten(unfolded, LineEnd::kCrCrLf), unfolded);
    ASSERT_EQ(Rewritten(unfolded, LineEnd::kCrLf), folded);
    ASSERT_EQ(Rewritten(folded, LineEnd::kCrCrLf), unfolded);
  }
}

}  // namespace
}  // namespace wfinfo
