// Changing the headers of a mail's host text; headers.h reads them. Names may come with or without their
// colon, in any case. A name that CanBeHeader refuses adds nothing; a line end in a value becomes a blank
// unless a blank follows it (a fold).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wrenfold {

// True for what the name of a header may be: ASCII characters from "!" to "~" but no colon. Others end
// the header of the mail in the eyes of programs that read it.
bool CanBeHeader(std::string_view name);

// Adds a header behind the last one.
void AddHeader(std::string& text, std::string_view name, std::string_view value);

// Gives occurrence `n` (from 0) of `name` a new value; `n` equal to their number adds one. False for a
// larger `n`.
bool SetHeader(std::string& text, std::string_view name, std::string_view value, std::size_t n);

// Removes occurrence `n`; false when there is none.
bool DeleteHeader(std::string& text, std::string_view name, std::size_t n);

}  // namespace wrenfold
