// A copy of the library under a name of its own, which can be unloaded while the test goes on.
#pragma once

#include <windows.h>

#include "tests/support/temp_folder_win.h"

namespace wfinfo_test {

class PrivateLibrary {
 public:
  PrivateLibrary();
  ~PrivateLibrary() { Unload(); }
  PrivateLibrary(const PrivateLibrary&) = delete;
  PrivateLibrary& operator=(const PrivateLibrary&) = delete;

  // The export `name` of the copy, with the type of the function given.
  template <class Function>
  Function* Export(const char* name, Function*) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  // Unloads the copy and makes sure that it is gone.
  void Unload();
  // Gives back the test's reference; the copy may hold itself.
  void Free();
  // Whether the copy is in the process, whoever loaded it.
  static bool IsLoaded();

 private:
  TempFolder folder_;
  HMODULE module_ = nullptr;
};

}  // namespace wfinfo_test
