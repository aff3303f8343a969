// How the small host folds and quotes text.
#include <gtest/gtest.h>

#include "host/writing/quoting.h"

namespace wrenfold {
namespace {

TEST(Quoting, MarksEachLine) {
  struct Case {
    std::string_view text;
    std::string_view expected;
    const char* why;
  };
  const Case cases[] = {
      {"", "", "nothing"},
      {"a", "> a", "no line end is added"},
      {"a\r\nb\r\n", "> a\r\n> b\r\n", "two lines"},
      {"a\nb\rc", "> a\r\n> b\r\n> c", "every line end becomes CR LF"},
      {"\r\n\r\n", "> \r\n> \r\n", "empty lines"},
      {"a\r\r\nb", "> a\r\r\n> b", "the line end that forbids folding stays"},
      {"\x83\x0D\x0A", "> \x83\x0D\x0A", "a lead byte hides no line end"},
      {"\x1A\x80\x80\x0D"
       "b",
       "> \x1A\x80\x80\x0D"
       "b",
       "an escape that ends in CR"},
  };
  for (const Case& c : cases) EXPECT_EQ(FoldAndQuote(c.text, "> ", kUnfoldedWidth), c.expected) << c.why;
}

TEST(Quoting, FoldsAtAWidth) {
  struct Case {
    std::string_view text;
    std::size_t width;
    std::string_view expected;
    const char* why;
  };
  const Case cases[] = {
      {"abcdef", 6, "|abcdef", "fits"},
      {"abcdefg", 6, "|abcdef\r\n|g", "one too long"},
      {"ab cdef", 6, "|ab \r\n|cdef", "a word stays whole"},
      {"abcdef gh\r\n", 6, "|abcdef \r\n|gh\r\n", "the blank stays with the line before it"},
      {"\x82\xA0\x82\xA2\x82\xA4", 4, "|\x82\xA0\x82\xA2\r\n|\x82\xA4",
       "double-byte characters take two columns"},
      {"\x82\xA0\x82\xA2", 3, "|\x82\xA0\r\n|\x82\xA2", "no character is split"},
      {"\x82\xA0", 1, "|\x82\xA0", "at least one character a line"},
      {"ab\x1A\xA9\x80\x84"
       "c",
       3, "|ab\x1A\xA9\x80\x84\r\n|c", "a narrow escape takes one column"},
      {"ab\x1A\xA9\x80\x8C"
       "c",
       4, "|ab\x1A\xA9\x80\x8C\r\n|c", "a wide escape takes two"},
      {"abc\x1A\xBD\xD8\x86\x1A\x80\xDE\x86"
       "d",
       4,
       "|abc\r\n|\x1A\xBD\xD8\x86\x1A\x80\xDE\x86"
       "d",
       "the two escapes of U+1F600 stay together and take two columns"},
      {"a\x1A\xBD\xD8\x86\x1A\xBD\xD8\x86", 2, "|a\x1A\xBD\xD8\x86\r\n|\x1A\xBD\xD8\x86",
       "two first halves are no character"},
      {"abcdefg\r\r\nabcdefg\r\n", 6, "|abcdefg\r\r\n|abcdef\r\n|g\r\n", "a line may forbid its folding"},
  };
  for (const Case& c : cases) EXPECT_EQ(FoldAndQuote(c.text, "|", c.width), c.expected) << c.why;
}

}  // namespace
}  // namespace wrenfold
