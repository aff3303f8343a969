// Raw mail text: counting body lines, finding headers, copying the body; beside the plainest byte loop
// ("ref"), a plain vector scan or memcpy, and GMime. Judge the ratios of one run, never absolute numbers.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#if defined(__x86_64__)
#include <immintrin.h>
#endif
#ifdef WFINFO_WITH_GMIME
#include <gmime/gmime.h>
#endif

#include "bench/mail_texts.h"
#include "src/message/line_scan.h"
#include "src/message/raw_message.h"
#include "src/text/host_text.h"

namespace {

using namespace wfinfo_bench;

constexpr char kShortHeader[] = "Subject: benchmark\r\n\r\n";

const std::string& Mail(const benchmark::State& state) {
  return KeptText(state.range(0), state.range(1), [](std::int64_t size, std::int64_t script) {
    return kShortHeader + Body(static_cast<std::size_t>(size) - (sizeof kShortHeader - 1), script);
  });
}

void Finish(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

std::size_t CountByBytes(const char* p) {
  std::size_t lines = 0;
  while (*p != '\0') {
    ++lines;
    while (*p != '\0' && *p != '\r' && *p != '\n') {
      const bool escape =
          *p == wfinfo::kEscapeByte && p[1] != '\0' && p[2] != '\0' && wfinfo::IsEscapeTail(p[1], p[2], p[3]);
      p += escape ? 4 : 1;
    }
    if (*p == '\r') ++p;
    if (*p == '\n') ++p;
  }
  return lines;
}

void BodyLines(benchmark::State& state, const wfinfo::LineKernels* kernels) {
  const std::string& text = Mail(state);
  const char* const body = text.c_str() + sizeof kShortHeader - 1;
  for (auto _ : state) {
    benchmark::DoNotOptimize(kernels == nullptr ? wfinfo::CountBodyLines(text.c_str())
                                                : kernels->count_ends(body).ends);
  }
  Finish(state, text.size());
  state.SetLabel(ScriptName(state.range(1)));
}

void BodyLinesRef(benchmark::State& state) {
  const std::string& text = Mail(state);
  for (auto _ : state) benchmark::DoNotOptimize(CountByBytes(text.c_str() + sizeof kShortHeader - 1));
  Finish(state, text.size());
  state.SetLabel(ScriptName(state.range(1)));
}

#if defined(__x86_64__)
// How fast can memory be looked at: one byte value counted over a known length.
__attribute__((target("avx2"))) std::size_t CountByteAvx2(const char* p, std::size_t size) {
  const __m256i wanted = _mm256_set1_epi8('\n');
  __m256i total = _mm256_setzero_si256();
  std::size_t i = 0;
  while (i + 32 <= size) {
    __m256i sums = _mm256_setzero_si256();
    for (int round = 0; round < 60 && i + 128 <= size; ++round, i += 128) {
      for (std::size_t k = 0; k < 128; k += 32) {
        const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i + k));
        sums = _mm256_sub_epi8(sums, _mm256_cmpeq_epi8(v, wanted));
      }
    }
    for (; i + 32 <= size && i + 128 > size; i += 32) {
      const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i));
      sums = _mm256_sub_epi8(sums, _mm256_cmpeq_epi8(v, wanted));
    }
    total = _mm256_add_epi64(total, _mm256_sad_epu8(sums, _mm256_setzero_si256()));
  }
  std::uint64_t parts[4];
  std::memcpy(parts, &total, sizeof parts);
  std::size_t count = parts[0] + parts[1] + parts[2] + parts[3];
  for (; i < size; ++i) count += p[i] == '\n';
  return count;
}

void BodyLinesOneByteAvx2(benchmark::State& state) {
  const std::string& text = Mail(state);
  for (auto _ : state) benchmark::DoNotOptimize(CountByteAvx2(text.data(), text.size()));
  Finish(state, text.size());
  state.SetLabel(ScriptName(state.range(1)));
}
#endif

void BodyCopy(benchmark::State& state) {
  const std::string& text = Mail(state);
  std::string out(text.size(), '\0');
  for (auto _ : state) {
    const std::string_view body = wfinfo::BodyStart(text.c_str());
    std::memcpy(out.data(), body.data(), body.size());
    benchmark::DoNotOptimize(out.data());
  }
  Finish(state, text.size());
}

void BodyCopyMemcpy(benchmark::State& state) {
  const std::string& text = Mail(state);
  std::string out(text.size(), '\0');
  for (auto _ : state) {
    std::memcpy(out.data(), text.data(), text.size());
    benchmark::DoNotOptimize(out.data());
  }
  Finish(state, text.size());
}

// The set that this processor would run without its widest vectors.
const wfinfo::LineKernels* NextSmallerLineKernels() {
  const auto sets = wfinfo::RunnableLineKernels();
  return sets.size() > 1 ? sets[sets.size() - 2] : sets[0];
}

void LastHeader(benchmark::State& state, const wfinfo::LineKernels* kernels) {
  const std::string text =
      state.range(0) > 0 ? Header(static_cast<std::size_t>(state.range(0))) : UsualHeader();
  for (auto _ : state) {
    const wfinfo::HeaderName name("Subject");
    if (kernels == nullptr) {
      benchmark::DoNotOptimize(wfinfo::HeaderValue(text.c_str(), name, 0)->size());
    } else {
      benchmark::DoNotOptimize(kernels->find_header(text.c_str(), name.view(), 0).line);
    }
  }
  Finish(state, text.size());
}

// The last of many headers that differ only in their last letters.
void LastOfAlike(benchmark::State& state) {
  const std::string text = Header(static_cast<std::size_t>(state.range(0)));
  const wfinfo::HeaderName name("X-Trace-" + std::to_string(10000 + state.range(0) - 2));
  for (auto _ : state) benchmark::DoNotOptimize(wfinfo::HeaderValue(text.c_str(), name, 0)->size());
  Finish(state, text.size());
}

void LastHeaderMemchr(benchmark::State& state) {
  const std::string text =
      state.range(0) > 0 ? Header(static_cast<std::size_t>(state.range(0))) : UsualHeader();
  for (auto _ : state) benchmark::DoNotOptimize(std::memchr(text.data(), 0x01, text.size()));
  Finish(state, text.size());
}

#ifdef WFINFO_WITH_GMIME
GMimeMessage* ParseMail(GMimeStream* stream) {
  g_mime_stream_seek(stream, 0, GMIME_STREAM_SEEK_SET);
  GMimeParser* const parser = g_mime_parser_new_with_stream(stream);
  GMimeMessage* const message = g_mime_parser_construct_message(parser, nullptr);
  g_object_unref(parser);
  return message;
}

void BodyLinesGMime(benchmark::State& state) {
  g_mime_init();
  const std::string& text = Mail(state);
  GMimeStream* const stream = g_mime_stream_mem_new_with_buffer(text.data(), text.size());
  for (auto _ : state) {
    GMimeMessage* const message = ParseMail(stream);
    GMimeStream* const counter = g_mime_stream_null_new();
    g_mime_stream_null_set_count_newlines(GMIME_STREAM_NULL(counter), true);
    auto* const part = GMIME_PART(g_mime_message_get_mime_part(message));
    g_mime_data_wrapper_write_to_stream(g_mime_part_get_content(part), counter);
    benchmark::DoNotOptimize(GMIME_STREAM_NULL(counter)->newlines);
    g_object_unref(counter);
    g_object_unref(message);
  }
  g_object_unref(stream);
  Finish(state, text.size());
  state.SetLabel(ScriptName(state.range(1)));
}

void LastHeaderGMime(benchmark::State& state) {
  g_mime_init();
  const std::string text =
      state.range(0) > 0 ? Header(static_cast<std::size_t>(state.range(0))) : UsualHeader();
  GMimeStream* const stream = g_mime_stream_mem_new_with_buffer(text.data(), text.size());
  for (auto _ : state) {
    GMimeMessage* const message = ParseMail(stream);
    benchmark::DoNotOptimize(g_mime_object_get_header(GMIME_OBJECT(message), "Subject"));
    g_object_unref(message);
  }
  g_object_unref(stream);
  Finish(state, text.size());
}
#endif

void AllTexts(benchmark::internal::Benchmark* benchmark) {
  for (const std::int64_t size : {80, 4 << 10, 256 << 10, 64 << 20}) {
    for (const std::int64_t script : {kAscii, kShiftJis, kEscapes}) benchmark->Args({size, script});
  }
}

void AsciiSizes(benchmark::internal::Benchmark* benchmark) {
  for (const std::int64_t size : {80, 4 << 10, 256 << 10, 64 << 20}) benchmark->Args({size, kAscii});
}

// Argument: how many headers; 0 is a usual header of 4 KB.
void HeaderSizes(benchmark::internal::Benchmark* benchmark) { benchmark->Arg(0)->Arg(2000); }

BENCHMARK_CAPTURE(BodyLines, ours, nullptr)->Apply(AllTexts);
BENCHMARK_CAPTURE(BodyLines, portable, wfinfo::RunnableLineKernels().front())->Apply(AllTexts);
BENCHMARK_CAPTURE(BodyLines, best, &wfinfo::Lines())->Apply(AllTexts);
BENCHMARK_CAPTURE(BodyLines, next, NextSmallerLineKernels())->Apply(AllTexts);
#if defined(__x86_64__)
BENCHMARK(BodyLinesOneByteAvx2)->Apply(AllTexts);
#endif
BENCHMARK(BodyLinesRef)->Apply(AllTexts);
BENCHMARK(BodyCopy)->Apply(AsciiSizes);
BENCHMARK(BodyCopyMemcpy)->Apply(AsciiSizes);
BENCHMARK_CAPTURE(LastHeader, ours, nullptr)->Apply(HeaderSizes);
BENCHMARK_CAPTURE(LastHeader, portable, wfinfo::RunnableLineKernels().front())->Apply(HeaderSizes);
BENCHMARK_CAPTURE(LastHeader, best, &wfinfo::Lines())->Apply(HeaderSizes);
BENCHMARK_CAPTURE(LastHeader, next, NextSmallerLineKernels())->Apply(HeaderSizes);
BENCHMARK(LastOfAlike)->Arg(2000);
BENCHMARK(LastHeaderMemchr)->Apply(HeaderSizes);
#ifdef WFINFO_WITH_GMIME
BENCHMARK(BodyLinesGMime)->Apply(AsciiSizes);
BENCHMARK(LastHeaderGMime)->Apply(HeaderSizes);
#endif

}  // namespace
