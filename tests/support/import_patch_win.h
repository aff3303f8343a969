// Makes a system call of the library fail: its import is redirected as long as this object lives.
#pragma once

#include <windows.h>

namespace wfinfo_test {

class ImportPatch {
 public:
  // `replacement` takes the place of `function`, which WFINFO.dll imports from `module`. The test fails when
  // it imports no such thing.
  template <class Function>
  ImportPatch(const char* module, const char* function, Function* replacement)
      : ImportPatch(module, function, reinterpret_cast<ULONG_PTR>(replacement)) {}
  ~ImportPatch() { Put(original_); }
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;

 private:
  ImportPatch(const char* module, const char* function, ULONG_PTR replacement);
  void Put(ULONG_PTR address);

  ULONG_PTR* slot_ = nullptr;
  ULONG_PTR original_ = 0;
};

}  // namespace wfinfo_test
