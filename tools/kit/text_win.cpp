#include "tools/kit/text_win.h"

namespace kit {
namespace {

// Calls `act` with the name and the attributes of each entry of a folder; false as soon as it does.
template <class Act>
bool ForEachIn(const std::wstring& folder, Act act) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  bool good = true;
  do {
    const std::wstring_view name = found.cFileName;
    if (name != L"." && name != L"..") good = act(found.cFileName, found.dwFileAttributes) && good;
  } while (FindNextFileW(search, &found));
  FindClose(search);
  return good;
}

bool IsFolder(DWORD attributes) {
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

std::wstring Wide(std::string_view utf8) {
  const int size = static_cast<int>(utf8.size());
  std::wstring wide(utf8.size(), L'\0');
  wide.resize(
      static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size)));
  return wide;
}

std::string Utf8(std::wstring_view wide) {
  const int size = static_cast<int>(wide.size());
  std::string utf8(wide.size() * 3, '\0');
  utf8.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), size * 3, nullptr, nullptr)));
  return utf8;
}

std::wstring WidePath(std::string_view path) {
  std::wstring wide = Wide(path);
  for (wchar_t& unit : wide) {
    if (unit == L'/') unit = L'\\';
  }
  return wide;
}

std::optional<std::string> ReadFileAt(const std::wstring& path) {
  const HANDLE file =
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return std::nullopt;
  std::string contents(GetFileSize(file, nullptr), '\0');
  DWORD read = 0;
  const BOOL done = ReadFile(file, contents.data(), static_cast<DWORD>(contents.size()), &read, nullptr);
  CloseHandle(file);
  contents.resize(read);
  return done ? std::optional(contents) : std::nullopt;
}

bool WriteFileAt(const std::wstring& path, std::string_view contents) {
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const BOOL done = WriteFile(file, contents.data(), static_cast<DWORD>(contents.size()), &written, nullptr);
  return CloseHandle(file) && done && written == contents.size();
}

bool MakeFolder(const std::wstring& path) {
  if (IsFolder(GetFileAttributesW(path.c_str()))) return true;
  const std::size_t last = path.rfind(L'\\');
  if (last == path.npos || last < 3 || !MakeFolder(path.substr(0, last))) return false;
  return CreateDirectoryW(path.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS;
}

bool CopyTree(const std::wstring& from, const std::wstring& to) {
  const DWORD attributes = GetFileAttributesW(from.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if (!IsFolder(attributes)) {
    const std::size_t last = to.rfind(L'\\');
    return MakeFolder(to.substr(0, last)) && CopyFileW(from.c_str(), to.c_str(), FALSE) &&
           SetFileAttributesW(to.c_str(), FILE_ATTRIBUTE_NORMAL);
  }
  return MakeFolder(to) && ForEachIn(from, [&from, &to](const std::wstring& name, DWORD) {
           return CopyTree(from + L"\\" + name, to + L"\\" + name);
         });
}

bool RemoveTree(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return true;
  SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (!IsFolder(attributes)) return DeleteFileW(path.c_str()) != FALSE;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
    ForEachIn(path, [&path](const std::wstring& name, DWORD) { return RemoveTree(path + L"\\" + name); });
  }
  return RemoveDirectoryW(path.c_str()) != FALSE;
}

}  // namespace kit
