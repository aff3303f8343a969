// The prompt in a real console: lines before, Tab, and what a program in a console of its own does.
#include <gtest/gtest.h>

#include "tests/kit/system/child_win.h"

namespace system_tests {
namespace {

const std::string kTypist = "doubles\\console_typist.exe ";
const std::string kPrompt = kTypist + "\"..\\host\\wrenfold.exe --english --prompt\" \"wait >\" ";
const std::string kLeave = " \"type quit\\n\" end";

TEST(Console, LinesBeforeComeBack) {
  const Finished typed =
      RunChild(kPrompt + "\"type 6 * 7\\n\" \"wait 42\" up \"type  + 1\\n\" \"wait 43\"" + kLeave, 120);
  EXPECT_NE(typed.output.find("> 6 * 7 + 1"), std::string::npos) << typed.output;
  EXPECT_NE(typed.output.find("code 0"), std::string::npos) << typed.output;
}

TEST(Console, TabCompletesAndMendsTheLetterCase) {
  const Finished typed = RunChild(kPrompt + "\"type homed\\t\\n\" \"wait HomeDir()\"" + kLeave, 120);
  EXPECT_NE(typed.output.find("> HomeDir()"), std::string::npos) << typed.output;
  EXPECT_NE(typed.output.find("code 0"), std::string::npos) << typed.output;
}

TEST(Console, TabInTheMiddleOfALineTakesTheRestAway) {
  const Finished typed = RunChild(
      kPrompt + "\"type homed + 12345\" \"left 8\" \"type \\t\\n\" \"wait HomeDir()\"" + kLeave, 120);
  EXPECT_NE(typed.output.find("> HomeDir()"), std::string::npos) << typed.output;
  EXPECT_EQ(typed.output.find("12345"), std::string::npos) << typed.output;
}

}  // namespace
}  // namespace system_tests
