// Looks over a macro before it runs: each name means something, and each call can be right.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "host/macro/syntax.h"

namespace wrenfold::macro {

// What the host offers.
struct HostNames {
  // What is wrong with a call of `name` with so many parameters; nullopt when nothing is. `others` are
  // functions that the macro has itself, to be proposed for a mistyped name.
  std::optional<std::string> (*check_call)(const std::string& name, std::size_t parameters,
                                           std::span<const std::string_view> others);
  bool (*has_function)(std::string_view name);
};

// Variables and functions that macros which run before leave behind.
struct KnownNames {
  std::set<std::string, std::less<>> variables;
  std::map<std::string, std::size_t, std::less<>> functions;  // parameters
};

// The first thing, in the order of the source, that is wrong. Without one, `known` knows the names of
// `program` too.
std::optional<Problem> CheckProgram(const Program& program, const HostNames& host, KnownNames& known);

}  // namespace wrenfold::macro
