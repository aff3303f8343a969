// Starts the tests of what only Windows can judge.
#include <gmock/gmock.h>

#include <cstdlib>
#include <string_view>

#include "tests/kit/system/roles_win.h"
#include "tests/support/library.h"

namespace system_tests {

Finished RunRole(const std::string& role, const std::string& argument) {
  char own[MAX_PATH];
  GetModuleFileNameA(nullptr, own, sizeof own);
  return RunChild("\"" + std::string(own) + "\" " + role + " " + argument);
}

int PlayRole(int count, char** arguments) {
  if (count != 3 || std::string_view(arguments[1]) != "bring-to-front") return -1;
  const auto window = reinterpret_cast<void*>(static_cast<INT_PTR>(std::strtoll(arguments[2], nullptr, 10)));
  return static_cast<int>(Bypass_SetForegroundWindow(window));
}

}  // namespace system_tests

int main(int argument_count, char** arguments) {
  const int played = system_tests::PlayRole(argument_count, arguments);
  if (played >= 0) return played;
  testing::InitGoogleMock(&argument_count, arguments);
  return RUN_ALL_TESTS();
}
