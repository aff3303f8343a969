// Find packs of the small host.
#include <gtest/gtest.h>

#include "host/mail/find_pack.h"

namespace wrenfold {
namespace {

constexpr std::string_view kMail = "From: Alice\r\nX: one\r\nX: Two\r\nSubject: Minutes\r\n\r\nbody Text\r\n";

TEST(FindPack, AllConditionsMustHold) {
  struct Case {
    const char* pack;
    bool found;
    const char* why;
  };
  const Case cases[] = {
      {"", true, "no condition"},
      {"Subject: minutes", true, "no case"},
      {"subject:MINUTES\r\nfrom: ali\n\n", true, "both; empty lines"},
      {"Subject: minutes\nFrom: bob", false, "the second does not hold"},
      {"X: two", true, "any occurrence"},
      {"Y: two", false, "no such header"},
      {"Y:", false, "no such header, whatever it holds"},
      {"X:", true, "the header is there"},
      {"Body: text", true, ""},
      {"Body: Alice", false, "that stands in a header"},
      {"Any: alice", true, ""},
      {"text", true, "no colon: anywhere"},
      {"nothing", false, ""},
  };
  for (const Case& c : cases) EXPECT_EQ(Finds(c.pack, kMail), c.found) << c.pack << " " << c.why;
  EXPECT_TRUE(Finds("Body: x", "\r\nx")) << "a mail without headers";
  EXPECT_FALSE(Finds("Body: x", "X: x")) << "a mail without a body";
}

TEST(FindPack, TellsAPlaceThatIsNone) {
  EXPECT_EQ(NoPlaceOf("Subject: a\nMeeting at 10:30\nBody: b"), "Meeting at 10:30");
  EXPECT_EQ(NoPlaceOf(": text"), ": text");
  for (const char* pack : {"", "text", "Subject: 10:30", "X-Any-Header: a\r\n\r\nAny: b c: d", "body:"})
    EXPECT_EQ(NoPlaceOf(pack), "") << pack;
}

TEST(HoldsText, BeginsAtCharacters) {
  EXPECT_TRUE(HoldsText("\x83\x5C\x83\x65", "\x83\x65"));
  EXPECT_FALSE(HoldsText("\x83\x5C", "\\")) << "a second byte is no backslash";
  EXPECT_FALSE(HoldsText("\x82\x61", "A")) << "nor a letter";
  EXPECT_FALSE(HoldsText("\x82\x61", "\x82\x41")) << "second bytes have no case";
  EXPECT_TRUE(HoldsText("", ""));
  EXPECT_FALSE(HoldsText("ab", "abc"));
}

}  // namespace
}  // namespace wrenfold
