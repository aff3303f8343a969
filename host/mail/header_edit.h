// Changes the header block of a mail's host text. Names may come with or without their colon, in any case. An
// empty name changes nothing; a line end in a value becomes a blank unless a blank follows it (a fold).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace wrenfold {

// Adds a header behind the last one.
void AddHeader(std::string& text, std::string_view name, std::string_view value);

// Gives occurrence `n` (from 0) of `name` a new value; `n` equal to their number adds one. False for a
// larger `n`.
bool SetHeader(std::string& text, std::string_view name, std::string_view value, std::size_t n);

// Removes occurrence `n`; false when there is none.
bool DeleteHeader(std::string& text, std::string_view name, std::size_t n);

// The text of an answer to `mail` (host text): To, Subject, In-Reply-To and References from the mail's
// headers, and the text of its body as `quoted_body`.
std::string ReplyTo(std::string_view mail, std::string_view quoted_body);

}  // namespace wrenfold
