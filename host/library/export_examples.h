// The executed examples of the exports, as the files of examples/ hold them.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// What stands below the heading "## First, Second" (in a program "// ## First") that has the name in the text
// of such a file, and behind it how it is run
// when it needs more than the mails of the samples; "" when none has.
std::string ExampleIn(std::string_view file, std::string_view name);

}  // namespace wrenfold
