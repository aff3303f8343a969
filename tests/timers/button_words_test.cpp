#include "src/timers/button_words.h"

#include <gtest/gtest.h>

namespace wfinfo {
namespace {

TEST(ButtonWords, WordsDigitsAndNothing) {
  const struct {
    std::string_view text;
    std::optional<std::uint32_t> id;
    const char* why;
  } cases[] = {
      {"", 0, "the default button"},
      {"ok", 1, "word"},
      {"cancel", 2, "word"},
      {"abort", 3, "word"},
      {"retry", 4, "word"},
      {"ignore", 5, "word"},
      {"yes", 6, "word"},
      {"no", 7, "word"},
      {"YES", 6, "letter case does not count"},
      {"iGnOrE", 5, "letter case does not count"},
      {"7", 7, "digits"},
      {"0", 0, "digits"},
      {"007", 7, "leading zeros are decimal"},
      {"40365", 40365, "digits"},
      {"12ok", 12, "what follows the digits does not count"},
      {"1 2", 1, "what follows the digits does not count"},
      {"4294967295", 4294967295U, "32 bits"},
      {"4294967298", 2, "32 bits of a longer number"},
      {" ok", std::nullopt, "no blanks before a word"},
      {"ok ", std::nullopt, "nor behind"},
      {"okay", std::nullopt, "whole words only"},
      {"y", std::nullopt, "whole words only"},
      {"-1", std::nullopt, "no signs"},
      {"+1", std::nullopt, "no signs"},
      {" 7", std::nullopt, "no blanks before digits"},
      {"\x82\x56", std::nullopt, "a full-width digit"},
      {"\x82\x8F\x82\x8B", std::nullopt, "full-width letters"},
  };
  for (const auto& row : cases) EXPECT_EQ(ButtonOf(row.text), row.id) << row.text << ": " << row.why;
}

}  // namespace
}  // namespace wfinfo
