// Macros that a macro hands to another window of the host.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "host/macro/value.h"

namespace wrenfold {

class MacroRunner {
 public:
  virtual ~MacroRunner() = default;
  // Runs `macro` (host text): the file of that name when it ends in ".macro", else its own lines. Finds
  // `parameters` in the variables p1, p2 and so on. Its value is that of its last statement, 1 without one;
  // nothing when it could not be run, which the user has been told.
  virtual std::optional<macro::Value> RunMacro(std::string_view macro,
                                               std::span<const macro::Value> parameters) = 0;
};

// Who runs them; null: nobody, and the requests are answered 0.
void SetMacroRunner(MacroRunner* runner);

}  // namespace wrenfold
