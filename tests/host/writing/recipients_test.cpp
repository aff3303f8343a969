// Who is to get a mail.
#include "host/writing/recipients.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

TEST(UnreadableRecipient, IsTheFirstEntryThatNamesNoAddress) {
  const struct {
    const char* list;
    const char* expected;
    const char* why;
  } cases[] = {
      {"", "", "nobody"},
      {"a@x, B <b@x>, <c@x>", "", "addresses in every form"},
      {"Doe, John <j@x>", "", "a name that nobody quoted"},
      {"undisclosed-recipients:;, Team: ;", "", "empty groups"},
      {"Team: a@x, b@x;", "", "a group"},
      {"nobody", "nobody", "a name alone"},
      {"a@x, Alice", "Alice", "behind an address"},
      {"Alice, a@x", "Alice", "in front of one that is not its own"},
      {"Bob <bob>", "Bob <bob>", "brackets without an address"},
      {"\"Bob @ work\" <bob>", "\"Bob @ work\" <bob>", "the name's sign is none of an address"},
      {"Bob <>", "Bob <>", "empty brackets"},
      {"a@x, <broken", "<broken", "an open bracket"},
      {"bob@", "bob@", "nothing behind the sign"},
      {"<@x>", "<@x>", "nothing in front of it"},
      {"a@b@c", "a@b@c", "two signs"},
      {"a b@c.jp", "a b@c.jp", "a blank, outside of quotes and brackets"},
      {"Bob <a b@c.jp>", "Bob <a b@c.jp>", "and inside"},
      {"a@b.jp (c", "a@b.jp (c", "a comment that does not close"},
      {"(a@b.jp)", "(a@b.jp)", "nothing but a comment"},
      {"a@x; b@x", "a@x; b@x", "a semicolon divides nothing"},
      {"a@x (Bob), <b@x> (B), c(d)@x, \"e f@g\"@x, a@[192.0.2.1]", "", "comments, quotes, a number"},
      {"a@x, \xE6\x97\xA5@\xE4\xBE\x8B.jp", "\xE6\x97\xA5@\xE4\xBE\x8B.jp", "encoded it would be none"},
      {"A <a@\xE4\xBE\x8B.jp>", "A <a@\xE4\xBE\x8B.jp>", "a host that is not ASCII"},
      {"\xE6\x97\xA5 <a@x>, \"\xE6\x97\xA5 @\" <b@x>, c@x (\xE6\x97\xA5)", "",
       "names and comments may be anything"},
      {"\"a\\\"b\"@x, =?utf-8?Q?J?= <j@x>, a..b@x", "", "what is seldom, but sent"},
  };
  for (const auto& [list, expected, why] : cases) EXPECT_EQ(UnreadableRecipient(list), expected) << why;
}

TEST(Recipients, AreNamedByAnAddressNotByAGroup) {
  for (const char* list : {"a@x", "B <b@x>", "Team: a@x, b@x;", "nobody, a@x"})
    EXPECT_TRUE(NamesRecipient(list)) << list;
  for (const char* list : {"", "Grp:;", "nobody", "a@", "(a@x)"}) EXPECT_FALSE(NamesRecipient(list)) << list;
}

}  // namespace
}  // namespace wrenfold
