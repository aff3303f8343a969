// Shared memory that another program handed over with a message.
#pragma once

#include <windows.h>

#include <cstddef>

#include "src/base/unique_win.h"

namespace wrenfold {

using UniqueView = wfinfo::Unique<wfinfo::PointerTraits<void*, &UnmapViewOfFile>>;

// A block, and its handle in this process, which is ours to close.
class HandedBlock {
 public:
  explicit HandedBlock(HANDLE mapping) : mapping_(mapping) {
    if (mapping_) view_.reset(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, 0));
  }
  // nullptr when the handle was no mapping.
  char* bytes() const { return static_cast<char*>(view_.get()); }
  std::size_t size() const {
    MEMORY_BASIC_INFORMATION region{};
    return VirtualQuery(view_.get(), &region, sizeof region) == 0 ? 0 : region.RegionSize;
  }

 private:
  wfinfo::UniqueHandle mapping_;
  UniqueView view_;
};

}  // namespace wrenfold
