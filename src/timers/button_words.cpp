#include "src/timers/button_words.h"

#include "src/text/ascii.h"

namespace wfinfo {

std::optional<std::uint32_t> ButtonOf(std::string_view text) {
  if (const Keyword* const row = FindKeyword(kButtonWords, text))
    return static_cast<std::uint32_t>(row->code);
  if (!IsDigit(text.front())) return std::nullopt;
  std::uint32_t id = 0;
  for (const char letter : text) {
    if (!IsDigit(letter)) break;
    id = id * 10 + static_cast<std::uint32_t>(letter - '0');
  }
  return id;
}

}  // namespace wfinfo
