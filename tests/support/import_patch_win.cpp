#include "tests/support/import_patch_win.h"

#include <gtest/gtest.h>

#include <cstring>

namespace wfinfo_test {
namespace {

// The address of `function` in the table of what `library` imports from `module`, or null.
ULONG_PTR* FindSlot(char* library, const char* module, const char* function) {
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(library);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(library + dos->e_lfanew);
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* imported = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(library + directory.VirtualAddress);
  for (; imported->Name != 0; ++imported) {
    if (lstrcmpiA(library + imported->Name, module) != 0) continue;
    const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(library + imported->OriginalFirstThunk);
    auto* slots = reinterpret_cast<IMAGE_THUNK_DATA*>(library + imported->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++slots) {
      const auto* name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(library + names->u1.AddressOfData);
      if (std::strcmp(name->Name, function) == 0) return reinterpret_cast<ULONG_PTR*>(&slots->u1.Function);
    }
  }
  return nullptr;
}

}  // namespace

ImportPatch::ImportPatch(const char* module, const char* function, ULONG_PTR replacement)
    : slot_(FindSlot(reinterpret_cast<char*>(GetModuleHandleA("WFINFO.dll")), module, function)) {
  EXPECT_NE(slot_, nullptr) << module << " " << function;
  if (slot_ == nullptr) return;
  original_ = *slot_;
  Put(replacement);
}

void ImportPatch::Put(ULONG_PTR address) {
  if (slot_ == nullptr) return;
  DWORD before = 0;
  VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &before);
  *slot_ = address;
  VirtualProtect(slot_, sizeof *slot_, before, &before);
}

}  // namespace wfinfo_test
