#include "src/openpgp/files_win.h"

#include <algorithm>

#include "src/openpgp/command_line.h"
#include "src/openpgp/system_win.h"

namespace wfinfo {
namespace {

// Patience with files that are still in use: five seconds for all that are deleted together. A console lets
// go of them within a tenth of a second, on a busy system within one or two; clear text that stays on the
// disk would be worse than the wait.
constexpr int kDeleteTries = 200;
constexpr DWORD kDeletePauseMs = 25;

constexpr DWORD kLargestPiece = 1u << 30;  // one call moves fewer than 4 GiB

}  // namespace

PgpFiles::PgpFiles(bool with_signed_data) : with_signed_data_(with_signed_data) {
  const DWORD length = GetCurrentDirectoryW(MAX_PATH - 1, folder_);
  if (length == 0 || length >= MAX_PATH - 1) {
    folder_[0] = L'\0';
  } else if (folder_[length - 1] != L'\\') {
    folder_[length] = L'\\';
    folder_[length + 1] = L'\0';
  }
}

PgpFiles::~PgpFiles() {
  if (!begun_) return;
  // An encryption has no signed data: its place names another file twice.
  DeletePatiently({kPgpInput, with_signed_data_ ? kPgpSignedData : kPgpInput, kPgpOutput, kPgpMessages});
}

void PgpFiles::Begin() {
  begun_ = true;
  if (DeletePatiently({kPgpOutput})) return;
  has_stale_output_ = !Open(kPgpOutput, GENERIC_WRITE, TRUNCATE_EXISTING);
}

PgpFiles::Path PgpFiles::PathOf(const char* name) const {
  Path path;
  wchar_t* out = std::copy_n(folder_, lstrlenW(folder_), path.text);
  while (*name != '\0') *out++ = static_cast<wchar_t>(*name++);  // the names are ASCII
  *out = L'\0';
  return path;
}

UniqueFile PgpFiles::Create(const char* name, bool inheritable) const {
  SECURITY_ATTRIBUTES security = {sizeof security, nullptr, inheritable};
  return UniqueFile(g_pgpSystem.create_file(PathOf(name).text, GENERIC_READ | GENERIC_WRITE,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE, &security, CREATE_ALWAYS,
                                            FILE_ATTRIBUTE_ARCHIVE, nullptr));
}

UniqueFile PgpFiles::Open(const char* name, DWORD access, DWORD disposition) const {
  return UniqueFile(g_pgpSystem.create_file(PathOf(name).text, access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                            nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

UniqueFile PgpFiles::OpenOutput() const {
  return has_stale_output_ ? UniqueFile() : Open(kPgpOutput, GENERIC_READ, OPEN_EXISTING);
}

bool PgpFiles::Write(const char* name, std::string_view contents) const {
  const UniqueFile file = Create(name, false);
  if (!file) return false;
  while (!contents.empty()) {
    DWORD written = 0;
    const auto piece = static_cast<DWORD>(std::min<std::size_t>(contents.size(), kLargestPiece));
    if (!g_pgpSystem.write_file(file.get(), contents.data(), piece, &written, nullptr)) return false;
    if (written == 0) return SetLastError(ERROR_DISK_FULL), false;
    contents.remove_prefix(written);
  }
  return true;
}

bool PgpFiles::Delete(const char* name) const {
  const Path path = PathOf(name);
  if (g_pgpSystem.delete_file(path.text)) return true;
  const DWORD error = GetLastError();
  if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return true;
  if (error == ERROR_SHARING_VIOLATION) return false;
  const DWORD attributes = GetFileAttributesW(path.text);
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0 &&
      SetFileAttributesW(path.text, FILE_ATTRIBUTE_NORMAL) && g_pgpSystem.delete_file(path.text)) {
    return true;
  }
  // A file that is on its way out already denies access too: its name does not open any more.
  return !Open(name, GENERIC_READ, OPEN_EXISTING) && GetLastError() != ERROR_SHARING_VIOLATION;
}

bool PgpFiles::DeletePatiently(std::initializer_list<const char*> names) const {
  for (int tries = patient_ ? kDeleteTries : 1;; Sleep(kDeletePauseMs)) {
    bool all_gone = true;
    for (const char* const name : names) all_gone &= Delete(name);
    if (all_gone || --tries == 0) return all_gone;
  }
}

UniqueLocal ReadWholeFile(HANDLE file, std::size_t spare) {
  LARGE_INTEGER size;
  if (!g_pgpSystem.get_file_size(file, &size)) return {};
  const auto length = static_cast<std::size_t>(size.QuadPart);
  UniqueLocal block(g_pgpSystem.allocate(LPTR, length + spare));
  if (!block || SetFilePointer(file, 0, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER) return {};
  for (std::size_t at = 0; at < length;) {
    DWORD read = 0;
    const auto piece = static_cast<DWORD>(std::min<std::size_t>(length - at, kLargestPiece));
    if (!g_pgpSystem.read_file(file, static_cast<char*>(block.get()) + at, piece, &read, nullptr)) return {};
    if (read == 0) break;  // shorter than it said
    at += read;
  }
  return block;
}

}  // namespace wfinfo
