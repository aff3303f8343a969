// What a macro may write for the button that the auto-push timer presses.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace wfinfo {

// Control id of a button word: "ok" .. "no" in any letter case, or the digits that `text` begins with (32
// bits of their value, whatever follows them). "" is 0, the dialog's default button. Nothing for any
// other text.
std::optional<std::uint32_t> ButtonOf(std::string_view text);

}  // namespace wfinfo
