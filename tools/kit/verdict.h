// What a finished program says about its test.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/kit/plan.h"

namespace kit {

enum class Outcome { kPassed, kFailed, kSkipped, kNotRun };
std::string_view NameOf(Outcome outcome);

// How a process ended.
struct Ended {
  bool started = true;
  bool hung = false;     // it had to be ended
  bool stopped = false;  // the user stopped the kit
  std::uint32_t code = 0;
  std::string output;
  std::string errors;  // "" when they stand in the output
};

struct Verdict {
  Outcome outcome = Outcome::kNotRun;
  std::string reason;  // one line; "" when it passed
  std::string output;  // of a failure
};

// The tests that "--gtest_list_tests" printed, as "Suite.Test".
std::vector<std::string> ListedTests(std::string_view printed);

Verdict JudgeTest(const Ended& ended, int seconds);
Verdict JudgeMacros(const Ended& ended, const MacroRun& run);

// `text` with each `what` replaced.
std::string Replaced(std::string_view text, std::string_view what, std::string_view by);

}  // namespace kit
