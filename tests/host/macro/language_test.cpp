// The macro language: what it accepts, what it computes, and what it says about mistakes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/base/nearest_names.h"
#include "host/macro/run.h"
#include "host/macro/syntax.h"
#include "tests/host/macro/run_macro.h"

namespace wrenfold::macro {
namespace {

// Shows where quoted text is converted: each converted piece stands in brackets.
std::string Bracketed(std::string_view utf8) { return utf8.empty() ? "" : "[" + std::string(utf8) + "]"; }

TEST(MacroLanguage, ReadsNumbersAndTexts) {
  Check({
      {"print 0", "0\n", "zero"},
      {"print 42, -7", "42-7\n", "print puts nothing between its values"},
      {"print 0x7f", "127\n", "hexadecimal"},
      {"print -0x10", "-16\n", "a sign before a hexadecimal number"},
      {"print 9223372036854775807", "9223372036854775807\n", "the largest number"},
      {"print -9223372036854775808", "-9223372036854775808\n", "the smallest number"},
      {"print 0xFFFFFFFFFFFFFFFF", "-1\n", "hexadecimal numbers may set all bits"},
      {"print \"\"", "\n", "an empty text"},
      {"print \"a\\\"b\\\\c\"", "a\"b\\c\n", "quote and backslash"},
      {"print \"a\\tb\\r\\n\"", "a\tb\r\n\n", "control characters"},
      {"print \"\\x41\\xfF\"", "A\xFF\n", "bytes"},
      {"print \"# no // comment\"", "# no // comment\n", "comment signs inside a text"},
      {"print null", "null\n", "null"},
      {"print", "\n", "an empty line"},
  });
}

TEST(MacroLanguage, CalculatesAndCompares) {
  Check({
      {"print 1 + 2 * 3 - 4", "3\n", "* binds before + and -"},
      {"print (1 + 2) * 3", "9\n", "parentheses"},
      {"print 10 - 4 - 3", "3\n", "from left to right"},
      {"print 7 / 2, \" \", -7 / 2, \" \", 7 % 4, \" \", -7 % 4", "3 -3 3 -3\n",
       "division drops the fraction"},
      {"print 9223372036854775807 + 1", "-9223372036854775808\n", "numbers wrap at 64 bits"},
      {"x = -9223372036854775808\nprint x / -1, x % -1, -x",
       "-9223372036854775808"
       "0"
       "-9223372036854775808\n",
       "the smallest number has no counterpart"},
      {"print \"a\" + 1 + \"b\"", "a1b\n", "a number joined to a text is written in digits"},
      {"print 1 + 2 + \"a\"", "3a\n", "numbers first add up"},
      {"print 1 < 2, 2 <= 1, 3 == 3, 3 != 3, 2 > 1, 1 >= 2", "101010\n", "comparisons of numbers"},
      {"print \"a\" < \"b\", \"a\" == \"A\", \"ab\" > \"a\"", "101\n", "texts compare by their bytes"},
      {"print null == null, 1 == null, \"\" != null", "101\n", "null equals only null"},
      {"print 1 and 0, 1 and 2, 0 or \"\", 0 or \"x\", not 1, not \"\"", "010101\n", "truth"},
      {"print not 1 == 2", "1\n", "not denies the whole comparison"},
      {"print 1 or Missing(), 0 and Missing()", "10\n",
       "the right side is left alone when the left one decides"},
      {"print 1 == 1 and 2 == 2 or 0", "1\n", "or binds weakest"},
      {"print --3", "3\n", "two signs"},
  });
}

TEST(MacroLanguage, RunsStatements) {
  Check({
      {"a = 1\nb = a + 1\na = b\nprint a, b", "22\n", "variables"},
      {"# one\n// two\n\nprint 1 # three\nprint 2 // four", "1\n2\n", "comments"},
      {"\xEF\xBB\xBFprint 1\r\nprint 2\rprint 3\n", "1\n2\n3\n", "byte order mark and all line ends"},
      {"if 1\nprint \"yes\"\nelse\nprint \"no\"\nend", "yes\n", "if"},
      {"if \"\"\nprint \"yes\"\nelse\nprint \"no\"\nend", "no\n", "else"},
      {"x = 2\nif x == 1\nprint 1\nelse if x == 2\nprint 2\nelse\nprint 3\nend\nprint 4", "2\n4\n",
       "else if, one end"},
      {"i = 0\nwhile i < 3\nprint i\ni = i + 1\nend", "0\n1\n2\n", "while"},
      {"i = 0\nwhile i < 2\nj = 0\nwhile j < 2\nprint i, j\nj = j + 1\nend\ni = i + 1\nend",
       "00\n01\n10\n11\n", "nested"},
      {"while 0\nend\nif 0\nend\nprint 1", "1\n", "empty bodies"},
      {"", "", "an empty macro"},
  });
}

TEST(MacroLanguage, CallsWithNestedParameters) {
  const auto parsed = Parse("Count(1, \"a\", Count(Text()), null)\nx = Text()", {Same, false});
  FakeHost host;
  Interpreter interpreter(host);
  EXPECT_FALSE(interpreter.Run(std::get<Program>(parsed)));
  EXPECT_EQ(host.calls, (std::vector<std::string>{"Text()", "Count(text;)", "Count(1;a;1;null;)", "Text()"}));
}

TEST(MacroLanguage, ConvertsQuotedTextButNotItsBytes) {
  const auto parsed = Parse("print \"ab\\n\\x1A\\x82z\"", {Bracketed, false});
  FakeHost host;
  Interpreter interpreter(host);
  EXPECT_FALSE(interpreter.Run(std::get<Program>(parsed)));
  EXPECT_EQ(host.printed, "[ab\n]\x1A\x82[z]\n");
}

TEST(MacroLanguage, TellsWhereSyntaxIsWrong) {
  Check({
      {"print 1\nprint (1", "2:7: this ( has no ) on its line", "open parenthesis"},
      {"x = ",
       "1:5: a value is missing before the end of the macro; write a number, a \"text\", a variable or a "
       "call Name(...)",
       "nothing to assign"},
      {"prnt \"x\"", "1:1: 'prnt' is no word of this language; did you mean print?", "a slip of print"},
      {"whle 1\nend", "1:1: 'whle' is no word of this language; did you mean while?", "a slip of while"},
      {"nothing 2", "1:1: this line does nothing; write name = ..., print ..., or a call Name(...)",
       "no slip"},
      {"of 2", "1:1: this line does nothing; write name = ..., print ..., or a call Name(...)",
       "too short for a slip"},
      {"x = 1 2", "1:7: '2' does not belong here; each statement stands on its own line", "two values"},
      {"if x = 1\nend", "1:6: '=' does not belong here; to compare, write ==", "assignment in a condition"},
      {"print \"abc", "1:7: this text has no closing \" on its line; a \" inside a text is written \\\"",
       "open text"},
      {"print \"a\\q\"",
       "1:9: unknown escape; there are \\\" \\\\ \\n \\r \\t and \\xNN (two hexadecimal digits, not 00)",
       "unknown escape"},
      {"print \"\\x0g\"",
       "1:8: unknown escape; there are \\\" \\\\ \\n \\r \\t and \\xNN (two hexadecimal digits, not 00)",
       "half an escape"},
      {"print \"\\x00\"",
       "1:8: unknown escape; there are \\\" \\\\ \\n \\r \\t and \\xNN (two hexadecimal digits, not 00)",
       "a zero byte"},
      {"print 'a'", "1:7: ''' does not belong here; texts stand in double quotes: \"...\"", "single quotes"},
      {"print \"\xE6\x97\xA5\" $", "1:11: '$' does not belong here; texts stand in double quotes: \"...\"",
       "columns count characters"},
      {"print \xE6\x97\xA5",
       "1:7: '\xE6\x97\xA5' does not belong here; texts stand in double quotes: \"...\"",
       "a bare Japanese character"},
      {"print \"\x93\xFA\"", "1:8: this is not UTF-8; save the macro as UTF-8, or write the byte as \\xNN",
       "Shift-JIS"},
      {"print 12ab", "1:7: '12ab' is no number; write 123 or 0x7B, and names begin with a letter",
       "letters in a number"},
      {"print 0x", "1:7: '0x' is no number; write 123 or 0x7B, and names begin with a letter", "no digits"},
      {"print 9223372036854775808", "1:7: this number does not fit 64 bits with a sign", "one too large"},
      {"print -9223372036854775809", "1:8: this number does not fit 64 bits with a sign", "one too small"},
      {"print 99999999999999999999", "1:7: this number has more than 64 bits", "far too large"},
      {"while 1\nprint 1", "1:1: this while has no end; write end on a line of its own", "no end"},
      {"print 1\nend", "2:1: 'end' without an if, while, for or function before it", "a stray end"},
      {"while 1\nelse\nend", "2:1: 'else' belongs to an if", "else of a while"},
      {"if = 3",
       "1:4: a value is missing before '='; write a number, a \"text\", a variable or a call Name(...)",
       "a keyword as a name"},
      {"null = 3", "1:1: 'null' is a word of the language, not a name", "assignment to null"},
      {"x == 5", "1:1: this line does nothing; write name = ..., print ..., or a call Name(...)",
       "a useless comparison"},
      {"Text(1,)", "1:8: a value is missing after the comma", "trailing comma"},
      {"Text(1 2)", "1:8: a comma or ) is missing before '2'", "no comma"},
      {"if 1\nprint \"a\nend",
       "2:7: this text has no closing \" on its line; a \" inside a text is written \\\"",
       "the text is told, not the if"},
  });
}

TEST(MacroLanguage, TellsWhereARunStops) {
  Check({
      {"print 1\nprint 1 / 0", "1\n2:9: division by 0", "what stands before has happened"},
      {"print 1, 1 % 0", "1:12: division by 0", "a line is printed whole or not at all"},
      {"subject = 1\nprint subjct", "2:7: no variable 'subjct' yet; did you mean subject?",
       "a mistyped variable"},
      {"print Text", "1:7: Text is a function; write Text(...)", "a call without parentheses"},
      {"print Nothing()", "1:7: no function 'Nothing'", "the host's complaint"},
      {"print 1 < \"a\"", "1:9: cannot compare a number with a text; \"\" + number makes a text of a number",
       "unlike kinds"},
      {"print \"a\" * 2", "1:11: cannot calculate with a text and a number; only + takes texts",
       "texts do not multiply"},
      {"print -\"a\"", "1:7: - needs a number, and this is a text", "no negative text"},
      {"print \"a\" + null", "1:11: null cannot be joined to a text; write \"\"", "null"},
  });
}

TEST(MacroLanguage, KeepsItsLimits) {
  EXPECT_EQ(RunMacro("while 1\nend", {1000}), "1:7: stopped after 1000 steps");
  EXPECT_EQ(RunMacro("s = \"ab\"\nwhile 1\ns = s + s\nend", {0, 1000}),
            "3:7: this text would be longer than 1000 bytes");
  EXPECT_EQ(RunMacro("print " + std::string(101, '(') + "1"),
            "1:106: too many parentheses inside one another");
  std::string chain = "print 1";
  for (int i = 0; i < 501; ++i) chain += "+1";
  EXPECT_EQ(RunMacro(chain), "1:1008: this expression is too long; put a part of it into a variable");
  std::string nest;
  for (int i = 0; i < 101; ++i) nest += "if 1\n";
  EXPECT_EQ(RunMacro(nest), "101:1: too many statements inside one another");
}

TEST(MacroLanguage, StopsWhenTheHostSaysSo) {
  for (const char* source : {"while 1\nprint 1\nend", "while 1\nend"}) {
    const auto parsed = Parse(source, {Same, false});
    FakeHost host;
    host.patience = 5;
    Interpreter interpreter(host);
    const auto problem = interpreter.Run(std::get<Program>(parsed));
    ASSERT_TRUE(problem) << source;
    EXPECT_EQ(problem->text, "stopped");
  }
}

TEST(MacroLanguage, AtThePromptExpressionsStandAloneAndBlocksGoOn) {
  const auto value = Parse("1 + 2", {Same, true});
  FakeHost host;
  Interpreter interpreter(host);
  EXPECT_FALSE(interpreter.Run(std::get<Program>(value)));
  EXPECT_EQ(interpreter.last_value(), Value(3));
  EXPECT_FALSE(interpreter.Run(std::get<Program>(Parse("x = 1", {Same, true}))));
  EXPECT_EQ(interpreter.last_value(), std::nullopt);
  EXPECT_FALSE(interpreter.Run(std::get<Program>(Parse("x", {Same, true}))));
  EXPECT_EQ(interpreter.last_value(), Value(1)) << "variables stay";
  for (const char* statement : {"print f()", "list[f() - 1] = 2", "while f() - 1\nend", "x = f()"}) {
    const std::string source = std::string("list = [0]\nfunction f()\n7\nreturn 1\nend\n") + statement;
    EXPECT_FALSE(interpreter.Run(std::get<Program>(Parse(source, {Same, true}))));
    EXPECT_EQ(interpreter.last_value(), std::nullopt) << "a line of a function is none of " << statement;
  }

  for (const char* open :
       {"if 1", "while 1\nprint 1", "if 1\nelse", "if 1\nif 2\nend", "for i in 3", "function f()"}) {
    EXPECT_TRUE(std::get<Problem>(Parse(open, {Same, true})).incomplete) << open;
  }
  for (const char* wrong : {"if", "if 1 2", "end", "print \"a", "if 1\nprint \"a"}) {
    EXPECT_FALSE(std::get<Problem>(Parse(wrong, {Same, true})).incomplete) << wrong;
  }
}

}  // namespace
}  // namespace wrenfold::macro

namespace wrenfold {
namespace {

TEST(NearestNames, CountsEdits) {
  EXPECT_EQ(EditDistance("", ""), 0u);
  EXPECT_EQ(EditDistance("", "abc"), 3u);
  EXPECT_EQ(EditDistance("Subject", "subjct"), 1u) << "letter case does not count";
  EXPECT_EQ(EditDistance("kitten", "sitting"), 3u);
}

TEST(NearestNames, PutsTheNearestFirst) {
  const std::string_view names[] = {"RootBody", "RootBodyLine", "RootHeader", "RootHeader2", "Subject"};
  EXPECT_EQ(DidYouMean("RootHeder", names), "; did you mean RootHeader or RootHeader2?");
  EXPECT_EQ(DidYouMean("rootbody", names), "; did you mean RootBody or RootBodyLine?");
  EXPECT_EQ(DidYouMean("line", names), "; did you mean RootBodyLine?") << "a part of a name";
  EXPECT_EQ(DidYouMean("Zzzzz", names), "");
  EXPECT_EQ(DidYouMean("", names), "");
}

}  // namespace
}  // namespace wrenfold
