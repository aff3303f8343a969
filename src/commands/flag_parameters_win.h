// Parameters of the exports that read and change flags of a mail.
#pragma once

#include <cstdint>

namespace wfinfo {

// The bit of the flag `name`, or 0 after a report.
std::uint32_t FlagBit(const char* name, bool for_writing);

// What `value` switches to: on for a number that is not 0, and for a text that does not begin with "0".
bool IsOn(long long value);

}  // namespace wfinfo
