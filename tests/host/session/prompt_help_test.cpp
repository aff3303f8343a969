// Help at the prompt; what it finds: tests/host/library/help_search_test.cpp.
#include <gtest/gtest.h>

#include <string>

#include "host/macro/tokens.h"
#include "host/session/prompt_help.h"
#include "tests/host/session/talk.h"

namespace wrenfold {
namespace {

TEST(PromptHelp, HelpsByWord) {
  const struct {
    const char* asked;
    const char* part;
    const char* why;
  } kCases[] = {
      {"help folder", "SelectFolder([folder1] [, folder2])\n    ", "part of names"},
      {"help csv", "CSV_LoadFile(", "letter case does not count"},
      {"help newsletter", "RootHeader(name)\n", "a topic that the exports name otherwise"},
      {"help families", "Mail list (", "all families"},
      {"help mail list",
       "MailCount()\n    Number of mails that the list shows: those of the folder that are in the view "
       "area and not hidden in folded threads.\n",
       "one family"},
      {"help if", "if expression ... else if", "a word of the language"},
      {"help while", "while expression ... end\n", "another"},
      {"help +", "From weak to strong.", "an operator"},
      {"help ==", "From weak to strong.", "another"},
      {"help split", "split(text, separator)\nThe parts of a text", "a function of the language"},
      {"help HostReason", "HostReason()\nWhy", "a function of the host"},
      {"help reason", "HostReason()\n    Why", "found by word"},
  };
  for (const auto& c : kCases) {
    EXPECT_NE(Talk({c.asked}).out.find(c.part), std::string::npos) << c.why << "\n" << Talk({c.asked}).out;
  }
}

TEST(PromptHelp, EachWordOfTheLanguageHasHelp) {
  for (const std::string_view word : macro::kKeywords) {
    EXPECT_TRUE(Talk({"help " + std::string(word)}).all_well) << word;
    EXPECT_EQ(Talk({"help " + std::string(word)}).out.find("    "), std::string::npos)
        << word << ": found by search only";
  }
}

TEST(PromptHelp, HasSeveralNames) {
  for (const char* asked : {"help", "?", "HELP", "Help", " ? "})
    EXPECT_EQ(Talk({asked}).out, PromptHelp()) << asked;
  for (const char* asked : {"? csv", "?csv", "Help csv"})
    EXPECT_EQ(Talk({asked}).out, Talk({"help csv"}).out) << asked;
  EXPECT_EQ(Talk({"help ="}).out.find("name = expression\n"), 0u);
  EXPECT_EQ(Talk({"help (", "help ("}).out.find("Name(a, b)\n"), 0u);
}

}  // namespace
}  // namespace wrenfold
