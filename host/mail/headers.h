// Headers of a mail's host text, as the host itself looks them up.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace wrenfold {

// Value of occurrence `n` (from 0) of header `name` (any case, with or without its colon) in the host text
// `text`: from the first character behind colon and blanks to the end of the last folded line, without its
// line end. Line ends are CR LF. nullopt when there is no such header.
std::optional<std::string_view> HeaderValue(std::string_view text, std::string_view name, std::size_t n = 0);

std::size_t CountHeaders(std::string_view text, std::string_view name);

// The headers that a reader shows above a mail: From, To, Cc, Subject and Date as "Name: value" lines, each
// with its line end; the absent ones are left out.
std::string DisplayedHeaders(std::string_view text);

}  // namespace wrenfold
