// Headers of the current mail, which the host looks up.
#pragma once

namespace wfinfo {

// Occurrence `n` of a header, of any length; "" when there is none.
const char* CurrentHeaderValue(const char* name, int n);

}  // namespace wfinfo
