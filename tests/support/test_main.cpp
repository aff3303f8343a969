// Starts the tests of the exports.
#include <gmock/gmock.h>

#include "tests/support/came_up.h"

int main(int argument_count, char** arguments) {
  wfinfo_test::TellCameUp();
  testing::InitGoogleMock(&argument_count, arguments);
  return RUN_ALL_TESTS();
}
