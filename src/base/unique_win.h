// Owners of Windows resources: one template, one line for each kind.
#pragma once

#include <windows.h>

#include <utility>

namespace wfinfo {

// Owns a handle until it is released, reset or destroyed. `Traits` names the handle type, its empty values
// and how to close it. Closing keeps the thread's last error, which callers may still want to read.
template <class Traits>
class Unique {
 public:
  using Handle = typename Traits::Handle;

  Unique() noexcept = default;
  explicit Unique(Handle handle) noexcept : handle_(handle) {}
  Unique(Unique&& other) noexcept : handle_(other.release()) {}
  Unique& operator=(Unique&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  ~Unique() { reset(); }

  Handle get() const { return handle_; }
  explicit operator bool() const { return Traits::IsValid(handle_); }
  Handle release() { return std::exchange(handle_, Traits::Empty()); }
  void reset(Handle handle = Traits::Empty()) {
    const Handle old = std::exchange(handle_, handle);
    if (!Traits::IsValid(old)) return;
    const DWORD last_error = GetLastError();
    Traits::Close(old);
    SetLastError(last_error);
  }

 private:
  Handle handle_ = Traits::Empty();
};

template <class Type, auto CloseFunction>
struct PointerTraits {
  using Handle = Type;
  static Handle Empty() { return nullptr; }
  static bool IsValid(Handle handle) { return handle != nullptr; }
  static void Close(Handle handle) { CloseFunction(handle); }
};

// Files: CreateFile fails with INVALID_HANDLE_VALUE.
struct FileTraits : PointerTraits<HANDLE, &CloseHandle> {
  static bool IsValid(HANDLE handle) { return handle != nullptr && handle != INVALID_HANDLE_VALUE; }
};

using UniqueFile = Unique<FileTraits>;
using UniqueHandle = Unique<PointerTraits<HANDLE, &CloseHandle>>;  // processes, events, mappings, mutexes
using UniqueLocal = Unique<PointerTraits<void*, &LocalFree>>;      // LocalAlloc blocks

}  // namespace wfinfo
