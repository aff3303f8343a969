#include <windows.h>

#include <cstdint>
#include <cstdio>

#include "host/base/paths.h"
#include "host/files/file_hold.h"

namespace wrenfold {
namespace {

constexpr DWORD kTryAgainMs = 50;

std::wstring OneCase(const std::string& utf8) {
  std::wstring name = PathFromUtf8(utf8).native();
  LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, name.c_str(), static_cast<int>(name.size()),
                name.data(), static_cast<int>(name.size()), nullptr, nullptr, 0);
  return name;
}

// A mutex's name holds no backslash and at most MAX_PATH characters: a number stands for the path. Two files
// of one number would wait for each other, no more.
std::wstring MutexName(const std::string& utf8) {
  constexpr std::uint64_t kStart = 0xCBF29CE484222325, kFactor = 0x100000001B3;  // FNV-1a
  std::uint64_t number = kStart;
  for (const wchar_t unit : OneCase(utf8)) number = (number ^ static_cast<std::uint64_t>(unit)) * kFactor;
  wchar_t name[64];
  std::swprintf(name, std::size(name), L"Local\\wrenfold-file-%016llx",
                static_cast<unsigned long long>(number));
  return name;
}

}  // namespace

void* TakeName(const std::string& name, std::chrono::milliseconds wait) {
  const std::wstring mutex_name = MutexName(name);
  const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(wait.count());
  while (true) {
    const HANDLE mutex = CreateMutexExW(nullptr, mutex_name.c_str(), 0, SYNCHRONIZE | MUTEX_MODIFY_STATE);
    const ULONGLONG now = GetTickCount64();
    const DWORD rest = now < end ? static_cast<DWORD>(end - now) : 0;
    if (mutex != nullptr) {
      const DWORD answer = WaitForSingleObject(mutex, rest);
      // Abandoned by a program that was ended: files are replaced whole, so that it is ours as it is.
      if (answer == WAIT_OBJECT_0 || answer == WAIT_ABANDONED) return mutex;
      CloseHandle(mutex);
      return nullptr;
    }
    // Of a host with more rights; the name is gone when that has done with it.
    if (rest == 0) return nullptr;
    Sleep(kTryAgainMs);
  }
}

void GiveName(void* held) {
  ReleaseMutex(held);
  CloseHandle(held);
}

}  // namespace wrenfold
