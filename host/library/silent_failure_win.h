// Why a call failed of which neither the library nor the host said a word.
#pragma once

#include <span>
#include <string>

#include "host/library/library_win.h"
#include "host/macro/value.h"
#include "src/catalogue/rows.h"

namespace wrenfold {

// From the values that were given, from what the system says, else from the row's documentation; "" when the
// result is no failure or nothing tells. A page that the server refuses is told of too, although it is one.
std::string WhySilent(const Library& library, const wfinfo::catalogue::Row& row,
                      std::span<const macro::Value> parameters, const macro::Value& result);

}  // namespace wrenfold
