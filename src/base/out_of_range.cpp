// The one thing that the library's code takes of the exceptions part of the C++ library:
// std::string_view::substr calls it for a start behind the end. The standard one throws, which brings the
// unwinder, the demangler, the formatting of numbers and a pool of memory that is taken at every load;
// nothing here could catch. Linked into the DLL alone: programs with exceptions keep the standard one.
#include <string_view>

#include "src/base/fatal.h"

namespace std {

[[noreturn]] void __throw_out_of_range_fmt(const char*, ...) { wfinfo::StopProcess(); }

}  // namespace std
