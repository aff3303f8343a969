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

// Whether the row says that Bypass_GetLastError tells why it gave this.
bool SendsToLastError(const wfinfo::catalogue::Row& row, const macro::Value& result);

// The "" that work on "" gives: no failure.
bool ComesOfNothing(const wfinfo::catalogue::Row& row, std::span<const macro::Value> parameters,
                    const macro::Value& result);

// For 0, -1, 4294967295 and "" what the row says of them: `LoadZipDll gives 0 when it is not installed`. ""
// for other results, where the row does not tell, and for the no of a question.
std::string WhyByDocumentation(const wfinfo::catalogue::Row& row, const macro::Value& result);

// For a call that the library refused: the parameter that had to be one of its words, and all of these, as
// `kind cannot be "all"; it takes: "newmail", ...`. "" when every word is one.
std::string RefusedWord(const wfinfo::catalogue::Row& row, std::span<const macro::Value> parameters);

// For an export of the dates family that gave "" or 0: the number of the parameter, from `from` on, that has
// to be a date. nullopt for other exports, other results, and behind the last one.
std::optional<std::size_t> NextDate(const wfinfo::catalogue::Row& row, const macro::Value& result,
                                    std::size_t from);

}  // namespace wrenfold
