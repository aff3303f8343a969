#include "tests/support/private_library_win.h"

#include <gtest/gtest.h>

#include <utility>

namespace wfinfo_test {
namespace {

constexpr char kName[] = "PrivateCopyOfWfinfo.dll";

}  // namespace

PrivateLibrary::PrivateLibrary() {
  char original[MAX_PATH] = "";
  GetModuleFileNameA(GetModuleHandleA("WFINFO.dll"), original, sizeof original);
  const std::string copy = folder_.Path(kName);
  EXPECT_TRUE(CopyFileA(original, copy.c_str(), TRUE));
  module_ = LoadLibraryA(copy.c_str());
  EXPECT_NE(module_, nullptr);
  EXPECT_NE(module_, GetModuleHandleA("WFINFO.dll"));
}

void PrivateLibrary::Unload() {
  if (module_ == nullptr) return;
  Free();
  EXPECT_FALSE(IsLoaded());
}

void PrivateLibrary::Free() { FreeLibrary(std::exchange(module_, nullptr)); }

bool PrivateLibrary::IsLoaded() { return GetModuleHandleA(kName) != nullptr; }

}  // namespace wfinfo_test
