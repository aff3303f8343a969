// Programs that a test starts: without a window, with an end.
#pragma once

#include <windows.h>

#include <string>

namespace system_tests {

struct Finished {
  bool started = false;
  DWORD code = 0;
  std::string output;
};

// Runs a command line (its program is looked for on the search path) and waits up to `seconds`; what still runs then
// is ended, with code 258.
Finished RunChild(const std::string& command_line, unsigned seconds = 60);

// A program that goes on beside the test, and ends with this object.
class Companion {
 public:
  explicit Companion(const std::string& command_line);
  ~Companion();
  Companion(const Companion&) = delete;
  bool started() const { return process_.hProcess != nullptr; }

 private:
  PROCESS_INFORMATION process_{};
};

}  // namespace system_tests
