#include "tests/soak/killer_win.h"

// clang-format off
#include <windows.h>
#include <tlhelp32.h>  // needs the one above
// clang-format on

#include "src/base/unique_win.h"
#include "src/bridge/host_protocol.h"
#include "tests/soak/findings.h"

namespace soak {
namespace {

using wfinfo::UniqueHandle;

constexpr DWORD kRights = PROCESS_TERMINATE | PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE;
constexpr DWORD kDeathWaitMs = 10000;

// The process, if it runs this very program: others of its name are not ours.
UniqueHandle OpenIfOurs(DWORD id, const std::string& program) {
  UniqueHandle process(OpenProcess(kRights, FALSE, id));
  char path[MAX_PATH * 4] = "";
  DWORD size = sizeof path;
  if (!process || !QueryFullProcessImageNameA(process.get(), 0, path, &size) ||
      lstrcmpiA(path, program.c_str()) != 0)
    process.reset();
  return process;
}

DWORD OwnerOfFrame() {
  DWORD id = 0;
  GetWindowThreadProcessId(FindWindowA(wfinfo::kFrameClass, nullptr), &id);
  return id;
}

DWORD AnyHost(const std::string& program) {
  const std::string name = program.substr(program.find_last_of('\\') + 1);
  const UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  PROCESSENTRY32 entry;
  entry.dwSize = sizeof entry;
  for (BOOL more = Process32First(snapshot.get(), &entry); more;
       more = Process32Next(snapshot.get(), &entry)) {
    if (lstrcmpiA(entry.szExeFile, name.c_str()) == 0) return entry.th32ProcessID;
  }
  return 0;
}

}  // namespace

bool HasFrame() { return FindWindowA(wfinfo::kFrameClass, nullptr) != nullptr; }

bool KillHost(const std::string& program, bool with_frame) {
  const DWORD id = with_frame ? OwnerOfFrame() : AnyHost(program);
  const UniqueHandle process = OpenIfOurs(id, program);
  if (!process) return false;
  const ULONGLONG from = GetTickCount64();
  TerminateProcess(process.get(), 9);
  WaitForSingleObject(process.get(), kDeathWaitMs);
  Print("kill: at " + std::to_string(from) + " to " + std::to_string(GetTickCount64()) + " process " +
        std::to_string(id));
  return true;
}

}  // namespace soak
