// Double clicks, dropped files and hidden starts.
#include "host/session/start_manner.h"

#include <gtest/gtest.h>

namespace wrenfold {
namespace {

TEST(StartManner, IsSeenFromConsoleArgumentsAndWindow) {
  struct Case {
    StartFacts facts;
    StartManner expected;
    const char* why;
  };
  const Case kCases[] = {
      {{false, false, 1, false}, StartManner::kWindow, "a double click"},
      {{true, false, 1, false}, StartManner::kStayOpen, "files dropped on it"},
      {{false, false, 1, true},
       StartManner::kPlain,
       "the library starts it, from a program without a console"},
      {{false, false, 2, true}, StartManner::kPlain, "the library starts it, from a program with a console"},
      {{false, false, 2, false}, StartManner::kPlain, "typed in a shell"},
      {{true, false, 2, false}, StartManner::kPlain, "typed with a file"},
      {{true, true, 1, false}, StartManner::kPlain, "a task with options: nobody presses a key"},
      {{true, false, 1, true}, StartManner::kPlain, "hidden with a file: nobody sees the console"},
      {{false, false, 0, false}, StartManner::kPlain, "no console, or none that tells"},
  };
  for (const Case& c : kCases) EXPECT_EQ(MannerOf(c.facts), c.expected) << c.why;
}

}  // namespace
}  // namespace wrenfold
