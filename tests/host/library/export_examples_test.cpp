// The example of an export is found in the file of its family.
#include "host/library/export_examples.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

TEST(ExportExamples, TellHowTheyAreRun) {
  constexpr char kMacros[] =
      "# The family.\n# Run with: --accounts a.txt\n# Needs: a server\n\n## First\n# Does it.\nprint 1\n#> "
      "1\n\n"
      "## Second\n# Does it.\n# Run with: --mail b --english\n# Needs: `port`\nprint 2\n#> 2\n";
  EXPECT_EQ(ExampleIn(kMacros, "First"),
            "# Does it.\nprint 1\n#> 1\n\n"
            "Run with: wrenfold --mail samples/mails --accounts a.txt --macro FILE\nNeeds: a server\n"
            "help examples tells how to read it\n");
  EXPECT_EQ(ExampleIn(kMacros, "Second"),
            "# Does it.\nprint 2\n#> 2\n\n"
            "Run with: wrenfold --mail samples/mails --accounts a.txt --mail b --english --macro FILE\n"
            "Needs: a server; `port`\nhelp examples tells how to read it\n");
  EXPECT_EQ(ExampleIn("// ## C\n// Needs: a compiler\nint x;\n", "C"),
            "int x;\n\nNeeds: a compiler\nhelp examples tells how to read it\n");
}

TEST(ExportExamples, AreFoundByTheirHeadings) {
  constexpr char kMacros[] =
      "# The family.\n\n## First\n# Does it.\nprint First()\n#> 1\n\n"
      "## Second, SecondToo\r\nprint Second()\r\n#>\r\n\r\n## Last\nprint Last()";
  const struct {
    const char* file;
    const char* name;
    const char* expected;
    const char* why;
  } cases[] = {
      {kMacros, "First", "# Does it.\nprint First()\n#> 1\n", "without the empty line behind it"},
      {kMacros, "Second", "print Second()\n#>\n", "the first of two names, lines with CR LF"},
      {kMacros, "SecondToo", "print Second()\n#>\n", "the second of them"},
      {kMacros, "Last", "print Last()\n", "a last line without its end"},
      {kMacros, "Sec", "", "the beginning of a name"},
      {kMacros, "Too", "", "its end"},
      {kMacros, "", "", "no name"},
      {"// ## MAPILogoff\nint main(void) {}\n//> 0\n", "MAPILogoff", "int main(void) {}\n//> 0\n",
       "a program in C"},
      {"", "First", "", "an empty file"},
  };
  for (const auto& c : cases) EXPECT_EQ(ExampleIn(c.file, c.name), c.expected) << c.why;
}

}  // namespace
}  // namespace wrenfold
