// Counts what a process holds of the system.
#pragma once

#include "tests/monkey/holdings.h"

namespace monkey {

// Exact but for `bytes`, which the system's heaps take in large pieces. Where the system does not tell how many
// there are, they are found by taking some: as long as nobody else makes any, the counts can be compared.
Holdings Measure();

}  // namespace monkey
