// This library as a module, and system libraries bound at run time.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace wfinfo {

// This library's module handle, stored at process attach.
extern HINSTANCE g_hInstance;

// Writes the full path of the file `name` in this library's own folder; false when it does not fit. It is
// UTF-16, since the folder may have a name that the system's code page does not hold.
bool PathBesideLibrary(std::wstring_view name, wchar_t (&path)[MAX_PATH]);

// The library file `name` of the system directory, null when it does not load.
HMODULE LoadFromSystemDirectory(const char* name);

// The loaded module `name` with a reference of its own, null when it is not loaded. Whoever keeps function
// pointers needs that reference: a macro may load a library of the same name and free it again.
HMODULE HoldLoadedModule(const char* name);

// A module for the system library `name`: the loaded one, else the file in the system directory, else
// whatever the plain name finds; null when there is none. The caller has a reference to it in each case.
HMODULE LoadSystemLibrary(const char* name);

// The export `name` of `module` as a function pointer of type `Function`, null when it is missing.
template <class Function>
Function ProcOf(HMODULE module, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// One function pointer to fill and the export that it is taken from.
struct ProcSlot {
  void** slot;
  const char* name;
};

// Fills the slots up to the first null slot; a missing export leaves its slot null.
void BindProcTable(HMODULE module, const ProcSlot* table);

// Publishes a whole table of function pointers, which has its module and its reference to that in `module`.
// Several threads may bind at the same time, without a lock: loading a library takes the lock of the
// system's loader, which a thread inside some DllMain may hold while it waits for us. The first table stays
// for the life of the process; of a later one the reference is given back. Returns the table that stays,
// null without memory.
template <class Table>
const Table* PublishFirst(std::atomic<const Table*>& place, const Table& mine) {
  static_assert(std::is_trivially_copyable_v<Table>);
  const Table* first = place.load(std::memory_order_acquire);
  auto* const copy = first == nullptr ? static_cast<Table*>(LocalAlloc(LMEM_FIXED, sizeof mine)) : nullptr;
  if (copy != nullptr) {
    std::memcpy(copy, &mine, sizeof mine);
    if (place.compare_exchange_strong(first, copy, std::memory_order_acq_rel)) return copy;
    LocalFree(copy);
  }
  if (mine.module != nullptr) FreeLibrary(mine.module);
  return first;
}

}  // namespace wfinfo
