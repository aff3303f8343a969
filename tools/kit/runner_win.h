// Runs the tests of a plan, two at a time at most.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "tools/kit/report.h"

namespace kit {

struct Place {
  std::wstring kit;   // where the kit lies, which may be read-only
  std::wstring work;  // a folder of this run, with a copy of the programs
};

struct Wanted {
  std::string only;  // patterns; "" is everything
  int lanes = 2;
};

// The tests of the plan that are wanted, with their results, in the order of the plan. The console shows how far
// they are.
std::vector<Result> RunAll(const Plan& plan, const Record& record, const Place& place, const Wanted& wanted);

// What could name the user: the run's folder and the kit's become words. What is no UTF-8 is made visible.
std::string Shown(std::string text, const Place& place);

}  // namespace kit
