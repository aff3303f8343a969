// This library as a module, and system libraries bound at run time.
#pragma once

#include <windows.h>

#include <cstddef>

namespace wfinfo {

// This library's module handle, stored at process attach.
extern HINSTANCE g_hInstance;

// Writes the full path of the file `name` in this library's own folder; false when it does not fit. The
// folder name may hold double-byte characters whose second byte is a backslash.
bool PathBesideLibrary(const char* name, char* path, std::size_t room);

// The library file `name` of the system directory, null when it does not load.
HMODULE LoadFromSystemDirectory(const char* name);

// A module for the system library `name`: the loaded one, else the file in the system directory, else
// whatever the plain name finds; null when there is none.
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

}  // namespace wfinfo
