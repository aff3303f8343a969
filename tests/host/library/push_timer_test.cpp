// How long a box is left to the auto-push timer that a macro has set.
#include "host/library/push_timer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace wrenfold {
namespace {

using macro::Value;

constexpr std::uint64_t kNow = 100'000;

TEST(PushTimer, ABoxIsLeftToItForItsDelay) {
  struct Call {
    const char* name;
    std::int64_t delay;
    std::int64_t result;
  };
  const struct {
    std::vector<Call> calls;
    std::uint64_t after;  // milliseconds
    std::uint64_t patience;
    const char* why;
  } cases[] = {
      {{}, 0, 0, "none is set"},
      {{{"SetAutoPushTimerMilli", 300, 1}}, 0, 1300, "its delay, and time for its ticks"},
      {{{"SetAutoPushTimerMilli", 300, 1}}, 1400, 1300, "it waits half a second for a box"},
      {{{"SetAutoPushTimerMilli", 300, 1}}, 1600, 0, "it has given up"},
      {{{"SetAutoPushTimer", 2, 1}}, 2500, 3000, "in seconds"},
      {{{"SetAutoPushTimerEver", 0x1234, 1}}, 1'000'000, 1000, "the first parameter is a window"},
      {{{"SetAutoPushTimerMilli", 300, 0}}, 0, 0, "it was refused"},
      {{{"SetAutoPushTimer", 2, 1}, {"SetAutoPushTimerMilli", 3, 0}},
       0,
       0,
       "a refused one ends the one before"},
      {{{"SetAutoPushTimer", 2, 1}, {"StopAutoPushTimer", 0, 0}}, 0, 0, "it was stopped"},
      {{{"SetAutoPushTimer", 2, 1}, {"StopAutoPushTimer2", 0, 0}}, 0, 0, "it was stopped"},
      {{{"SetAutoPushTimer", 2, 1}, {"MailCount", 0, 0}}, 0, 3000, "another export"},
  };
  for (const auto& c : cases) {
    PushTimer timer;
    for (const Call& call : c.calls) {
      const Value delay(call.delay);
      timer.Called(call.name, std::span(&delay, 1), Value(call.result), kNow);
    }
    EXPECT_EQ(timer.PatienceAt(kNow + c.after), c.patience) << c.why;
  }
}

}  // namespace
}  // namespace wrenfold
