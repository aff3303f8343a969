// Comma-separated text of 64 MiB, plain and quoted: line count, widest line, all fields, lines by number.
// Peers: memchr and a plain vector scan (the limits), the literal reading (which rescans the line for each
// column), libcsv.
#include <benchmark/benchmark.h>
#include <emmintrin.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "src/csv/csv_text.h"

#ifdef WFINFO_WITH_LIBCSV
#include <csv.h>
#endif

namespace {

constexpr std::size_t kSize = 64 << 20;

std::string MakeText(bool quoted) {
  std::mt19937 random(1);
  std::string text;
  text.reserve(kSize + 256);
  while (text.size() < kSize) {
    for (int field = 0; field < 8; ++field) {
      if (quoted) text += '"';
      for (std::size_t length = 2 + random() % 10; length > 0; --length)
        text += static_cast<char>('a' + random() % 26);
      if (quoted && random() % 16 == 0) text += "\"\"x,y";
      if (quoted) text += '"';
      text += field < 7 ? "," : "\r\n";
    }
  }
  return text;
}

const std::string& Text(bool quoted) {
  static const std::string plain = MakeText(false);
  static const std::string with_quotes = MakeText(true);
  return quoted ? with_quotes : plain;
}

void SetBytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<long long>(Text(state.range(0) != 0).size()) * state.iterations());
}

struct Attached {
  explicit Attached(const std::string& text) { walker.Attach(text); }
  ~Attached() { walker.Detach(); }
  wfinfo::CsvText walker;
};

// --- Limits ---

void Memchr(benchmark::State& state) {
  const std::string& text = Text(state.range(0) != 0);
  for (auto _ : state) benchmark::DoNotOptimize(std::memchr(text.data(), '\0', text.size()));
  SetBytes(state);
}
BENCHMARK(Memchr)->Arg(0)->Arg(1)->ArgName("quoted");

void VectorScan(benchmark::State& state) {
  const std::string& text = Text(state.range(0) != 0);
  for (auto _ : state) {
    int found = 0;
    for (std::size_t at = 0; at + 16 <= text.size(); at += 16) {
      const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + at));
      found += _mm_movemask_epi8(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n'))) != 0;
    }
    benchmark::DoNotOptimize(found);
  }
  SetBytes(state);
}
BENCHMARK(VectorScan)->Arg(0)->Arg(1)->ArgName("quoted");

// --- Counts, by each set of block routines (0 the byte loop, 1 SSE2, 2 AVX2) ---

void LineCount(benchmark::State& state) {
  const auto kernels = wfinfo::RunnableCsvKernels();
  const auto& chosen = *kernels[std::min(static_cast<std::size_t>(state.range(1)), kernels.size() - 1)];
  const std::string& text = Text(state.range(0) != 0);
  for (auto _ : state) benchmark::DoNotOptimize(chosen.count_lines(text));
  SetBytes(state);
}
BENCHMARK(LineCount)->ArgsProduct({{0, 1}, {0, 1, 2}})->ArgNames({"quoted", "set"});

void WidestLine(benchmark::State& state) {
  const auto kernels = wfinfo::RunnableCsvKernels();
  const auto& chosen = *kernels[std::min(static_cast<std::size_t>(state.range(1)), kernels.size() - 1)];
  const std::string& text = Text(state.range(0) != 0);
  for (auto _ : state) benchmark::DoNotOptimize(chosen.widest_line(text));
  SetBytes(state);
}
BENCHMARK(WidestLine)->ArgsProduct({{0, 1}, {0, 1, 2}})->ArgNames({"quoted", "set"});

// --- All fields of all lines, copied without their quoting ---

void FieldWalk(benchmark::State& state) {
  const std::string& text = Text(state.range(0) != 0);
  Attached attached(text);
  char out[8192];
  for (auto _ : state) {
    std::size_t total = 0;
    attached.walker.SetLine(0);
    do {
      const std::size_t columns = attached.walker.ColumnCount();
      for (std::size_t i = 0; i < columns; ++i) {
        total += attached.walker.CopyColumn(i, out, sizeof out);
      }
    } while (attached.walker.SkipLine());
    benchmark::DoNotOptimize(total);
  }
  SetBytes(state);
}
BENCHMARK(FieldWalk)->Arg(0)->Arg(1)->ArgName("quoted");

// The literal reading: every column is looked for from the start of the line.
std::size_t LiteralField(const char* at, char* out, int column) {
  const auto pass = [](const char* p) {
    if (*p != '"') {
      while (*p != ',' && *p != '\r' && *p != '\n' && *p != '\0') ++p;
      return p;
    }
    for (++p; *p != '\0'; ++p) {
      if (*p == '"' && *++p != '"') break;
    }
    return p;
  };
  for (; column > 0; --column) {
    at = pass(at);
    if (*at == ',') ++at;
  }
  const char* const end = pass(at);
  char* const start = out;
  if (*at == '"') ++at;
  for (; at < end; *out++ = *at++) {
    if (*at == '"' && *++at != '"') break;
  }
  *out = '\0';
  return static_cast<std::size_t>(out - start);
}

void FieldWalkLiteral(benchmark::State& state) {
  const std::string& text = Text(state.range(0) != 0);
  Attached attached(text);
  char out[8192];
  for (auto _ : state) {
    std::size_t total = 0;
    attached.walker.SetLine(0);
    std::size_t offset = 0;
    const wfinfo::CsvKernels& bytes = *wfinfo::RunnableCsvKernels().front();
    while (offset < text.size()) {
      const std::string_view rest = std::string_view(text).substr(offset);
      const wfinfo::CsvLine line = bytes.scan_line(rest, {});
      for (int i = 0; i < static_cast<int>(line.fields); ++i) total += LiteralField(rest.data(), out, i);
      offset = static_cast<std::size_t>(line.end - text.data()) + 2;
    }
    benchmark::DoNotOptimize(total);
  }
  SetBytes(state);
}
BENCHMARK(FieldWalkLiteral)->Arg(0)->Arg(1)->ArgName("quoted");

#ifdef WFINFO_WITH_LIBCSV
void FieldWalkLibcsv(benchmark::State& state) {
  const std::string& text = Text(state.range(0) != 0);
  for (auto _ : state) {
    csv_parser parser;
    csv_init(&parser, 0);
    std::size_t total = 0;
    csv_parse(
        &parser, text.data(), text.size(),
        [](void*, std::size_t length, void* sum) { *static_cast<std::size_t*>(sum) += length; },
        [](int, void*) {}, &total);
    csv_fini(&parser, nullptr, nullptr, nullptr);
    csv_free(&parser);
    benchmark::DoNotOptimize(total);
  }
  SetBytes(state);
}
BENCHMARK(FieldWalkLibcsv)->Arg(0)->Arg(1)->ArgName("quoted");
#endif

// --- Lines ---

void SkipLines(benchmark::State& state) {
  Attached attached(Text(state.range(0) != 0));
  std::size_t lines = 0;
  for (auto _ : state) {
    attached.walker.SetLine(0);
    for (lines = 1; attached.walker.SkipLine(); ++lines) {
    }
  }
  SetBytes(state);
  state.counters["lines"] = static_cast<double>(lines);
}
BENCHMARK(SkipLines)->Arg(0)->Arg(1)->ArgName("quoted");

void LinesByNumberInSequence(benchmark::State& state) {
  Attached attached(Text(state.range(0) != 0));
  for (auto _ : state) {
    for (long long line = 0; attached.walker.SetLine(line); ++line) {
    }
  }
  SetBytes(state);
}
BENCHMARK(LinesByNumberInSequence)->Arg(0)->Arg(1)->ArgName("quoted");

void LineByNumberAtRandom(benchmark::State& state) {
  Attached attached(Text(state.range(0) != 0));
  const std::size_t lines = attached.walker.LineCount();
  attached.walker.SetLine(static_cast<long long>(lines));
  std::mt19937 random(2);
  for (auto _ : state) {
    benchmark::DoNotOptimize(attached.walker.SetLine(static_cast<long long>(random() % lines)));
  }
}
BENCHMARK(LineByNumberAtRandom)->Arg(0)->Arg(1)->ArgName("quoted");

}  // namespace
