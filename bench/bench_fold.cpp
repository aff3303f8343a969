// Rewriting line ends, measuring and writing, beside memcpy and the plainest byte loop ("ref"). Judge the
// ratios of one run, never absolute numbers.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "bench/mail_texts.h"
#include "src/message/line_ends.h"
#include "src/text/host_text.h"

namespace {

using namespace wfinfo_bench;
using wfinfo::LineEnd;

enum Ends : std::int64_t { kRight, kMixed };

// A text whose line ends are CR LF, or one of all kinds.
std::string MakeText(std::int64_t size, std::int64_t ends) {
  const std::string right = Body(static_cast<std::size_t>(size), kAscii);
  if (ends == kRight) return right;
  static constexpr std::string_view kKinds[] = {"\r\n", "\n", "\r", "\r\r\n"};
  Random random;
  std::string mixed;
  for (const char byte : right) {
    if (byte == '\n')
      mixed += kKinds[random.Next() % 4];
    else if (byte != '\r')
      mixed += byte;
  }
  return mixed;
}

const std::string& Text(const benchmark::State& state) {
  return KeptText(state.range(0), state.range(1), MakeText);
}

void Finish(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.SetLabel(state.range(1) == kRight ? "right" : "mixed");
}

void WriteOnly(benchmark::State& state, LineEnd form) {
  const std::string& text = Text(state);
  const wfinfo::FoldSize size = wfinfo::MeasureLineEnds(text.c_str(), form);
  std::string out(size.output, '\0');
  for (auto _ : state) {
    wfinfo::WriteLineEnds(text.c_str(), form, size, out.data());
    benchmark::DoNotOptimize(out.data());
  }
  Finish(state, text.size());
}

void MeasureAndWrite(benchmark::State& state, LineEnd form) {
  const std::string& text = Text(state);
  std::string out(wfinfo::MeasureLineEnds(text.c_str(), form).output, '\0');
  for (auto _ : state) {
    const wfinfo::FoldSize size = wfinfo::MeasureLineEnds(text.c_str(), form);
    wfinfo::WriteLineEnds(text.c_str(), form, size, out.data());
    benchmark::DoNotOptimize(out.data());
  }
  Finish(state, text.size());
}

std::size_t WriteByBytes(const char* p, char* out) {
  const char* const begin = out;
  while (*p != '\0') {
    while (*p != '\0' && *p != '\r' && *p != '\n') {
      const bool escape =
          *p == wfinfo::kEscapeByte && p[1] != '\0' && p[2] != '\0' && wfinfo::IsEscapeTail(p[1], p[2], p[3]);
      for (int i = escape ? 4 : 1; i > 0; --i) *out++ = *p++;
    }
    for (const char byte : {'\r', '\r', '\n'}) *out++ = byte;
    if (*p == '\r') ++p;
    if (*p == '\r') ++p;
    if (*p == '\n') ++p;
  }
  return static_cast<std::size_t>(out - begin);
}

std::size_t MeasureByBytes(const char* p) {
  std::size_t size = 0;
  while (*p != '\0') {
    while (*p != '\0' && *p != '\r' && *p != '\n') {
      const bool escape =
          *p == wfinfo::kEscapeByte && p[1] != '\0' && p[2] != '\0' && wfinfo::IsEscapeTail(p[1], p[2], p[3]);
      const int length = escape ? 4 : 1;
      p += length;
      size += static_cast<std::size_t>(length);
    }
    size += 3;
    if (*p == '\r') ++p;
    if (*p == '\r') ++p;
    if (*p == '\n') ++p;
  }
  return size;
}

// The byte loops to the unfolded form: one that measures and one that writes.
void Ref(benchmark::State& state) {
  const std::string& text = Text(state);
  std::string out(text.size() * 2, '\0');
  for (auto _ : state) {
    benchmark::DoNotOptimize(MeasureByBytes(text.c_str()));
    benchmark::DoNotOptimize(WriteByBytes(text.c_str(), out.data()));
  }
  Finish(state, text.size());
}

void Memcpy(benchmark::State& state) {
  const std::string& text = Text(state);
  std::string out(text.size(), '\0');
  for (auto _ : state) {
    std::memcpy(out.data(), text.data(), text.size());
    benchmark::DoNotOptimize(out.data());
  }
  Finish(state, text.size());
}

void RightTexts(benchmark::internal::Benchmark* benchmark) {
  for (const std::int64_t size : {80, 4 << 10, 256 << 10, 64 << 20}) benchmark->Args({size, kRight});
}

void MixedTexts(benchmark::internal::Benchmark* benchmark) {
  for (const std::int64_t size : {80, 4 << 10, 256 << 10, 64 << 20}) benchmark->Args({size, kMixed});
}

BENCHMARK_CAPTURE(WriteOnly, folded, LineEnd::kCrLf)->Apply(RightTexts);
BENCHMARK_CAPTURE(MeasureAndWrite, folded, LineEnd::kCrLf)->Apply(RightTexts);
BENCHMARK(Memcpy)->Apply(RightTexts);
BENCHMARK_CAPTURE(MeasureAndWrite, unfolded, LineEnd::kCrCrLf)->Apply(MixedTexts);
BENCHMARK(Ref)->Apply(MixedTexts);
BENCHMARK(Memcpy)->Apply(MixedTexts);

}  // namespace
