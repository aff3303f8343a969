// load_cost: nanoseconds to load and free the library, and one with a single export, in turn; the least of
// each. The size of the library is that of its file, with the symbols stripped.
#include <windows.h>

#include "bench/windows/report.h"
#include "bench/windows/stopwatch.h"

namespace {

constexpr int kLoads = 60;

double LoadOnce_ns(const char* name) {
  const double start = wfinfo_bench::Now_ns();
  const HMODULE module = LoadLibraryA(name);
  const double end = wfinfo_bench::Now_ns();
  FreeLibrary(module);
  return module == nullptr ? 0 : end - start;
}

double FileSize(const char* name) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  return GetFileAttributesExA(name, GetFileExInfoStandard, &data) ? data.nFileSizeLow : 0;
}

}  // namespace

int main() {
  constexpr const char* kNames[] = {"load_cost_stripped.dll", "one_export.dll"};
  double least[] = {1e300, 1e300};
  for (int round = 0; round < kLoads; ++round) {
    for (int i = 0; i < 2; ++i) {
      const double time = LoadOnce_ns(kNames[i]);
      if (time == 0) return 1;
      if (time < least[i]) least[i] = time;
    }
  }
  const double size = FileSize(kNames[0]);
  if (size == 0) return 1;
  wfinfo_bench::Report report;
  report.Time("Load/ours", least[0]);
  report.Time("Load/one_export", least[1]);
  report.Size("Size/ours", size);
  return 0;
}
