#include "tests/monkey/measure_win.h"

#include <windows.h>

#include <vector>

#include "tests/monkey/library_memory_win.h"

namespace monkey {
namespace {

constexpr std::size_t kMostProbes = 4096;
constexpr int kInRow = 4;  // probes side by side: no gaps are left in the table
constexpr unsigned kObjectPlaces = 0x10000;

long PlaceOf(const void* handle, unsigned step) {
  return static_cast<long>((reinterpret_cast<ULONG_PTR>(handle) & 0xFFFF) / step);
}

// How many places of a table of handles are taken: takes handles, which fill the gaps first, until they stand side
// by side. Given back last first, they leave the gaps in an order in which they are found again.
template <class Handle>
long TakenPlaces(Handle (*make)(), BOOL(WINAPI* end)(Handle), unsigned step) {
  std::vector<Handle> probes;
  long last = -1;
  for (int in_row = 0; in_row < kInRow && probes.size() < kMostProbes;) {
    const Handle probe = make();
    if (probe == nullptr) break;
    probes.push_back(probe);
    const long place = PlaceOf(probe, step);
    in_row = place == last + 1 ? in_row + 1 : 1;
    last = place;
  }
  const long taken = last + 1 - static_cast<long>(probes.size());
  for (; !probes.empty(); probes.pop_back()) end(probes.back());
  return taken;
}

HANDLE MakeEvent() { return CreateEventA(nullptr, TRUE, FALSE, nullptr); }
HMENU MakeMenu() { return CreateMenu(); }

long KernelHandles() {
  DWORD told = 0;
  GetProcessHandleCount(GetCurrentProcess(), &told);
  return told != 0 ? static_cast<long>(told) : TakenPlaces<HANDLE>(&MakeEvent, &CloseHandle, 4);
}

long UserObjects() {
  const DWORD told = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  return told != 0 ? static_cast<long>(told) : TakenPlaces<HMENU>(&MakeMenu, &DestroyMenu, 2);
}

long GdiObjects() {
  if (const DWORD told = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS); told != 0)
    return static_cast<long>(told);
  long count = 0;
  for (unsigned place = 1; place < kObjectPlaces; ++place) {
    if (GetObjectType(reinterpret_cast<HGDIOBJ>(static_cast<ULONG_PTR>(place))) != 0) ++count;
  }
  return count;
}

std::size_t PrivateBytes() {
  std::size_t bytes = 0;
  MEMORY_BASIC_INFORMATION region;
  for (const char* at = nullptr; VirtualQuery(at, &region, sizeof region) == sizeof region;) {
    if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
    at = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
  }
  return bytes;
}

}  // namespace

Holdings Measure() {
  return {GdiObjects(), UserObjects(), KernelHandles(), static_cast<long>(BlocksOfLibrary()), PrivateBytes()};
}

}  // namespace monkey
