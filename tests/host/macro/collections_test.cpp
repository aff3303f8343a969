// Lists, tables, loops over them, functions, and the language's own functions for them.
#include <gtest/gtest.h>

#include <string>

#include "tests/host/macro/run_macro.h"

namespace wrenfold::macro {
namespace {

TEST(MacroCollections, ListsAndTablesHoldValues) {
  Check({
      {"print [1, \"a\", [2, 3], null, []]", "[1, \"a\", [2, 3], null, []]\n", "a list as it is written"},
      {"print {\"b\": 1, \"a\": [2]}, {}", "{\"a\": [2], \"b\": 1}{}\n", "a table in the order of its names"},
      {"print [\"say \\\"x\\\" \\\\\"]", "[\"say \\\"x\\\" \\\\\"]\n", "texts inside stand in quotes"},
      {"print [\"\\x83\\x5C\"]", "[\"\x83\x5C\"]\n", "the second byte of a character is no backslash"},
      {"a = [1, 2, 3]\nprint a[0], a[1 + 1], [4, 5][1]", "135\n", "a place counts from 0"},
      {"t = {\"x\": {\"y\": [7]}}\nprint t[\"x\"][\"y\"][0]", "7\n", "places inside places"},
      {"a = [1]\na[0] = 2\na[1] = 3\nprint a", "[2, 3]\n", "behind the last one a value may be put"},
      {"t = {}\nt[\"a\"] = 1\nt[\"a\"] = t[\"a\"] + 1\nprint t", "{\"a\": 2}\n",
       "a name is made, then changed"},
      {"t = {\"a\": [1]}\nt[\"a\"][1] = {}\nt[\"a\"][1][\"k\"] = \"v\"\nprint t",
       "{\"a\": [1, {\"k\": \"v\"}]}\n", "a value deep inside"},
      {"a = [1]\nb = a\nb[0] = 2\nprint a, b", "[1][2]\n", "a copy is a list of its own"},
      {"a = [1]\na[0] = a\nprint a", "[[1]]\n", "a list in itself is a copy"},
      {"a = [[1]]\nb = a[0]\nb[0] = 2\nprint a, b", "[[1]][2]\n", "what was taken out too"},
      {"print [1, \"a\"] == [1, \"a\"], [1] == [2], {\"a\": 1} == {\"a\": 1}, [1] != [1, 2], [] == null",
       "10110\n", "equal when all inside is"},
      {"if []\nprint 1\nelse if {}\nprint 2\nelse if [0]\nprint 3\nend", "3\n", "empty ones are false"},
  });
}

TEST(MacroCollections, TellsWrongPlaces) {
  Check({
      {"a = [1, 2]\nprint a[2]", "2:9: the list has no value 2; they are 0 to 1", "behind the last"},
      {"a = []\nprint a[-1]", "2:9: the list has no value -1; it is empty", "before the first"},
      {"a = [1]\na[2] = 1", "2:2: the list has no value 2; they are 0 to 0", "a gap"},
      {"t = {}\nprint t[\"x\"]",
       "2:9: the table has no such name; has(table, name) tells, get(table, name, otherwise) goes on",
       "no such name"},
      {"a = [1]\nprint a[\"x\"]", "2:9: a place in a list is a number, and this is a text",
       "a name in a list"},
      {"t = {}\nt[5] = 1", "2:2: a name in a table is a text, and this is a number", "a number in a table"},
      {"print {5: 1}", "1:8: a name in a table is a text, and this is a number", "in a literal too"},
      {"x = 5\nprint x[0]", "2:9: [ ] needs a list or a table, and this is a number",
       "a number has no places"},
      {"x = \"abc\"\nx[0] = 1", "2:2: [ ] needs a list or a table, and this is a text", "nor has a text"},
      {"print 1 + [2]", "1:9: cannot calculate with a number and a list; only + takes texts",
       "lists do not add up"},
      {"print \"a\" + [2]", "1:11: a list cannot be joined to a text; text(value) writes it as print does",
       "nor join a text"},
      {"print [1] < [2]", "1:11: cannot compare a list with a list; \"\" + number makes a text of a number",
       "only sort knows an order"},
      {"print [1, 2", "1:7: this [ has no ] on its line", "an open list"},
      {"print {\"a\" 2}", "1:12: a : is missing before '2'; write {\"name\": value}",
       "a table without a value"},
      {"print [1,]", "1:10: a value is missing after the comma", "a comma too many"},
      {"[1][0] = 2", "1:1: this line does nothing; write name = ..., print ..., or a call Name(...)",
       "nothing is put into a passing list"},
  });
}

TEST(MacroCollections, LoopsGoThroughThem) {
  Check({
      {"for x in [1, \"a\"]\nprint x\nend", "1\na\n", "a list"},
      {"for name in {\"b\": 1, \"a\": 2}\nprint name\nend", "a\nb\n", "the names of a table"},
      {"for i in 3\nprint i\nend\nprint i", "0\n1\n2\n2\n", "a number; the variable keeps its last value"},
      {"for i in -1\nprint i\nend\nfor x in []\nprint x\nend", "", "nothing to go through"},
      {"a = [1, 2]\nfor x in a\nappend(a, x)\nend\nprint a", "[1, 2, 1, 2]\n",
       "the list as it was when it began"},
      {"for i in 5\nif i == 1\ncontinue\nend\nif i == 3\nbreak\nend\nprint i\nend", "0\n2\n",
       "continue and break"},
      {"i = 0\nwhile 1\ni = i + 1\nif i < 3\ncontinue\nend\nbreak\nend\nprint i", "3\n", "in a while"},
      {"for i in 2\nfor j in 9\nif j == 1\nbreak\nend\nprint i, j\nend\nend", "00\n10\n",
       "the inner loop alone"},
      {"for i in 1000\nend\nprint i", "999\n", "an empty body"},
      {"for x in \"abc\"\nend",
       "1:10: for goes through a list, a table or up to a number, and this is a text; split(text, \"\") "
       "gives its characters",
       "a text is no list"},
      {"break", "1:1: 'break' belongs inside of a while or for", "no loop around it"},
      {"while 1\nfunction f()\nend\nend", "2:1: a function stands by itself, not inside of another statement",
       "a function in a loop"},
      {"for 5 in x\nend", "1:5: a name is missing behind for; write for name in list", "no name"},
      {"for x of y\nend", "1:7: 'in' is missing before 'of'; write for name in list", "no in"},
      {"for x in 3", "1:1: this for has no end; write end on a line of its own", "no end"},
  });
}

TEST(MacroCollections, HasFunctionsForTextsListsAndTables) {
  Check({
      {"print len(\"abc\"), len(\"\"), len([1, 2]), len({\"a\": 1})", "3021\n", "bytes, values, names"},
      {"print len(\"\\x83\\x5C\"), len(split(\"\\x83\\x5Ca\\x1A\\x82\\xA0\\x84\", \"\"))", "23\n",
       "len counts bytes; split with \"\" gives characters"},
      {"print number(\"42\"), number(\" -7\\r\\n\"), number(\"0x1F\"), number(\"+1\"), number(5)",
       "42-73115\n", "numbers"},
      {"print number(\"-9223372036854775808\"), number(\"0xFFFFFFFFFFFFFFFF\")", "-9223372036854775808-1\n",
       "the smallest, and all bits"},
      {"print number(\"12 apples\", -1), number(\"\", null), number(null, 0)", "-1null0\n", "otherwise"},
      {"print text(5) + text([1]) + text(null)", "5[1]null\n", "text writes as print does"},
      {"print split(\"a,b,,c\", \",\"), split(\"\", \",\"), split(\",\", \",\")",
       "[\"a\", \"b\", \"\", \"c\"][\"\"][\"\", \"\"]\n", "empty parts count"},
      {"print split(\"a--b-c\", \"--\"), split(\"\", \"\")", "[\"a\", \"b-c\"][]\n", "long separators"},
      {"print len(split(\"\\x83\\x5Ca\\\\b\", \"\\\\\"))", "2\n", "no character is split"},
      {"print join([1, \"a\", \"\"], \", \"), join([], \"x\"), join([\"a\"], \"x\")", "1, a, a\n", "join"},
      {"print sort([3, 1, 2]), sort([\"b\", \"B\", \"a\"]), sort([[2, \"a\"], [1, \"z\"], [2]])",
       "[1, 2, 3][\"B\", \"a\", \"b\"][[1, \"z\"], [2], [2, \"a\"]]\n", "sort"},
      {"a = [2, 1]\nb = sort(a)\nprint a, b, reverse(b)", "[2, 1][1, 2][2, 1]\n", "the list itself stays"},
      {"print keys({\"b\": 1, \"a\": 2}), has({\"a\": 1}, \"a\"), has({}, \"a\"), has([1, \"x\"], \"x\")",
       "[\"a\", \"b\"]101\n", "keys and has"},
      {"t = {}\nt[\"a\"] = get(t, \"a\", 0) + 1\nt[\"a\"] = get(t, \"a\", 0) + 1\nprint t", "{\"a\": 2}\n",
       "counting"},
      {"a = []\nprint append(a, 1), append(a, [2]), append(a[1], 3), a", "122[1, [2, 3]]\n", "append"},
      {"text = 1\nprint text + len(\"a\")", "2\n", "a variable may be named like them"},
  });
}

TEST(MacroCollections, SplitLeavesCharactersAboveFfffWhole) {
  // U+1F600 is two escapes in host text.
  Check(
      {{"s = \"a\\x1A\\xBD\\xD8\\x86\\x1A\\x80\\xDE\\x86b\"\n"
        "print len(split(s, \"\")), join(reverse(split(s, \"\")), \"\")",
        "3b\x1A\xBD\xD8\x86\x1A\x80\xDE\x86"
        "a\n",
        "as one character"}});
}

TEST(MacroCollections, TellsWhatItsFunctionsNeed) {
  Check({
      {"print number(\"12 apples\")",
       "1:7: '12 apples' is no number of 64 bits; with number(text, otherwise) the macro goes on",
       "no number"},
      {"print number(\"9223372036854775808\")",
       "1:7: '9223372036854775808' is no number of 64 bits; with number(text, otherwise) the macro goes on",
       "too large"},
      {"print number(\"\\x83\\x5C\")",
       "1:7: the text given to number is no number of 64 bits; with number(text, otherwise) the macro goes "
       "on",
       "host text is not shown"},
      {"print len(5)", "1:7: len needs a text, a list or a table, and this is a number", "len"},
      {"print split([], \",\")", "1:7: split needs a text, and this is a list", "split"},
      {"print join([[1]], \",\")", "1:7: join needs a list of texts and numbers, and this is a list", "join"},
      {"print sort({})", "1:7: sort needs a list, and this is a table", "sort"},
      {"x = 1\nappend(x, 1)", "2:8: append needs a list, and this is a number", "append"},
      {"print split(\"a\")", "1:7: split takes 2 parameters, 1 given: split(text, separator)", "too few"},
      {"print number(1, 2, 3)", "1:7: number takes 1 or 2 parameters, 3 given: number(text [, otherwise])",
       "too many"},
  });
}

TEST(MacroFunctions, GiveResultsByValue) {
  Check({
      {"print double(4)\nfunction double(n)\nreturn n * 2\nend", "8\n",
       "a function may stand behind its call"},
      {"function greet(name)\nreturn \"Dear \" + name\nend\nprint greet(\"Bob\") + \",\"", "Dear Bob,\n",
       "a text"},
      {"function f()\nprint 1\nend\nf()\nprint f()", "1\n1\nnull\n", "without return it gives null"},
      {"function f(n)\nif n < 2\nreturn 1\nend\nreturn n * f(n - 1)\nend\nprint f(10)", "3628800\n",
       "recursion"},
      {"x = 1\nfunction f()\nx = 2\nreturn x\nend\nprint f(), x", "21\n", "what it assigns is its own"},
      {"x = 1\nfunction f()\nreturn x + 1\nend\nprint f()", "2\n", "what it does not assign is the macro's"},
      {"t = {}\nfunction count(k)\nt[k] = get(t, k, 0) + 1\nend\ncount(\"a\")\ncount(\"a\")\nprint t",
       "{\"a\": 2}\n", "and can be put into"},
      {"a = [1]\nfunction f(list)\nappend(list, 2)\nreturn list\nend\nprint f(a), a", "[1, 2][1]\n",
       "a parameter is a copy"},
      {"function f()\nfor i in 5\nwhile 1\nreturn i\nend\nend\nend\nprint f()", "0\n", "return out of loops"},
      {"x = 5\nfunction f()\nx = x + 1\nend\nf()", "3:5: no variable 'x' yet", "its own x has no value yet"},
      {"function f()\nreturn\nend\nprint \"a\" + f()",
       "4:11: null (f gave no result: its return has no value) cannot be joined to a text; write \"\"",
       "null tells where it came from"},
      {"function f()\nend\nx = f()\nprint 1 + x",
       "4:9: cannot calculate with a number and null (f gave no result: it ended without a return); only + "
       "takes texts",
       "also later"},
      {"function f(a)\nend\nf()", "3:1: f takes 1 parameter, 0 given", "too few parameters"},
  });
}

TEST(MacroFunctions, TellsWrongDefinitions) {
  Check({
      {"return 1", "1:1: 'return' belongs inside of a function", "no function around it"},
      {"function f()\nbreak\nend", "2:1: 'break' belongs inside of a while or for", "no loop in it"},
      {"function f()\nfunction g()\nend\nend",
       "2:1: a function stands by itself, not inside of another statement", "a function in a function"},
      {"function f()\nend\nfunction f()\nend", "3:10: there is another function 'f' in this macro", "twice"},
      {"function f(a, a)\nend", "1:15: there is another parameter 'a'", "a parameter twice"},
      {"function if()\nend", "1:10: 'if' is a word of the language, not a name", "a word as a name"},
      {"function f(1)\nend", "1:12: the name of a parameter is missing", "a number as a parameter"},
      {"function f\nend", "1:11: a ( is missing before the end of the line; write function name(a, b)",
       "no list"},
      {"function f()\nprint 1", "1:1: this function has no end; write end on a line of its own", "no end"},
  });
}

TEST(MacroFunctions, StayForTheMacrosBehind) {
  FakeHost host;
  Interpreter interpreter(host);
  EXPECT_FALSE(interpreter.Run(
      std::get<Program>(Parse("function f()\nreturn 1 / zero\nend", {Same, false, "a.macro"}))));
  EXPECT_FALSE(interpreter.Run(std::get<Program>(Parse("zero = 1\nprint f()", {Same, false, "b.macro"}))));
  EXPECT_EQ(host.printed, "1\n");
  const auto problem =
      interpreter.Run(std::get<Program>(Parse("\n\nzero = 0\nprint f()", {Same, false, "c.macro"})));
  ASSERT_TRUE(problem);
  EXPECT_EQ(problem->file + ":" + Located(*problem), "a.macro:2:10: division by 0")
      << "where the function stands";
}

TEST(MacroBounds, HoldForListsTablesAndCalls) {
  const Limits small{0, 1000};
  const struct {
    const char* source;
    const char* expected;
  } kCases[] = {
      {"a = []\nwhile 1\nappend(a, 1)\nend", "3:8: this list would be longer than 1000 bytes"},
      {"t = {}\nfor i in 99\nt[text(i)] = i\nend", "3:2: this list would be longer than 1000 bytes"},
      {"a = [1]\nwhile 1\na = [a, a]\nend", "3:5: this list would be longer than 1000 bytes"},
      {"a = [1]\nwhile 1\na[1] = a\nend", "3:2: this list would be longer than 1000 bytes"},
      {"print split(\"a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p\", \",\")",
       "1:7: this list would be longer than 1000 bytes"},
      {"s = \"0123456789\"\nwhile 1\ns = join([1, 2, 3, 4], s)\nend",
       "3:5: this text would be longer than 1000 bytes"},
  };
  for (const auto& c : kCases) EXPECT_EQ(RunMacro(c.source, small), c.expected) << c.source;
  EXPECT_EQ(RunMacro("a = []\nwhile 1\na = [a]\nend"),
            "3:5: more than 100 lists and tables inside one another");
  EXPECT_EQ(RunMacro("a = []\nwhile 1\na[0] = a\nend"),
            "3:2: more than 100 lists and tables inside one another");
  EXPECT_EQ(
      RunMacro("function f(n)\nreturn f(n + 1)\nend\nf(0)"),
      "2:12: too many calls and statements inside one another; does a function call itself without end?");
}

}  // namespace
}  // namespace wrenfold::macro
