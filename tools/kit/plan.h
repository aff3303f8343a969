// What the kit runs: read from kit.json, which tools/make_kit.py writes.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/kit/json_text.h"

namespace kit {

// A program of tests, which lists them and runs one at a time.
struct Suite {
  std::string name;
  std::string program;  // paths from the kit's folder, with '/'
  std::string folder;   // in which it runs
  bool desktop;         // its windows are looked for on the desktop: one such test at a time
  bool first;           // only Windows can judge it
  int seconds;          // the time limit of a test
};

// A run of the small host with macros, whose output is known.
struct MacroRun {
  std::string name;
  std::vector<std::pair<std::string, std::string>>
      copies;  // folder or file of the kit, its name in the run's folder
  std::vector<std::pair<std::string, std::string>> files;  // name, contents
  std::vector<std::string> folders;                        // made empty
  std::vector<std::string> arguments;
  std::string input;
  std::string output;
  std::string errors;
  bool joined;  // standard error comes into the output, and blank lines in front of "## " do not count
  int seconds;
};

struct LeftOut {
  std::string pattern;
  std::string reason;
};

struct Plan {
  std::string version;
  std::string commit;
  std::vector<Suite> suites;
  std::vector<MacroRun> macros;
  std::vector<LeftOut> left_out;  // tests that are there and not run
  std::vector<LeftOut> absent;    // tests of the repository that are not in the kit
  std::vector<std::string> key_containers;
};

// nullopt when the text is no plan.
std::optional<Plan> ReadPlan(std::string_view text);

// What Wine answered when the kit was made.
struct Recorded {
  std::string outcome;  // "" when nothing is recorded
  std::string why;
};
class Record {
 public:
  explicit Record(std::string_view text);
  Recorded Of(std::string_view test) const;
  const std::string& system() const { return system_; }

 private:
  std::vector<std::pair<std::string, Recorded>> tests_;  // by name, ascending
  std::string system_;
};

// Whether `name` fits one of the patterns, which ':' separates; '*' stands for any text, '?' for one character.
bool Matches(std::string_view patterns, std::string_view name);

}  // namespace kit
