#include "src/libraries/library_name.h"

#include <gtest/gtest.h>

namespace wfinfo {
namespace {

TEST(LibraryName, HasABackslashThatIsNoHalfOfACharacter) {
  const struct {
    const char* name;
    bool has;
    const char* why;
  } cases[] = {
      {"", false, "empty"},
      {"user32.dll", false, "a name alone"},
      {"C:\\a.dll", true, "a path"},
      {"\\", true, "nothing else"},
      {"\x95\x5C.dll", false, "the second byte of a kanji"},
      {"\x95\x5C\\a.dll", true, "a backslash behind that kanji"},
      {"\xB1\\a.dll", true, "behind a half-width kana, which is no lead byte"},
  };
  for (const auto& c : cases) EXPECT_EQ(HasBackslash(c.name), c.has) << c.why;
}

}  // namespace
}  // namespace wfinfo
