// Blocks of shared memory, and passing one that holds a command line to the host.
#pragma once

#include <windows.h>

#include <cstddef>

#include "base/unique_win.h"

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

// A duplicate of `handle` that is valid in `process`, null on failure.
HANDLE DuplicateInto(HANDLE process, HANDLE handle);

// Has the host execute the command line in `block` and brings the window to the foreground that it names. The
// caller owns the command-line mutex. How the host fares is not looked at.
void PassCommandLine(HWND host, const SharedBlock& block);

}  // namespace wfinfo::mapi
