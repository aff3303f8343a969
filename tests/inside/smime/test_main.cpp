// Starts the tests of the S/MIME family from inside.
#include <gmock/gmock.h>

#include <string>

#include "tests/inside/smime/support.h"
#include "tests/inside/smime/tool.h"

int main(int argument_count, char** arguments) {
  wfinfo_test::UseThisModule();
  if (argument_count > 2 && std::string(arguments[1]) == "tool") {
    return wfinfo_test::RunTool(argument_count - 2, arguments + 2);
  }
  testing::InitGoogleMock(&argument_count, arguments);
  return RUN_ALL_TESTS();
}
