#include "host/library/example_files_win.h"

#include <windows.h>

#include "host/library/export_examples.h"

namespace wrenfold {
namespace {

constexpr char kType[] = "EXAMPLES";  // see cmake/windows.cmake

struct Search {
  std::string_view name;
  std::string example;
};

BOOL CALLBACK LookInto(HMODULE module, LPCSTR type, LPSTR file, LONG_PTR parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  const HRSRC found = FindResourceA(module, file, type);
  const HGLOBAL loaded = found != nullptr ? LoadResource(module, found) : nullptr;
  const auto* const text = static_cast<const char*>(loaded != nullptr ? LockResource(loaded) : nullptr);
  if (text == nullptr) return TRUE;
  search.example = ExampleIn({text, SizeofResource(module, found)}, search.name);
  return search.example.empty() ? TRUE : FALSE;
}

}  // namespace

std::string ExampleOf(std::string_view name) {
  Search search{name, {}};
  EnumResourceNamesA(nullptr, kType, LookInto, reinterpret_cast<LONG_PTR>(&search));
  return search.example;
}

}  // namespace wrenfold
