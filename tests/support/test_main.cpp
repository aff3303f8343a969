// Starts the tests of the exports.
#include <gmock/gmock.h>

int main(int argument_count, char** arguments) {
  testing::InitGoogleMock(&argument_count, arguments);
  return RUN_ALL_TESTS();
}
