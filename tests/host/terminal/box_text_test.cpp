// What is told of boxes that show while a macro runs.
#include "host/terminal/box_text.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

TEST(BoxText, SaysWhatTheBoxSaysAndHowToGoOn) {
  const ShownBox error{"Error", "The certificate not found.", "OK"};
  const struct {
    ShownBox box;
    BoxFate fate;
    const char* expected;
  } cases[] = {
      {error, BoxFate::kWaits,
       "the box \"Error\" waits: The certificate not found.; press a button, or start again with --yes, "
       "which presses its default one, \"OK\""},
      {error, BoxFate::kPressed,
       "the box \"Error\" showed: The certificate not found.; --yes pressed \"OK\""},
      {{"Choose", "", ""},
       BoxFate::kWaits,
       "the box \"Choose\" waits; press a button, or start again with --yes, which closes it"},
      {{"Choose", "", ""}, BoxFate::kClosed, "the box \"Choose\" showed; --yes closed it"},
      {{"GnuPG", "Waiting.", "Stop"},
       BoxFate::kStands,
       "the box \"GnuPG\" waits: Waiting.; it goes when what it waits for has ended"},
      {{"a\nb\x1B", "c\r\nd\x1B[2J", "x\"y"},
       BoxFate::kPressed,
       "the box \"a\\nb\\x1B\" showed: c\\r\\nd\\x1B[2J; --yes pressed \"x\\\"y\""},
  };
  for (const auto& c : cases) EXPECT_EQ(BoxLine(c.box, c.fate), c.expected);
}

}  // namespace
}  // namespace wrenfold
