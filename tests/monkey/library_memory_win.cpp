#include "tests/monkey/library_memory_win.h"

#include <windows.h>

#include <cstdlib>
#include <unordered_set>

#include "tests/support/library_imports_win.h"

namespace monkey {
namespace {

// By address: what the system or the host gave and the library frees is none of them.
std::unordered_set<const void*> g_blocks;

template <class Block>
Block Taken(Block block) {
  if (block != nullptr) g_blocks.insert(block);
  return block;
}

HLOCAL WINAPI TakeLocal(UINT flags, SIZE_T size) { return Taken(LocalAlloc(flags, size)); }
HLOCAL WINAPI ResizeLocal(HLOCAL block, SIZE_T size, UINT flags) {
  const HLOCAL resized = LocalReAlloc(block, size, flags);
  if (resized != nullptr && g_blocks.erase(block) != 0) g_blocks.insert(resized);
  return resized;
}
HLOCAL WINAPI GiveLocal(HLOCAL block) {
  g_blocks.erase(block);
  return LocalFree(block);
}
void* Take(std::size_t size) { return Taken(std::malloc(size)); }
void* TakeCleared(std::size_t count, std::size_t size) { return Taken(std::calloc(count, size)); }
void* Resize(void* block, std::size_t size) {
  g_blocks.erase(block);
  void* const resized = std::realloc(block, size);
  return Taken(resized == nullptr && size != 0 ? block : resized);
}
void Give(void* block) {
  g_blocks.erase(block);
  std::free(block);
}

void* WatchedOf(std::string_view name, void* original) {
  if (name == "LocalAlloc") return reinterpret_cast<void*>(&TakeLocal);
  if (name == "LocalReAlloc") return reinterpret_cast<void*>(&ResizeLocal);
  if (name == "LocalFree") return reinterpret_cast<void*>(&GiveLocal);
  if (name == "malloc") return reinterpret_cast<void*>(&Take);
  if (name == "calloc") return reinterpret_cast<void*>(&TakeCleared);
  if (name == "realloc") return reinterpret_cast<void*>(&Resize);
  if (name == "free") return reinterpret_cast<void*>(&Give);
  return original;
}

}  // namespace

void WatchLibraryMemory() { wfinfo_test::ForEachImportOfLibrary(WatchedOf); }

std::size_t BlocksOfLibrary() { return g_blocks.size(); }

}  // namespace monkey
