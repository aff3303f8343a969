#include "src/timers/button_words.h"

#include "src/commands/keyword_table.h"
#include "src/text/ascii.h"

namespace wfinfo {
namespace {

// The ids that the system's own message boxes give their buttons.
constexpr Keyword kButtons[] = {
    {"", 0}, {"ok", 1}, {"cancel", 2}, {"abort", 3}, {"retry", 4}, {"ignore", 5}, {"yes", 6}, {"no", 7},
};
constexpr KeywordTable kButtonWords = {kButtons};

}  // namespace

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
