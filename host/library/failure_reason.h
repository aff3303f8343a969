// Why a call gave what means a failure, where the library says nothing: from what the catalogue tells of
// its results.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "host/macro/value.h"
#include "src/catalogue/rows.h"

namespace wrenfold {

// "Inet_HttpQueryInfo gave null; it does so when there is none or it is empty". `reason` is what is known
// better, or "".
std::string WhyNull(const wfinfo::catalogue::Row& row, const std::string& reason);

// For an export of the dates family that gave "" or 0: the number of the parameter, from `from` on, that has
// to be a date. nullopt for other exports, other results, and behind the last one.
std::optional<std::size_t> NextDate(const wfinfo::catalogue::Row& row, const macro::Value& result,
                                    std::size_t from);

}  // namespace wrenfold
