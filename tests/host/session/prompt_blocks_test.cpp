// What the prompt does with blocks and lines that it cannot read: nothing of them is run.
#include <gtest/gtest.h>

#include <deque>
#include <string>

#include "tests/host/session/talk.h"

namespace wrenfold {
namespace {

TEST(PromptBlocks, RunNotAtAllWhenALineIsRefused) {
  const std::string for_in = "write for name in list; a number counts from 0: for i in 4 gives 0, 1, 2, 3";
  const std::string leave_out = "leave it out: what follows stands on lines of its own, up to end";
  const struct {
    std::deque<std::string> lines;
    std::string told;
    const char* why;
  } kCases[] = {
      {{"if x = 1", "Text()", "end"}, "column 6: '=' does not belong here; to compare, write ==", "="},
      {{"if 1 == 1 then", "Text()", "end"},
       "column 11: 'then' is no word of this language; " + leave_out,
       "then"},
      {{"for m in 3 do", "Text()", "end"}, "column 12: 'do' is no word of this language; " + leave_out, "do"},
      {{"for i = 0 to 3", "Text()", "end"}, "column 7: 'in' is missing before '='; " + for_in, "to"},
      {{"function len(a)", "Text()", "end"},
       "column 10: there is a function 'len' already; choose another name",
       "a name that is taken"},
      {{"If (1)", "Text()", "end"}, "column 1: no function 'If'; write it in small letters", "another case"},
      {{"If 1 Then", "Text()", "End If"},
       "column 1: 'If' is no word of this language; write it in small letters",
       "another case to the end"},
      {{"while 'a'", "if 1", "Text()", "end", "Text()", "end"},
       "column 7: ''' does not belong here; texts stand in double quotes: \"...\"",
       "blocks inside"},
      {{"if 0", "print 1 2", "while 1", "Text()", "end", "Text()", "end"},
       "line 2, column 9: '2' does not belong here; each statement stands on its own line",
       "a line inside"},
      {{"if 0", "elif 1", "Text()", "end"},
       "line 2, column 1: 'elif' is no word of this language; write else if",
       "a foreign word inside"},
      {{"if 0", "if 1", "end if", "Text()", "end"},
       "line 3, column 5: 'if' does not belong here; end stands alone on its line",
       "end if inside"},
      {{"if (1) {", "Text()", "}", "end"},
       "column 8: '{' does not belong here; a block needs no sign: its lines follow, and end closes it",
       "braces"},
      {{"else", "Text()", "end"},
       "column 1: 'else' without an if, while, for or function before it",
       "else alone"},
      {{"foreach m in 3", "Text()", "end"},
       "column 1: 'foreach' is no word of this language; " + for_in,
       "a word that opens blocks elsewhere"},
      {{"if 1", "nowhere", "Text()", "end"},
       "line 2, column 1: no variable 'nowhere': nothing is assigned to it",
       "what is found at the end"},
  };
  for (const auto& c : kCases) {
    std::deque<std::string> lines = c.lines;
    lines.emplace_back("7");
    const Conversation talk = Talk(lines);
    EXPECT_EQ(talk.out, "! " + c.told + "\n! nothing of this block was run\n7\n") << c.why;
    std::string marks = "> ";
    for (std::size_t i = 1; i < c.lines.size(); ++i) marks += ". ";
    EXPECT_EQ(talk.marks, marks + "> > ") << c.why;
    EXPECT_FALSE(talk.all_well) << c.why;
  }
  EXPECT_EQ(Talk({"if 1 print 2 end", "7"}).marks, "> > > ") << "a line that ends with end closes its block";
}

TEST(PromptBlocks, TooDeepAreToldOnce) {
  std::deque<std::string> lines(5000, "if 1");
  lines.insert(lines.end(), 5000, "end");
  lines.emplace_back("7");
  EXPECT_EQ(
      Talk(lines).out,
      "! line 101, column 1: too many statements inside one another\n! nothing of this block was run\n7\n");
}

TEST(PromptBlocks, EndWithCtrlDCtrlZAndQuit) {
  for (const char* end : {"\x04", "\x04 7", "\x1A", "quit", " QUIT "}) {
    const Conversation alone = Talk({end, "1"});
    EXPECT_EQ(alone.out, "") << end;
    EXPECT_TRUE(alone.all_well) << end;
    EXPECT_EQ(Talk({"if 1", "print 2", end, "end", "1"}).out,
              "! column 1: this if has no end; write end on a line of its own\n"
              "! nothing of this block was run\n")
        << end;
    EXPECT_EQ(Talk({"if 1 2", end, "Text()"}).out,
              "! column 6: '2' does not belong here; each statement stands on its own line\n"
              "! nothing of this block was run\n")
        << end;
  }
}

TEST(PromptBlocks, AreNoneWhereTheWordIsAName) {
  for (const char* line : {"do = 3", "repeat = 1", "sub = 2\n"}) {
    EXPECT_EQ(Talk({line, "Text()"}).out, "text\n") << line;
  }
  EXPECT_EQ(Talk({"do = 3", "do + 1"}).out, "4\n");
}

}  // namespace
}  // namespace wrenfold
