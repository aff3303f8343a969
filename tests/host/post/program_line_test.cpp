#include "host/post/program_line.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

using Words = std::vector<std::string>;

TEST(ProgramLine, IsTakenApartAtBlanksOutsideQuotes) {
  const struct {
    const char* line;
    Words words;
    bool wants_file;
  } cases[] = {
      {"sendmail -t", {"sendmail", "-t"}, false},
      {"  sendmail\t -t ", {"sendmail", "-t"}, false},
      {"\"C:\\Program Files\\curl.exe\" -T {file}", {"C:\\Program Files\\curl.exe", "-T", "{file}"}, true},
      {"a \"\" b", {"a", "", "b"}, false},
      {"a --name=\"b c\"{file}", {"a", "--name=b c{file}"}, true},
      {"a & del *.* | b > c", {"a", "&", "del", "*.*", "|", "b", ">", "c"}, false},
  };
  for (const auto& [line, words, wants_file] : cases) {
    const auto parsed = ParseProgramLine(line);
    ASSERT_TRUE(parsed) << line;
    EXPECT_EQ(parsed->arguments, words) << line;
    EXPECT_EQ(parsed->wants_file, wants_file) << line;
  }
}

TEST(ProgramLine, NeedsAProgramAndClosedQuotes) {
  for (const char* line : {"", "  ", "\"\"", "\"\" -t", "send \"mail"})
    EXPECT_FALSE(ParseProgramLine(line)) << line;
}

TEST(ProgramLine, EachArgumentArrivesAsItWasWritten) {
  const struct {
    const char* line;
    const char* file;
    const char* expected;
    const char* why;
  } cases[] = {
      {"send -t", "x", "send -t", "nothing needs quotes"},
      {"send {file}", "C:\\my mails\\a.eml", "send \"C:\\my mails\\a.eml\"", "a blank"},
      {"send {file}{file}", "a", "send aa", "twice"},
      {"send \"a b\\\"", "", "send \"a b\\\\\"", "a backslash in front of the closing quote"},
      {"send \"\" x", "", "send \"\" x", "an empty argument"},
      {"send a&b|c", "", "send a&b|c", "no shell reads it"},
      {"send.bat a&b", "", "\"send.bat\" \"a&b\"", "the command interpreter would"},
      {"send {file}", "%PATH%.eml", "send %PATH%.eml", "nothing is replaced"},
  };
  for (const auto& [line, file, expected, why] : cases) {
    const auto parsed = ParseProgramLine(line);
    ASSERT_TRUE(parsed) << line;
    EXPECT_EQ(SystemLine(*parsed, file), expected) << why;
  }
}

TEST(ProgramLine, ABatchFileGetsNoNameThatItWouldReadOtherwise) {
  for (const char* file : {"%PATH%.eml", "a!b!.eml", "a^b.eml"}) {
    EXPECT_FALSE(SystemLine(*ParseProgramLine("send.BAT {file}"), file)) << file;
    EXPECT_TRUE(SystemLine(*ParseProgramLine("send.cmd"), file)) << "the name is not given to it";
  }
}

}  // namespace
}  // namespace wrenfold
