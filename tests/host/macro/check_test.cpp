// What is found before a macro runs.
#include "host/macro/check.h"

#include <gtest/gtest.h>

#include <string>

#include "host/base/nearest_names.h"
#include "tests/host/macro/run_macro.h"

namespace wrenfold::macro {
namespace {

std::optional<std::string> CheckHostCall(const std::string& name, std::size_t parameters,
                                         std::span<const std::string_view> others) {
  if (name != "Subject") return "no export '" + name + "'" + DidYouMean(name, others);
  return parameters == 0 ? std::nullopt : std::optional(WrongCount(name, 0, parameters));
}

constexpr HostNames kHost = {CheckHostCall, [](std::string_view name) { return name == "Subject"; }};

std::string Checked(std::string_view source, KnownNames& known) {
  const auto parsed = Parse(source, {Same, false});
  if (const auto* problem = std::get_if<Problem>(&parsed)) return "syntax: " + Located(*problem);
  const auto problem = CheckProgram(std::get<Program>(parsed), kHost, known);
  return problem ? Located(*problem) : "";
}

TEST(MacroCheck, FindsWhatCannotBeRight) {
  const Case kCases[] = {
      {"subject = 1\nprint subjct",
       "2:7: no variable 'subjct': nothing is assigned to it; did you mean subject?", "a mistyped variable"},
      {"if 0\nprint nothing\nend", "2:7: no variable 'nothing': nothing is assigned to it",
       "also where it never comes"},
      {"if 0\nx = 1\nend\nprint x", "", "assigned somewhere"},
      {"while 0\nprint x\nx = 1\nend", "", "assigned behind it"},
      {"for x in 3\nprint x\nend", "", "by a loop"},
      {"x[0] = 1", "1:1: no variable 'x': nothing is assigned to it", "a place in nothing"},
      {"append(x, 1)", "1:8: no variable 'x': nothing is assigned to it", "nor can be appended to"},
      {"append([], 1)", "1:1: append needs a variable that holds the list: append(list, value)",
       "a passing list"},
      {"print Subject, 1", "1:7: Subject is a function; write Subject(...)", "an export without ( )"},
      {"print len", "1:7: len is a function; write len(...)", "a function of the language"},
      {"function f()\nend\nprint f", "3:7: f is a function; write f(...)", "a function of the macro"},
      {"print Subject(1)", "1:7: Subject takes 0 parameters, 1 given", "what the host says"},
      {"print lenn(1)", "1:7: no export 'lenn'; did you mean len?", "the language's functions are proposed"},
      {"function greet(a)\nend\ngret(1)", "3:1: no export 'gret'; did you mean get or greet?",
       "the macro's too"},
      {"print split(1)", "1:7: split takes 2 parameters, 1 given: split(text, separator)",
       "a function's count"},
      {"function f(a, b)\nend\nprint [{\"x\": f(1)}]", "3:14: f takes 2 parameters, 1 given", "deep inside"},
      {"function f(a)\nreturn a + b\nend",
       "2:12: no variable 'b': nothing is assigned to it; did you mean a?", "in a function"},
      {"function f()\nx = 1\nend\nprint x", "4:7: no variable 'x': nothing is assigned to it",
       "what a function assigns is its own"},
      {"x = 1\nfunction f()\nreturn x\nend", "", "a function sees the macro's variables"},
      {"function Subject()\nend", "1:10: there is a function 'Subject' already; choose another name",
       "an export"},
      {"function len()\nend", "1:10: there is a function 'len' already; choose another name",
       "the language's"},
      {"function f()\nprint late\nend\nprint early", "2:7: no variable 'late': nothing is assigned to it",
       "the first in the source"},
  };
  for (const Case& c : kCases) {
    KnownNames known;
    EXPECT_EQ(Checked(c.source, known), c.expected) << c.why << "\n" << c.source;
  }
}

TEST(MacroCheck, KnowsWhatMacrosBeforeLeftBehind) {
  KnownNames known;
  EXPECT_EQ(Checked("x = 1\nfunction f(a)\nend", known), "");
  EXPECT_EQ(Checked("print x\nf(1)", known), "");
  EXPECT_EQ(Checked("f()", known), "1:1: f takes 1 parameter, 0 given");
  EXPECT_EQ(Checked("y = 1\nprint z", known),
            "2:7: no variable 'z': nothing is assigned to it; did you mean x or y?");
  EXPECT_EQ(Checked("print y", known), "1:7: no variable 'y': nothing is assigned to it; did you mean x?")
      << "what was refused left nothing behind";
}

}  // namespace
}  // namespace wrenfold::macro
