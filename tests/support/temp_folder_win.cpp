#include "tests/support/temp_folder_win.h"

namespace wfinfo_test {
namespace {

// ASCII only, so that no code page matters.
std::wstring Widened(std::string_view text) { return {text.begin(), text.end()}; }

void Empty(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring name = found.cFileName;
    const std::wstring path = folder + L"\\" + name;
    if (name == L"." || name == L"..") continue;
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      Empty(path);
      RemoveDirectoryW(path.c_str());
    } else {
      SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
      DeleteFileW(path.c_str());
    }
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

}  // namespace

TempFolder::TempFolder() {
  static int counter = 0;
  wchar_t base[MAX_PATH];
  GetTempPathW(MAX_PATH, base);
  folder_ = std::wstring(base) + L"wfinfo" + std::to_wstring(GetCurrentProcessId()) + L"_" +
            std::to_wstring(counter++);
  CreateDirectoryW(folder_.c_str(), nullptr);
}

TempFolder::~TempFolder() {
  Empty(folder_);
  RemoveDirectoryW(folder_.c_str());
}

std::wstring TempFolder::WidePath(std::wstring_view name) const {
  return folder_ + L"\\" + std::wstring(name);
}

std::string TempFolder::Path(std::string_view name) const {
  std::string path;
  for (const wchar_t unit : WidePath(Widened(name))) path += static_cast<char>(unit);
  return path;
}

std::string TempFolder::Write(std::string_view name, std::string_view contents) const {
  const HANDLE file =
      CreateFileW(WidePath(Widened(name)).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written;
  WriteFile(file, contents.data(), static_cast<DWORD>(contents.size()), &written, nullptr);
  CloseHandle(file);
  return Path(name);
}

std::string TempFolder::Read(std::wstring_view name) const {
  const HANDLE file = CreateFileW(WidePath(name).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return "(no file)";
  std::string contents(GetFileSize(file, nullptr), '\0');
  DWORD read = 0;
  ReadFile(file, contents.data(), static_cast<DWORD>(contents.size()), &read, nullptr);
  CloseHandle(file);
  contents.resize(read);
  return contents;
}

std::string TempFolder::Read(std::string_view name) const { return Read(std::wstring_view(Widened(name))); }

bool TempFolder::CanHold(std::wstring_view name) const {
  const HANDLE file = CreateFileW(WidePath(name).c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                  FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  CloseHandle(file);
  return true;
}

bool TempFolder::Has(std::string_view name) const {
  return GetFileAttributesW(WidePath(Widened(name)).c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace wfinfo_test
