#include "src/openpgp/child_process_win.h"

#include <cstring>
#include <cwchar>
#include <string_view>

#include "src/openpgp/system_win.h"

namespace wfinfo {

WipedBuffer::WipedBuffer(std::size_t size)
    : size_(size), block_(static_cast<char*>(g_pgpSystem.allocate(LMEM_FIXED, size))) {}

WipedBuffer::~WipedBuffer() {
  if (block_ == nullptr) return;
  const DWORD last_error = GetLastError();
  SecureZeroMemory(block_, size_);
  g_pgpSystem.free(block_);
  SetLastError(last_error);
}

namespace {

// The path in the system's code page; false when that does not hold all of it. A letter that only comes near
// would name another folder.
bool ConvertExactly(const wchar_t* path, char (&converted)[MAX_PATH]) {
  wchar_t back[MAX_PATH];
  return WideCharToMultiByte(CP_ACP, 0, path, -1, converted, MAX_PATH, nullptr, nullptr) != 0 &&
         MultiByteToWideChar(CP_ACP, 0, converted, -1, back, MAX_PATH) != 0 && std::wcscmp(path, back) == 0;
}

}  // namespace

GnupgProgram FindGnupg() {
  constexpr struct {
    const char* name;
    const wchar_t* wide_name;
  } kNames[] = {{"gpg.exe", L"gpg.exe"}, {"gpg2.exe", L"gpg2.exe"}};
  GnupgProgram program = {};
  program.name = kNames[0].name;
  for (const auto& [name, wide_name] : kNames) {
    wchar_t path[MAX_PATH];
    const DWORD length = SearchPathW(nullptr, wide_name, nullptr, MAX_PATH, path, nullptr);
    if (length == 0) continue;
    program.name = name;
    if (length >= MAX_PATH || !ConvertExactly(path, program.path)) program.path[0] = '\0';
    break;
  }
  return program;
}

bool PassPhrasePipe::Open(bool private_write_end, std::size_t pass_phrase_length) {
  constexpr std::size_t kSmallPipe = 4096;
  const auto size = static_cast<DWORD>(kSmallPipe + pass_phrase_length);
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (!g_pgpSystem.create_pipe(&read, &write, &inherited, size)) return false;
  read_end.reset(read);
  write_end.reset(write);
  if (!private_write_end) return true;
  const HANDLE process = GetCurrentProcess();
  HANDLE copy = nullptr;
  if (!g_pgpSystem.duplicate_handle(process, write, process, &copy, 0, FALSE, DUPLICATE_SAME_ACCESS))
    return false;
  write_end.reset(copy);
  return true;
}

void PassPhrasePipe::Send(const char* pass_phrase) {
  // Straight from the caller's memory: no copy to wipe.
  const std::string_view pieces[] = {pass_phrase != nullptr ? pass_phrase : "", "\r\n"};
  for (const std::string_view piece : pieces) {
    DWORD written;
    if (!piece.empty()) {
      g_pgpSystem.write_file(write_end.get(), piece.data(), static_cast<DWORD>(piece.size()), &written,
                             nullptr);
    }
  }
  write_end.reset();
}

namespace {

UniqueHandle Start(const char* application, char* command_line, DWORD flags, const STARTUPINFOA& startup) {
  STARTUPINFOA info = startup;
  PROCESS_INFORMATION child = {};
  if (!g_pgpSystem.create_process(application, command_line, nullptr, nullptr, TRUE, flags, nullptr, nullptr,
                                  &info, &child)) {
    return {};
  }
  const UniqueHandle thread(child.hThread);
  return UniqueHandle(child.hProcess);
}

UniqueHandle StartInstalledPgp(const char* command_line, const STARTUPINFOA& startup) {
  char windows[MAX_PATH] = {};
  GetWindowsDirectoryA(windows, sizeof windows);
  const WipedBuffer installed(WriteInstalledCommandLine(windows, command_line, nullptr) + 1);
  if (installed.get() == nullptr) return {};
  WriteInstalledCommandLine(windows, command_line, installed.get());
  return Start(nullptr, installed.get(), DETACHED_PROCESS, startup);
}

}  // namespace

UniqueHandle StartPgpProgram(const PgpCommand& command, const char* gnupg_path, HANDLE input,
                             HANDLE messages) {
  const std::size_t size = WriteCommandLine(command, nullptr) + 1;
  // CreateProcess may write to the command line: what is tried next gets one of its own.
  const WipedBuffer line(size);
  const WipedBuffer copy(size);
  if (line.get() == nullptr || copy.get() == nullptr)
    return SetLastError(ERROR_NOT_ENOUGH_MEMORY), UniqueHandle();
  WriteCommandLine(command, line.get());
  std::memcpy(copy.get(), line.get(), size);
  STARTUPINFOA startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW | STARTF_USESTDHANDLES;
  startup.wShowWindow = SW_HIDE;
  startup.hStdInput = input;
  startup.hStdOutput = messages;
  startup.hStdError = command.gnupg ? messages : nullptr;
  if (command.gnupg)
    return Start(*gnupg_path != '\0' ? gnupg_path : nullptr, copy.get(), CREATE_NEW_CONSOLE, startup);
  UniqueHandle process = Start(nullptr, copy.get(), DETACHED_PROCESS, startup);
  if (!process && GetLastError() == ERROR_FILE_NOT_FOUND) process = StartInstalledPgp(line.get(), startup);
  return process;
}

}  // namespace wfinfo
