// The results of the last search in the address book.
#pragma once

#include "src/base/slot.h"

namespace wfinfo {

// Gives them back to the host; there are none then.
void ForgetBookResults();

// Makes the host's answer to a search the results, in place of those that a macro has found while it ran.
// 1, or 0 when the search failed.
int KeepBookResults(Slot answer);

// Result `index`, "" behind the last one.
const char* BookResult(int index);

}  // namespace wfinfo
