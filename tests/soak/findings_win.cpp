#include <windows.h>

#include <cstdlib>
#include <map>
#include <mutex>

#include "tests/monkey/growth.h"
#include "tests/monkey/measure_win.h"
#include "tests/soak/findings.h"

namespace soak {
namespace {

std::mutex g_lock;
std::map<std::string, unsigned long long> g_counts;
unsigned long long g_findings = 0;

}  // namespace

void Print(const std::string& line) {
  const std::string whole = line + "\n";
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), whole.data(), static_cast<DWORD>(whole.size()), &written,
            nullptr);
}

void Find(const std::string& what) {
  constexpr unsigned long long kMostShown = 50;
  const std::lock_guard lock(g_lock);
  if (++g_findings <= kMostShown) Print("finding: " + what);
}

void Count(const std::string& what) {
  const std::lock_guard lock(g_lock);
  ++g_counts[what];
}

int Conclude() {
  const std::lock_guard lock(g_lock);
  for (const auto& [what, count] : g_counts) Print("count: " + std::to_string(count) + " " + what);
  return g_findings == 0 ? 0 : 1;
}

void Flatness::Measure(unsigned long long done) {
  monkey::Holdings held = monkey::Measure();
  if (company_ == kAmongOthers)
    held.user = static_cast<long>(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS));
  measures_.push_back(held);
  std::string line = "held: after " + std::to_string(done) + ":";
  for (const monkey::Kind& kind : monkey::kKinds)
    line += " " + std::to_string(held.*kind.count) + " " + kind.name + ",";
  Print(line + " " + std::to_string(held.bytes / 1024) + " KiB");
}

void Flatness::Judge() const {
  constexpr std::size_t kFewest = 3;  // two steps
  if (measures_.size() < kFewest) return Find("too few measures to tell what grows");
  if (const std::string grown = monkey::SteadyGrowth(measures_); !grown.empty())
    Find("growth: " + grown + " more at the end, and more with each measure");
  if (monkey::HasGrown(measures_)) Find("growth: much more is held at the end than at the first measure");
}

unsigned long long Number(const char* word) { return std::strtoull(word, nullptr, 10); }

}  // namespace soak
