// Mails of many programs at once through the system's Simple MAPI, while the host is killed again and again.
//
//   soak_mails SEED MAILS CALLERS HOST        HOST: the whole path of wrenfold.exe
//   soak_mails caller SEED FIRST LAST STEP    one of the callers
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "src/base/unique_win.h"
#include "tests/monkey/dice.h"
#include "tests/soak/caller_win.h"
#include "tests/soak/findings.h"
#include "tests/soak/killer_win.h"

namespace soak {
namespace {

using wfinfo::UniqueHandle;

constexpr std::size_t kLongestLifeMs = 2500;  // of a host that has its frame
constexpr DWORD kPollMs = 10;
constexpr std::size_t kAnyHost = 6;  // one kill of so many takes any host, with a frame or without

// A caller of its own process, whose lines go where ours go.
UniqueHandle StartCaller(const std::string& arguments) {
  char program[MAX_PATH];
  GetModuleFileNameA(nullptr, program, sizeof program);
  std::string command = "\"" + std::string(program) + "\" caller " + arguments;
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = startup.hStdError = GetStdHandle(STD_OUTPUT_HANDLE);
  PROCESS_INFORMATION started{};
  if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                      &started)) {
    Find("a caller could not be started");
    return UniqueHandle();
  }
  CloseHandle(started.hThread);
  return UniqueHandle(started.hProcess);
}

// Waits so long; false when all callers have ended meanwhile.
bool StillRun(const std::vector<HANDLE>& callers, DWORD milliseconds) {
  return WaitForMultipleObjects(static_cast<DWORD>(callers.size()), callers.data(), TRUE, milliseconds) ==
         WAIT_TIMEOUT;
}

// Kills until all of them have ended: hosts that serve, so long after they came up, and some that are starting.
void KillWhileTheyRun(const std::vector<UniqueHandle>& started, unsigned long long seed,
                      const std::string& host) {
  std::vector<HANDLE> callers;
  for (const UniqueHandle& caller : started) callers.push_back(caller.get());
  for (unsigned long long round = 0;; ++round) {
    monkey::Dice dice(~seed, round);
    const bool serves = !dice.OneIn(kAnyHost);
    while (serves && !HasFrame()) {
      if (!StillRun(callers, kPollMs)) return;
    }
    if (!StillRun(callers, static_cast<DWORD>(dice.Below(kLongestLifeMs)))) return;
    KillHost(host, serves);
  }
}

void RunMails(const char* seed, unsigned long long mails, unsigned callers, const std::string& host) {
  std::vector<UniqueHandle> started;
  for (unsigned i = 0; i < callers; ++i) {
    started.push_back(StartCaller(std::string(seed) + " " + std::to_string(i) + " " + std::to_string(mails) +
                                  " " + std::to_string(callers)));
    if (!started.back()) return;
  }
  KillWhileTheyRun(started, Number(seed), host);
  for (const UniqueHandle& caller : started) {
    DWORD code = 1;
    GetExitCodeProcess(caller.get(), &code);
    if (code > 1) Find("a caller ended with " + std::to_string(code));
  }
}

}  // namespace
}  // namespace soak

int main(int count, char** words) {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  if (count == 6 && std::strcmp(words[1], "caller") == 0) {
    soak::SendMails({soak::Number(words[2]), soak::Number(words[3]), soak::Number(words[4]),
                     static_cast<unsigned>(soak::Number(words[5]))});
    return soak::Conclude();
  }
  if (count == 5) {
    soak::RunMails(words[1], soak::Number(words[2]), static_cast<unsigned>(soak::Number(words[3])), words[4]);
    return soak::Conclude();
  }
  std::fputs("usage: soak_mails SEED MAILS CALLERS HOST\n", stderr);
  return 2;
}
