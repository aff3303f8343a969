// Starts the tests of the S/MIME family from inside.
#include <gmock/gmock.h>

#include "smime/support.h"

int main(int argument_count, char** arguments) {
  wfinfo_test::UseThisModule();
  testing::InitGoogleMock(&argument_count, arguments);
  return RUN_ALL_TESTS();
}
