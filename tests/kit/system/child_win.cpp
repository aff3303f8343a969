#include "tests/kit/system/child_win.h"

#include "tests/support/temp_folder_win.h"

namespace system_tests {
namespace {

bool Launch(std::string line, HANDLE output, PROCESS_INFORMATION& process) {
  STARTUPINFOA how{};
  how.cb = sizeof how;
  how.dwFlags = STARTF_USESTDHANDLES;
  how.hStdOutput = how.hStdError = output;
  return CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                        &how, &process) != FALSE;
}

HANDLE OutputFile(const std::string& path) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                     CREATE_ALWAYS, 0, nullptr);
}

}  // namespace

Finished RunChild(const std::string& command_line, unsigned seconds) {
  const wfinfo_test::TempFolder folder;
  const HANDLE output = OutputFile(folder.Path("output"));
  Finished finished;
  PROCESS_INFORMATION process{};
  finished.started = Launch(command_line, output, process);
  CloseHandle(output);
  if (!finished.started) return finished;
  if (WaitForSingleObject(process.hProcess, seconds * 1000) != WAIT_OBJECT_0) {
    TerminateProcess(process.hProcess, WAIT_TIMEOUT);
    WaitForSingleObject(process.hProcess, 5000);
  }
  GetExitCodeProcess(process.hProcess, &finished.code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  finished.output = folder.Read("output");
  return finished;
}

Companion::Companion(const std::string& command_line) {
  if (!Launch(command_line, nullptr, process_)) process_ = {};
}

Companion::~Companion() {
  if (process_.hProcess == nullptr) return;
  TerminateProcess(process_.hProcess, 0);
  WaitForSingleObject(process_.hProcess, 5000);
  CloseHandle(process_.hThread);
  CloseHandle(process_.hProcess);
}

}  // namespace system_tests
