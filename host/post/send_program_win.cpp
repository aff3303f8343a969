#include "host/post/send_program_win.h"

#include <windows.h>

#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "host/base/paths.h"
#include "host/base/system_errors.h"
#include "host/base/time_stamp_win.h"
#include "host/charset/charsets.h"
#include "host/files/whole_file.h"
#include "host/post/program_line.h"

namespace wrenfold {
namespace {

using wfinfo::UniqueHandle;

constexpr DWORD kMostMs = 10 * 60 * 1000;  // as long as RFC 5321 lets a client wait for a server's last word

// A handle that the child inherits; null when there is none.
UniqueHandle Inheritable(HANDLE handle) {
  HANDLE copy = nullptr;
  if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return UniqueHandle();
  DuplicateHandle(GetCurrentProcess(), handle, GetCurrentProcess(), &copy, 0, TRUE, DUPLICATE_SAME_ACCESS);
  return UniqueHandle(copy);
}

// Only these handles go to the child, whatever else in this process can be inherited.
class HandleList {
 public:
  explicit HandleList(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    bytes_.resize(size);
    if (!InitializeProcThreadAttributeList(list(), 1, 0, &size)) return;
    is_made_ = true;
    UpdateProcThreadAttribute(list(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                              handles_.size() * sizeof(HANDLE), nullptr, nullptr);
  }
  ~HandleList() {
    if (is_made_) DeleteProcThreadAttributeList(list());
  }
  HandleList(const HandleList&) = delete;
  HandleList& operator=(const HandleList&) = delete;

  LPPROC_THREAD_ATTRIBUTE_LIST list() {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(bytes_.data());
  }

 private:
  std::vector<HANDLE> handles_;
  std::vector<char> bytes_;
  bool is_made_ = false;
};

// The mail for the program, which may do with it what it likes. Goes with its holder.
class Copy {
 public:
  explicit Copy(std::string_view mail) {
    std::error_code error;
    path_ = std::filesystem::temp_directory_path(error) / ("wrenfold-" + UniqueNameNow() + ".eml");
    if (error || !WriteWholeFile(path_, mail)) Remove();
  }
  ~Copy() { Remove(); }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;

  const std::filesystem::path& path() const { return path_; }  // "" when there is none

 private:
  void Remove() {
    std::error_code error;
    if (!path_.empty()) std::filesystem::remove(path_, error);
    path_.clear();
  }
  std::filesystem::path path_;
};

// Nobody else can open the file or move it away while this is held: what is sent can be filed then.
wfinfo::UniqueFile Hold(const std::filesystem::path& file) {
  return wfinfo::UniqueFile(CreateFileW(file.c_str(), GENERIC_READ | DELETE, 0, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::string Code(DWORD code) { return std::to_string(code); }

// The child, waited for.
std::optional<std::string> Wait(const UniqueHandle& process, const std::string& name) {
  const DWORD waited = WaitForSingleObject(process.get(), kMostMs);
  if (waited == WAIT_FAILED) {
    return name + " was started, but cannot be waited for, error " + Code(GetLastError()) +
           ": look whether it has sent the mail, which would be sent again";
  }
  if (waited != WAIT_OBJECT_0) {
    TerminateProcess(process.get(), 1);
    WaitForSingleObject(process.get(), INFINITE);
    return name + " did not end within ten minutes";
  }
  DWORD code = 1;
  GetExitCodeProcess(process.get(), &code);
  if (code == 0) return std::nullopt;
  return name + " ended with exit code " + Code(code);
}

// Starts the line with these two handles; its process, or why there is none.
std::variant<UniqueHandle, std::string> Start(const std::string& line, HANDLE in, HANDLE out) {
  HandleList handles({in, out});
  STARTUPINFOEXW start{};
  start.StartupInfo.cb = sizeof start;
  start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  start.StartupInfo.hStdInput = in;
  start.StartupInfo.hStdOutput = start.StartupInfo.hStdError = out;
  start.lpAttributeList = handles.list();
  PROCESS_INFORMATION child{};
  std::u16string wide = Utf8ToWide(line);
  if (!CreateProcessW(nullptr, reinterpret_cast<wchar_t*>(wide.data()), nullptr, nullptr, TRUE,
                      EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr, &start.StartupInfo, &child)) {
    return "error " + Code(GetLastError());
  }
  if (child.hThread != nullptr) CloseHandle(child.hThread);
  return UniqueHandle(child.hProcess);
}

UniqueHandle OpenInherited(const wchar_t* path, DWORD access) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  const HANDLE file =
      CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr);
  return UniqueHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

}  // namespace

wfinfo::UniqueFile ClaimMail(const std::filesystem::path& file) {
  std::filesystem::path claim = file;
  claim += L".sending";
  return wfinfo::UniqueFile(CreateFileW(claim.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                        FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
}

std::optional<std::string> SendWithProgram(const std::string& line, const std::filesystem::path& file,
                                           std::string_view mail) {
  const auto program = ParseProgramLine(line);
  if (!program) return "no program in '" + line + "'";
  const std::string& name = program->arguments[0];
  const wfinfo::UniqueFile held = Hold(file);
  if (!held) return "it is not sent: " + SystemReason(GetLastError());
  const Copy copy(mail);
  if (copy.path().empty()) return "no copy of it can be written for " + name;
  const auto command = SystemLine(*program, PathToUtf8(copy.path()));
  if (!command) return "its name cannot be given to the batch file " + name;
  const UniqueHandle in = OpenInherited(program->wants_file ? L"NUL" : copy.path().c_str(), GENERIC_READ);
  if (!in) return "cannot open it, error " + Code(GetLastError());
  UniqueHandle out = Inheritable(GetStdHandle(STD_ERROR_HANDLE));
  if (!out) out = OpenInherited(L"NUL", GENERIC_WRITE);
  const auto process = Start(*command, in.get(), out.get());
  if (const auto* reason = std::get_if<std::string>(&process)) return "cannot start " + name + ", " + *reason;
  return Wait(std::get<UniqueHandle>(process), name);
}

}  // namespace wrenfold
