#include "tests/monkey/measure_win.h"

namespace monkey {
namespace {

constexpr int kProbes = 32;  // fills the gaps that closed handles left

BOOL CALLBACK Count(HWND, LPARAM count) {
  ++*reinterpret_cast<unsigned*>(count);
  return TRUE;
}

}  // namespace

Holdings Measure() {
  Holdings held{GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS),
                GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), 0, 0, 0};
  EnumThreadWindows(GetCurrentThreadId(), &Count, reinterpret_cast<LPARAM>(&held.windows));
  HANDLE probes[kProbes];
  for (HANDLE& probe : probes) {
    probe = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const auto place = static_cast<unsigned long>(reinterpret_cast<ULONG_PTR>(probe) / 4);
    if (place > held.handles) held.handles = place;
  }
  for (const HANDLE probe : probes) CloseHandle(probe);
  MEMORY_BASIC_INFORMATION region;
  for (const char* at = nullptr; VirtualQuery(at, &region, sizeof region) == sizeof region;) {
    if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) held.bytes += region.RegionSize;
    at = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
  }
  return held;
}

}  // namespace monkey
