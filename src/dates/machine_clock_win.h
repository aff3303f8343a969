// The clock and the time zone of this machine.
#pragma once

#include <cstdint>

#include "src/dates/civil_time.h"

namespace wfinfo {

// Minutes west of UTC, as MachineBias of date_format.h makes them of what the system tells.
std::int64_t CurrentBias();

CivilTime LocalNow();

}  // namespace wfinfo
