// The slots through which WFINFO.dll calls the system.
#pragma once

#include <windows.h>

#include <string_view>

namespace wfinfo_test {

// Gives each import by name and the slot that holds its address to `visit`, which returns the address that is to
// stand there. The slots stay as they are left.
template <class Visit>
void ForEachImportOfLibrary(Visit visit) {
  auto* const library = reinterpret_cast<char*>(GetModuleHandleA("WFINFO.dll"));
  const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(library);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(library + dos->e_lfanew);
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* module = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(library + directory.VirtualAddress);
  for (; module->Name != 0; ++module) {
    const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(library + module->OriginalFirstThunk);
    auto* slots = reinterpret_cast<IMAGE_THUNK_DATA*>(library + module->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++slots) {
      const auto* const imported =
          reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(library + names->u1.AddressOfData);
      const std::string_view name = reinterpret_cast<const char*>(imported->Name);
      void* const address = visit(name, reinterpret_cast<void*>(slots->u1.Function));
      DWORD before;
      VirtualProtect(slots, sizeof *slots, PAGE_READWRITE, &before);
      slots->u1.Function = reinterpret_cast<ULONGLONG>(address);
      VirtualProtect(slots, sizeof *slots, before, &before);
    }
  }
}

}  // namespace wfinfo_test
