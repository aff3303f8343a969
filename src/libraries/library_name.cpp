#include "src/libraries/library_name.h"

#include "src/text/host_text.h"

namespace wfinfo {

bool HasBackslash(std::string_view name) {
  while (!name.empty()) {
    const std::string_view unit = NextUnit(name);
    if (unit == "\\") return true;
    name.remove_prefix(unit.size());
  }
  return false;
}

}  // namespace wfinfo
