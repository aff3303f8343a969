// Macros in the tests of the language: a host that answers a few calls, and what a macro prints.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/macro/run.h"
#include "host/macro/syntax.h"

namespace wrenfold::macro {

inline std::string Same(std::string_view utf8) { return std::string(utf8); }

// Answers a few calls and keeps what is printed.
class FakeHost : public MacroHost {
 public:
  std::variant<Value, Complaint> Call(const std::string& name, std::span<const Value> parameters) override {
    std::string call = name + "(";
    for (const Value& parameter : parameters) call += parameter.Printed() + ";";
    calls.push_back(call + ")");
    if (name == "Text") return Value(std::string("text"));
    if (name == "Count") return Value(static_cast<std::int64_t>(parameters.size()));
    if (name == "Null") return Value();
    return Complaint{"no function '" + name + "'"};
  }
  bool HasFunction(std::string_view name) const override { return name == "Text" || name == "Count"; }
  void Print(std::string_view line) override { printed += std::string(line) + "\n"; }
  bool MayGoOn() override { return patience-- > 0; }

  std::vector<std::string> calls;
  std::string printed;
  int patience = 100000;
};

inline std::string Located(const Problem& problem) {
  return std::to_string(problem.place.line) + ":" + std::to_string(problem.place.column) + ": " +
         problem.text;
}

// What the macro prints, with the problem that stops it as the last line.
inline std::string RunMacro(std::string_view source, Limits limits = {}) {
  const auto parsed = Parse(source, {Same, false});
  if (const auto* problem = std::get_if<Problem>(&parsed)) return Located(*problem);
  FakeHost host;
  Interpreter interpreter(host, limits);
  const auto problem = interpreter.Run(std::get<Program>(parsed));
  return host.printed + (problem ? Located(*problem) : "");
}

struct Case {
  std::string source;
  std::string expected;
  const char* why;
};

inline void Check(const std::vector<Case>& cases) {
  for (const Case& c : cases) EXPECT_EQ(RunMacro(c.source), c.expected) << c.why << "\n" << c.source;
}

}  // namespace wrenfold::macro
