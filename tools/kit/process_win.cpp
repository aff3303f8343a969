#include "tools/kit/process_win.h"

#include <mutex>

#include "tools/kit/text_win.h"

namespace kit {
namespace {

constexpr DWORD kEndPatienceMs = 5000;
constexpr UINT kEndedByTheKit = 0x4B;

HANDLE g_stop = nullptr;
std::mutex g_starting;  // no other program inherits the files of this one

// Quoted as CommandLineToArgvW and the C runtime read it.
std::wstring Quoted(const std::wstring& word) {
  if (!word.empty() && word.find_first_of(L" \t\"") == word.npos) return word;
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t unit : word) {
    if (unit == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = unit == L'\\' ? backslashes + 1 : 0;
    quoted += unit;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

HANDLE OpenForChild(const std::wstring& path, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited,
                     disposition, 0, nullptr);
}

// Ends all that is in it when it is closed, also when the kit itself is ended.
HANDLE MakeJob() {
  const HANDLE job = CreateJobObjectW(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

struct Files {
  std::wstring in, out, err;
};

// False when the program could not be started; the job is its own.
bool Launch(const Start& start, const Files& files, HANDLE job, PROCESS_INFORMATION& process) {
  const std::lock_guard lock(g_starting);
  STARTUPINFOW how{};
  how.cb = sizeof how;
  how.dwFlags = STARTF_USESTDHANDLES;
  how.hStdInput = start.input.empty() ? OpenForChild(L"NUL", GENERIC_READ, OPEN_EXISTING)
                                      : OpenForChild(files.in, GENERIC_READ, OPEN_EXISTING);
  how.hStdOutput = OpenForChild(files.out, GENERIC_WRITE, CREATE_ALWAYS);
  how.hStdError = start.errors_apart ? OpenForChild(files.err, GENERIC_WRITE, CREATE_ALWAYS) : how.hStdOutput;
  std::wstring line = CommandLine(start.program, start.arguments);
  // A group of its own: Ctrl+C is the kit's to judge.
  const BOOL started = CreateProcessW(start.program.c_str(), line.data(), nullptr, nullptr, TRUE,
                                      CREATE_SUSPENDED | CREATE_NEW_PROCESS_GROUP, nullptr,
                                      start.folder.c_str(), &how, &process);
  const DWORD error = GetLastError();
  if (started) {
    AssignProcessToJobObject(job, process.hProcess);
    ResumeThread(process.hThread);
    CloseHandle(process.hThread);
  }
  CloseHandle(how.hStdInput);
  if (start.errors_apart) CloseHandle(how.hStdError);
  CloseHandle(how.hStdOutput);
  SetLastError(error);
  return started != FALSE;
}

std::string TakeFile(const std::wstring& path) {
  std::string contents = ReadFileAt(path).value_or("");
  DeleteFileW(path.c_str());
  return contents;
}

}  // namespace

void SetStopEvent(HANDLE event) { g_stop = event; }

std::wstring CommandLine(const std::wstring& program, const std::vector<std::wstring>& arguments) {
  std::wstring line = L"\"" + program + L"\"";
  for (const std::wstring& argument : arguments) line += L" " + Quoted(argument);
  return line;
}

Ended Run(const Start& start, const std::wstring& scratch, const std::wstring& name) {
  const Files files{scratch + L"\\" + name + L".in", scratch + L"\\" + name + L".out",
                    scratch + L"\\" + name + L".err"};
  if (!start.input.empty()) WriteFileAt(files.in, start.input);
  Ended ended;
  const HANDLE job = MakeJob();
  PROCESS_INFORMATION process{};
  ended.started = Launch(start, files, job, process);
  if (!ended.started) {
    ended.errors = "error " + std::to_string(GetLastError());
  } else {
    const HANDLE waited[] = {process.hProcess, g_stop};
    const DWORD woken = WaitForMultipleObjects(g_stop != nullptr ? 2 : 1, waited, FALSE,
                                               static_cast<DWORD>(start.seconds) * 1000);
    ended.hung = woken == WAIT_TIMEOUT;
    ended.stopped = woken == WAIT_OBJECT_0 + 1;
    if (woken != WAIT_OBJECT_0) TerminateProcess(process.hProcess, kEndedByTheKit);
    WaitForSingleObject(process.hProcess, kEndPatienceMs);
    DWORD code = 0;
    GetExitCodeProcess(process.hProcess, &code);
    ended.code = code;
    CloseHandle(process.hProcess);
  }
  TerminateJobObject(job, kEndedByTheKit);
  CloseHandle(job);
  ended.output = TakeFile(files.out);
  if (start.errors_apart) ended.errors += TakeFile(files.err);
  DeleteFileW(files.in.c_str());
  return ended;
}

}  // namespace kit
