// What a runner of tests must tell apart.
#include <gtest/gtest.h>
#include <windows.h>

namespace {

TEST(Planted, Passes) {}

TEST(Planted, Fails) {
  char own[MAX_PATH];
  GetModuleFileNameA(nullptr, own, sizeof own);
  EXPECT_EQ(1 + 1, 3) << "<b>planted</b> & told in " << own;
}

TEST(Planted, Skips) { GTEST_SKIP() << "there is a reason"; }

// Beside a program of its own, which must not outlive it.
TEST(Planted, Hangs) {
  STARTUPINFOA how{};
  how.cb = sizeof how;
  PROCESS_INFORMATION process{};
  char line[] = "cmd.exe /c pause";
  CreateProcessA(nullptr, line, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &how, &process);
  Sleep(INFINITE);
}

TEST(Planted, Crashes) { *static_cast<volatile int*>(nullptr) = 1; }

TEST(Planted, EndsWithoutAWord) { ExitProcess(0); }

// What the kit has to put back.
TEST(Planted, ChangesTheSettings) {
  const DWORD value = 7;
  EXPECT_EQ(RegSetKeyValueA(HKEY_CURRENT_USER, "Software\\Quenby\\Wrenfold\\Config", "MapiSend", REG_DWORD,
                            &value, sizeof value),
            ERROR_SUCCESS);
}

TEST(Planted, LeavesAFileInTheTemporaryFolder) {
  char folder[MAX_PATH];
  GetTempPathA(sizeof folder, folder);
  const std::string path = std::string(folder) + "planted.txt";
  const HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  EXPECT_NE(file, INVALID_HANDLE_VALUE);
  CloseHandle(file);
}

}  // namespace
