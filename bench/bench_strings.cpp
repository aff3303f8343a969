// Letter case and base names of long texts, as a copy and a change in place of 1 MiB: plain, Japanese and
// full of escapes. Peer: the walk by units, one at a time.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "bench/mail_texts.h"
#include "src/strings/letter_case.h"
#include "src/strings/slicing.h"
#include "src/text/ascii.h"
#include "src/text/host_text.h"

namespace {

using namespace wfinfo_bench;

constexpr std::size_t kSize = 1 << 20;

// The text in front of a last path, so that all of it has to be looked at.
const std::string& Text(const benchmark::State& state) {
  return KeptText(kSize, state.range(0), [](std::int64_t size, std::int64_t script) {
    return "C:\\" + Body(static_cast<std::size_t>(size), script);
  });
}

void Finish(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Text(state).size()));
  state.SetLabel(ScriptName(state.range(0)));
}

void Changed(benchmark::State& state, void (*change)(std::span<char>)) {
  const std::string& text = Text(state);
  std::string out(text.size(), '\0');
  for (auto _ : state) {
    text.copy(out.data(), text.size());
    change(out);
    benchmark::DoNotOptimize(out.data());
  }
  Finish(state);
}

void UpperByUnits(std::span<char> text) {
  for (std::size_t at = 0; at < text.size();) {
    text[at] = wfinfo::UpperAscii(text[at]);
    at += wfinfo::UnitLength(std::string_view(text.data(), text.size()).substr(at));
  }
}

void BaseName(benchmark::State& state) {
  const std::string& text = Text(state);
  for (auto _ : state) benchmark::DoNotOptimize(wfinfo::BaseName(text).size());
  Finish(state);
}

void BaseNameByUnits(benchmark::State& state) {
  const std::string& text = Text(state);
  for (auto _ : state) {
    std::size_t base = 0;
    for (std::size_t at = 0; at < text.size();) {
      const std::string_view unit = wfinfo::NextUnit(std::string_view(text).substr(at));
      at += unit.size();
      if (unit == "\\") base = at;
    }
    benchmark::DoNotOptimize(base);
  }
  Finish(state);
}

void Scripts(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("script")->Arg(kAscii)->Arg(kShiftJis)->Arg(kEscapes);
}

BENCHMARK_CAPTURE(Changed, upper, &wfinfo::MakeUpperCase)->Apply(Scripts);
BENCHMARK_CAPTURE(Changed, lower, &wfinfo::MakeLowerCase)->Apply(Scripts);
BENCHMARK_CAPTURE(Changed, by_units, &UpperByUnits)->Apply(Scripts);
BENCHMARK(BaseName)->Apply(Scripts);
BENCHMARK(BaseNameByUnits)->Apply(Scripts);

}  // namespace
