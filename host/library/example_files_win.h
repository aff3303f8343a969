// The files of examples/ that the program carries as resources.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// The executed example of an export, UTF-8 lines; "" when there is none.
std::string ExampleOf(std::string_view name);

}  // namespace wrenfold
