// The executed examples of the exports, as the files of examples/ hold them.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// What stands below the heading "## First, Second" (in a program "// ## First") that has the name in the text
// of such a file; "" when none has.
std::string ExampleIn(std::string_view file, std::string_view name);

}  // namespace wrenfold
