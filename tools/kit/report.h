// What the kit leaves: one page for people and one file for programs.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/kit/verdict.h"

namespace kit {

struct Result {
  std::string name;
  bool first = false;  // only Windows can judge it
  double seconds = 0;
  Verdict verdict = {};
  Recorded wine = {};
};

struct Report {
  std::string version = {}, commit = {};  // of the kit
  std::string began = {};                 // local time
  double seconds = 0;
  bool stopped = false;
  std::string recorded_on = {};                                  // the system whose answers were recorded
  std::vector<std::pair<std::string, std::string>> system = {};  // what, value
  std::vector<std::string> notes = {};
  std::vector<Result> results = {};
};

// A failure counts unless `like_wine` is asked for and Wine failed too.
bool Counts(const Result& result, bool like_wine);
int CountOf(const Report& report, Outcome outcome);

std::string JsonOf(const Report& report);
std::string HtmlOf(const Report& report);

}  // namespace kit
