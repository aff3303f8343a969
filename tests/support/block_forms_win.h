// Blocks of requests against the forms that the catalogue gives them.
#pragma once

#include <string>

#include "src/base/slot.h"

namespace wfinfo_test {

// What is wrong with lParam of a request; "" when it has one of the forms of its code.
std::string WrongBlock(int code, long long lparam);

// True when a code of the list of hand-written exports has a form of that many slots. Other codes always.
bool HasSlotCount(int code, std::size_t slots);

}  // namespace wfinfo_test
