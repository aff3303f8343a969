// Calls an export of the library with values of the macro language.
#pragma once

#include <span>
#include <string>
#include <variant>

#include "host/library/library_win.h"
#include "host/macro/run.h"

namespace wrenfold {

// The export's result as a value, text results copied; or why no call was made.
std::variant<macro::Value, macro::Complaint> CallExport(const Library& library, const std::string& name,
                                                        std::span<const macro::Value> parameters);

// What the system said of the last call (GetLastError); means something where the export's documentation
// sends its caller to Bypass_GetLastError.
unsigned long LastErrorOfCall();

// Calls on the host's own account do not count: Bypass_GetLastError tells what it would without them.
class UncountedCalls {
 public:
  UncountedCalls();
  ~UncountedCalls();
  UncountedCalls(const UncountedCalls&) = delete;
  UncountedCalls& operator=(const UncountedCalls&) = delete;

 private:
  unsigned long error_;
};

// True when `value` is the address of a text that a macro gave in a call under way: exports whose further
// parameters nobody names hand them on as they lie.
bool IsPassedText(long long value);

}  // namespace wrenfold
