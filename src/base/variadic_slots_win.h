// The parameters of a call as slots in memory.
#pragma once

#include <cstdarg>

#include "src/base/slot.h"

namespace wfinfo {

// In the Win64 calling convention each parameter, named or not, has a 64-bit home slot on the caller's stack,
// all of them in a row, which are the called function's to change: a va_list is the address of the next slot.
static_assert(sizeof(std::va_list) == sizeof(Slot*));
inline Slot* SlotsOf(std::va_list rest) { return reinterpret_cast<Slot*>(rest); }

}  // namespace wfinfo
