// Every function of the system that the library imports or binds, and what it gives when it fails. A function without
// a row fails the tests.
#pragma once

#include <windows.h>

#include <string_view>

namespace torture {

struct SystemCall {
  std::string_view name;
  long long failure;     // its result when it fails
  DWORD error;           // last error then; 0 leaves it alone
  std::string_view why;  // it is not made to fail; "" when it is
};

// The row, or null.
const SystemCall* FindSystemCall(std::string_view name);

}  // namespace torture
