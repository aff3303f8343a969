// Starts the tests of the OpenPGP runner from inside.
#include <gmock/gmock.h>

#include "src/bridge/module_win.h"

int main(int argument_count, char** arguments) {
  wfinfo::g_hInstance = GetModuleHandleA(nullptr);  // the dialogs are in this program
  testing::InitGoogleMock(&argument_count, arguments);
  return RUN_ALL_TESTS();
}
