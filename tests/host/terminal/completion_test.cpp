// Tab at the prompt.
#include "host/terminal/completion.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

const std::vector<std::string> kNames = {"RootHeader(", "RootHeader2(", "RootBody()", "MailCount()",
                                         "help",        "header",       "quit"};

// The line behind a Tab at its end.
std::string Completed(std::string line) {
  const Completion done = CompleteName(line, kNames);
  EXPECT_LE(done.taken, line.size());
  line.resize(line.size() - done.taken);
  return line + done.added;
}

TEST(Completion, MakesTheNameInFrontOfTheCursorWhole) {
  struct Case {
    std::string line;
    std::string expected;
    std::string why;
  };
  const Case kCases[] = {
      {"Mail", "MailCount()", "the only one; it takes nothing"},
      {"rootb", "RootBody()", "letter case does not count, and becomes right"},
      {"RootH", "RootHeader", "what both begin with"},
      {"RootHeader2", "RootHeader2(", "the only one"},
      {"print ToUpper(Mai", "print ToUpper(MailCount()", "inside of a call"},
      {"x = 1 + mailc", "x = 1 + MailCount()", "behind a sign"},
      {"help mailc", "help MailCount", "help takes names alone"},
      {"? mailc", "? MailCount", "the same"},
      {"HELP RootHeader2", "HELP RootHeader2", "whole"},
      {"help", "help", "whole: the word itself asks for no help"},
      {"q", "quit", "a word of the prompt"},
      {"NoSuch", "NoSuch", "no name begins so"},
      {"", " ", "no name"},
      {"MailCount() ", "MailCount()  ", "no name in front of the cursor"},
      {"RootHeader(\"Mail", "RootHeader(\"Mail ", "a text"},
      {"Quote(\"a\\\"Mail", "Quote(\"a\\\"Mail ", "an escaped quote ends no text"},
      {"Quote(\"a\") + Mail", "Quote(\"a\") + MailCount()", "behind a text"},
      {"\xE8\xA1\xA8Mail", "\xE8\xA1\xA8MailCount()", "behind other characters"},
  };
  for (const Case& c : kCases) EXPECT_EQ(Completed(c.line), c.expected) << c.why;
}

TEST(Completion, ShowsTheChoicesWhenNothingCanBeAdded) {
  EXPECT_EQ(CompleteName("RootHeader", kNames).choices,
            (std::vector<std::string>{"RootHeader(", "RootHeader2("}));
  EXPECT_EQ(CompleteName("help RootHeader", kNames).choices,
            (std::vector<std::string>{"RootHeader", "RootHeader2"}));
  EXPECT_EQ(CompleteName("he", kNames).choices, (std::vector<std::string>{"header", "help"}));
  EXPECT_TRUE(CompleteName("RootH", kNames).choices.empty());
}

TEST(Completion, ChoicesStandInColumns) {
  const std::vector<std::string> names = {"a", "bbb", "cc"};
  EXPECT_EQ(InColumns(names, 80), "a    bbb  cc\n");
  EXPECT_EQ(InColumns(names, 10), "a    bbb\ncc\n");
  EXPECT_EQ(InColumns(names, 1), "a\nbbb\ncc\n");
  EXPECT_EQ(InColumns(std::vector<std::string>(62, "x"), 1000).substr(60 * 3 - 2), "\nand 2 more\n");
}

}  // namespace
}  // namespace wrenfold
