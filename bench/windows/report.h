// What a program prints for ./dev bench: the JSON of Google Benchmark, as far as it is read.
#pragma once

#include <cstdio>

namespace wfinfo_bench {

class Report {
 public:
  Report() { std::printf("{\"benchmarks\": ["); }
  ~Report() { std::printf("}\n]}\n"); }
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  void Time(const char* name, double ns) { Add(name, "\"time_unit\": \"ns\", \"cpu_time\"", ns); }
  // For work on so many bytes.
  void Time(const char* name, double ns, double bytes) {
    Time(name, ns);
    std::printf(", \"bytes_per_second\": %.0f", bytes * 1e9 / ns);
  }
  void Size(const char* name, double bytes) { Add(name, "\"bytes\"", bytes); }

 private:
  void Add(const char* name, const char* key, double value) {
    std::printf("%s\n  {\"name\": \"%s\", %s: %.1f", first_ ? "" : "},", name, key, value);
    first_ = false;
  }

  bool first_ = true;
};

}  // namespace wfinfo_bench
