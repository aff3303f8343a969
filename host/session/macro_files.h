// Macros from their files: read, and looked over before anything runs.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "host/macro/check.h"
#include "host/macro/syntax.h"

namespace wrenfold {

struct LoadedMacro {
  std::string file;  // as given
  macro::Program program;
};

// A macro, or what is wrong with it as "file:line:column: reason".
using MacroOrReason = std::variant<LoadedMacro, std::string>;

// `source` is UTF-8, `file` what its problems name. `bare_expressions`: any expression may stand alone.
// `known` holds what macros that run before leave behind, and then what this one leaves.
MacroOrReason ReadMacro(const std::string& file, const std::string& source, const macro::HostNames& host,
                        macro::KnownNames& known, bool bare_expressions);
// The same of a file, which is to be UTF-8 and to hold something.
MacroOrReason LoadMacro(const std::string& file, const macro::HostNames& host, macro::KnownNames& known,
                        bool bare_expressions = false);

// "file:line:column: reason"; the problem may stand in a function of another file.
std::string Located(const std::string& file, const macro::Problem& problem);

// What texts in macros are made into.
std::string MacroTextToHost(std::string_view utf8);

}  // namespace wrenfold
