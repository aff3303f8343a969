// The reader of every form of a date, token by token.
#pragma once

#include <optional>
#include <string_view>

#include "src/dates/date_parts.h"

namespace wfinfo {

// Reads a date; `parts`: what has been read in front of `text`.
std::optional<HeaderDate> ReadAnyForm(std::string_view text, const date_parts::Parts& parts);

}  // namespace wfinfo
