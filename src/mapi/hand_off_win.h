// Blocks of shared memory, and passing one that holds a command line to the host.
#pragma once

#include <windows.h>

#include <cstddef>
#include <utility>

#include "src/base/unique_win.h"

namespace wfinfo::mapi {

using UniqueView = Unique<PointerTraits<void*, &UnmapViewOfFile>>;

// A nameless piece of shared memory of `size` bytes, all zero, mapped here.
class SharedBlock {
 public:
  explicit SharedBlock(std::size_t size);

  explicit operator bool() const { return static_cast<bool>(view_); }
  HANDLE mapping() const { return mapping_.get(); }
  char* bytes() const { return static_cast<char*>(view_.get()); }
  template <class Layout>
  Layout& as() const {
    return *static_cast<Layout*>(view_.get());
  }

 private:
  UniqueHandle mapping_;
  UniqueView view_;
};

// The process that `window` belongs to, open for handing handles to it; empty when it cannot be opened.
UniqueHandle OpenForHandles(HWND window);

// A duplicate of a handle that is valid in another process. It is closed there with this object unless it was
// released: from then on it is that process' own.
class LentHandle {
 public:
  // Empty, with the last error saying why, when `process` is null or `handle` cannot be duplicated into it.
  // `process` must outlive this object.
  LentHandle(HANDLE process, HANDLE handle);
  ~LentHandle();
  LentHandle(const LentHandle&) = delete;
  LentHandle& operator=(const LentHandle&) = delete;

  explicit operator bool() const { return theirs_ != nullptr; }
  HANDLE get() const { return theirs_; }
  HANDLE release() { return std::exchange(theirs_, nullptr); }

 private:
  HANDLE process_;
  HANDLE theirs_ = nullptr;
};

// Has the host execute the command line in `block` and brings the window to the foreground that it names. The
// caller owns the command-line mutex. How the host fares is not looked at. False, with the last error saying
// why, when the block cannot be given to the host's process.
bool PassCommandLine(HWND host, const SharedBlock& block);

}  // namespace wfinfo::mapi
