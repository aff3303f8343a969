// Suggestions for a mistyped name.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// Letters to insert, delete or replace to make one of the other; upper and lower case count as equal.
std::size_t EditDistance(std::string_view a, std::string_view b);

// Up to `most` of `names` that lie near `name`, nearest first: few letters differ, or one is a part of
// the other.
std::vector<std::string_view> NearestNames(std::string_view name, std::span<const std::string_view> names,
                                           std::size_t most = 3);

// "; did you mean Subject or SetHeader?", or "" without a near name.
std::string DidYouMean(std::string_view name, std::span<const std::string_view> names);

}  // namespace wrenfold
