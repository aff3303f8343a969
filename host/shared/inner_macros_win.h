// Macros that run while another one waits for a service.
#pragma once

#include <optional>
#include <string>

#include "host/requests/host_state.h"

namespace wrenfold {

inline constexpr int kMostDepth = 20;  // macros within macros

// Stands while an inner macro runs, which it must not when that would be one too many.
class MacroInMacro {
 public:
  MacroInMacro();
  ~MacroInMacro();
  MacroInMacro(const MacroInMacro&) = delete;
  MacroInMacro& operator=(const MacroInMacro&) = delete;

  bool IsTooDeep() const;
};

// Has the user's macro, if there is one, look at the mail being written. Returns why that must not be sent:
// only a number other than 0 lets it go, and only while it is the same mail that is being written.
std::optional<std::string> WhyHeldBack(HostState& state);

}  // namespace wrenfold
