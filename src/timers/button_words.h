// What a macro may write for the button that the auto-push timer presses.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "src/commands/keyword_table.h"

namespace wfinfo {

// The ids that the system's own message boxes give their buttons.
inline constexpr Keyword kButtonRows[] = {
    {"", 0}, {"ok", 1}, {"cancel", 2}, {"abort", 3}, {"retry", 4}, {"ignore", 5}, {"yes", 6}, {"no", 7},
};
inline constexpr KeywordTable kButtonWords{kButtonRows};

// Control id of a button word: "ok" .. "no" in any letter case, or the digits that `text` begins with (32
// bits of their value, whatever follows them). "" is 0, the dialog's default button. Nothing for any
// other text.
std::optional<std::uint32_t> ButtonOf(std::string_view text);

}  // namespace wfinfo
