// Headers chosen to be shown.
#include <gtest/gtest.h>

#include "host/mail/custom_header.h"

namespace wrenfold {
namespace {

TEST(CustomHeaders, ShowWhatIsChosen) {
  constexpr std::string_view kBlock =
      "Received: by a\r\nFrom: Alice\r\nTo: b,\r\n c\r\nSubject: s\r\nDKIM-Signature: x\r\nReceived: by "
      "b\r\nDate: d\r\nno colon\r\n";
  struct Case {
    const char* spec;
    const char* expected;
    const char* why;
  };
  const Case cases[] = {
      {"Subject, From", "Subject: s\r\nFrom: Alice\r\n", "in the order of the names"},
      {"subject=Betreff", "Betreff: s\r\n", "another name in front"},
      {"To:", "To: b,\r\n c\r\n", "folds stay; a colon does not matter"},
      {"received", "Received: by a\r\nReceived: by b\r\n", "each of them"},
      {"From, *, -Received, -DKIM-*", "From: Alice\r\nTo: b,\r\n c\r\nSubject: s\r\nDate: d\r\n",
       "all others but some"},
      {"", "From: Alice\r\nTo: b,\r\n c\r\nSubject: s\r\nDate: d\r\n", "the usual ones"},
      {"None, From, From", "From: Alice\r\n", "no header twice"},
      {",,", "", "no name at all"},
  };
  for (const Case& c : cases) EXPECT_EQ(CustomHeaders(c.spec, kBlock), c.expected) << c.why;
  EXPECT_EQ(CustomHeaders("*", ""), "");
}

}  // namespace
}  // namespace wrenfold
