// Starts the tests of the small host's services from inside.
#include <gmock/gmock.h>
#include <windows.h>

int main(int argument_count, char** arguments) {
  testing::InitGoogleMock(&argument_count, arguments);
  // Whoever is asked meets the end of the input, and what is told goes nowhere. gtest has its output already.
  const HANDLE nowhere = CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     nullptr, OPEN_EXISTING, 0, nullptr);
  for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE})
    SetStdHandle(stream, nowhere);
  return RUN_ALL_TESTS();
}
