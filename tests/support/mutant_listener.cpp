// For tools/mutants.py: names the mutant that is alive in this run, and tells which mutants each test came upon.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

extern "C" {
// Read by the code that tools/mutants.h puts around each place that can be changed; 0 for none.
int g_mutant = 0;
constexpr int kMutantRoom = 200'000;
unsigned char g_mutants_met[kMutantRoom];
}

namespace {

class MutantListener : public testing::EmptyTestEventListener {
 public:
  explicit MutantListener(std::FILE* file) : file_(file) {}
  void OnTestStart(const testing::TestInfo&) override {
    std::memset(g_mutants_met, 0, sizeof g_mutants_met);
    started_ = std::clock();
  }
  void OnTestEnd(const testing::TestInfo& test) override {
    const auto ms = static_cast<long>((std::clock() - started_) / (CLOCKS_PER_SEC / 1000));
    std::fprintf(file_, "%s.%s\t%ld", test.test_suite_name(), test.name(), ms);
    for (int i = 0; i < kMutantRoom; ++i) {
      if (g_mutants_met[i] != 0) std::fprintf(file_, "\t%d", i);
    }
    std::fputc('\n', file_);
    std::fflush(file_);
  }

 private:
  std::FILE* file_;
  std::clock_t started_ = 0;  // of the processor's time: that of the wall depends on who else works
};

bool Prepare() {
  if (const char* const mutant = std::getenv("WFINFO_MUTANT")) g_mutant = std::atoi(mutant);
  const char* const path = std::getenv("WFINFO_MUTANTS_MET");
  if (path == nullptr) return false;
  testing::UnitTest::GetInstance()->listeners().Append(new MutantListener(std::fopen(path, "w")));
  return true;
}

[[maybe_unused]] const bool g_prepared = Prepare();

}  // namespace
