// Changing the headers of a mail that is being written.
#include <gtest/gtest.h>

#include "host/mail/header_edit.h"

namespace wrenfold {
namespace {

constexpr std::string_view kMail = "To: a\r\nX: 1\r\n folded\r\nSubject: s\r\nx: 2\r\n\r\nX: body\r\n";

TEST(HeaderEdit, SetsAnOccurrence) {
  struct Case {
    std::string_view name;
    std::size_t n;
    bool done;
    std::string_view expected;
    const char* why;
  };
  const Case cases[] = {
      {"X", 0, true, "To: a\r\nX: v\r\nSubject: s\r\nx: 2\r\n\r\nX: body\r\n",
       "folded lines go with their header"},
      {"X:", 1, true, "To: a\r\nX: 1\r\n folded\r\nSubject: s\r\nX: v\r\n\r\nX: body\r\n",
       "the second, with its colon"},
      {"X", 2, true, "To: a\r\nX: 1\r\n folded\r\nSubject: s\r\nx: 2\r\nX: v\r\n\r\nX: body\r\n",
       "one more is added"},
      {"X", 3, false, kMail, "no gap is left"},
      {"New", 0, true, "To: a\r\nX: 1\r\n folded\r\nSubject: s\r\nx: 2\r\nNew: v\r\n\r\nX: body\r\n",
       "a missing one is added"},
      {"New", 1, false, kMail, "no gap is left"},
      {"X", static_cast<std::size_t>(-1), false, kMail, "a negative number"},
  };
  for (const Case& c : cases) {
    std::string text(kMail);
    EXPECT_EQ(SetHeader(text, c.name, "v", c.n), c.done) << c.why;
    EXPECT_EQ(text, c.expected) << c.why;
  }
}

TEST(HeaderEdit, WritesNoNameThatEndsTheHeaderElsewhere) {
  for (const std::string_view name : {"", ":", "Reply To", "Subject ",
                                      "\xDC"
                                      "berschrift",
                                      "Bad\r\nX-Inj", "Bad:Name", "A\tB", "X\x7F"}) {
    std::string text(kMail);
    EXPECT_FALSE(CanBeHeader(name)) << name;
    AddHeader(text, name, "v");
    EXPECT_FALSE(SetHeader(text, name, "v", 0)) << name;
    EXPECT_EQ(text, kMail) << name;
  }
  for (const std::string_view name : {"X", "X:", "X-!#$%&'*+-./;<=>?@[]^_`{|}~"})
    EXPECT_TRUE(CanBeHeader(name));
}

TEST(HeaderEdit, DeletesAnOccurrence) {
  std::string text(kMail);
  EXPECT_FALSE(DeleteHeader(text, "X", 2));
  EXPECT_FALSE(DeleteHeader(text, "Y", 0));
  EXPECT_TRUE(DeleteHeader(text, "x", 0));
  EXPECT_EQ(text, "To: a\r\nSubject: s\r\nx: 2\r\n\r\nX: body\r\n");
  EXPECT_TRUE(DeleteHeader(text, "X:", 0));
  EXPECT_FALSE(DeleteHeader(text, "X", 0)) << "the body is left alone";
  EXPECT_EQ(text, "To: a\r\nSubject: s\r\n\r\nX: body\r\n");
}

TEST(HeaderEdit, AddsBehindTheLastHeader) {
  for (const auto& [before, after] : {std::pair<std::string, std::string>{"\r\nbody", "N: v\r\n\r\nbody"},
                                      {"", "N: v\r\n"},
                                      {"A: 1", "A: 1\r\nN: v\r\n"},
                                      {"A: 1\r\n", "A: 1\r\nN: v\r\n"}}) {
    std::string text = before;
    AddHeader(text, "N", "v");
    EXPECT_EQ(text, after);
  }
}

TEST(HeaderEdit, AValueCannotBeginAnotherHeader) {
  std::string text = "A: 1\r\n\r\n";
  AddHeader(text, "N", "a\r\nBcc: x\r\n\r\n folded\n\tmore\r\n");
  EXPECT_EQ(text, "A: 1\r\nN: a Bcc: x \r\n folded\r\n\tmore\r\n\r\n");
  AddHeader(text, ":", "v");
  EXPECT_FALSE(SetHeader(text, "", "v", 0));
  EXPECT_EQ(text, "A: 1\r\nN: a Bcc: x \r\n folded\r\n\tmore\r\n\r\n") << "an empty name";
  text.clear();
  AddHeader(text, "N",
            "\x1A\x80\x80\x0D"
            "b");
  EXPECT_EQ(text,
            "N: \x1A\x80\x80\x0D"
            "b\r\n")
      << "an escape that ends in CR";
}

}  // namespace
}  // namespace wrenfold
