// Search settings of the small host, as one host text.
//
//   pack      = { condition }            one on each line; all of them must hold
//   condition = place ":" text           "Subject: minutes", "Body: printers", "Any: example"
//   place     = "Any" / "Body" / a header's name, of which any occurrence may hold the text
//
// The text may stand anywhere in its place; the case of ASCII letters does not count. A line without a colon
// is a text anywhere. A pack without conditions finds every mail.
#pragma once

#include <string>
#include <string_view>

namespace wrenfold {

// True when host text `text` holds `wanted` beginning at a character, ASCII letters in any case.
bool HoldsText(std::string_view text, std::string_view wanted);

// The first line of `pack` whose place is no header's name, such as "Meeting at 10:30", so that nothing is
// ever found there; "" when there is none.
std::string_view NoPlaceOf(std::string_view pack);

// What is told of such a line, UTF-8: "'Meeting at 10' is no name of a header; ...".
std::string WhyNoPlace(std::string_view line);

// True when every condition of `pack` holds for a mail (host text).
bool Finds(std::string_view pack, std::string_view mail);

}  // namespace wrenfold
