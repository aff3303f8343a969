// Conversions of Japanese text and the tests that tell encodings apart. Peers: iconv on whole texts, iconv
// character by character (in the place of the system's per-character call, which needs Windows),
// simdjson's validator.
#include <benchmark/benchmark.h>
#include <iconv.h>

#include <random>
#include <string>
#include <string_view>

#include "src/text/host_text.h"
#include "src/text/shift_jis_text.h"
#include "src/text/utf8_text.h"
#include "src/text/wide_text.h"
#include "tests/support/iconv_code_page.h"

#ifdef WFINFO_WITH_SIMDJSON
#include <simdjson.h>
#endif

namespace {

using wfinfo_test::IconvCodePage;

constexpr std::size_t kCharacters = 1 << 20;

// Japanese prose: hiragana, common ideographs, some katakana and ASCII.
std::u16string MakeWide() {
  std::mt19937 random(3);
  std::u16string text;
  while (text.size() < kCharacters) {
    const auto kind = random() % 100;
    if (kind < 50) {
      text += static_cast<char16_t>(0x3042 + random() % 0x50);
    } else if (kind < 80) {
      const auto ideograph = static_cast<char16_t>(0x4E00 + random() % 0x5000);
      if (IconvCodePage().Host(ideograph) != wfinfo::kNeedsEscape) text += ideograph;
    } else if (kind < 90) {
      text += static_cast<char16_t>(0x30A2 + random() % 0x50);
    } else if (kind < 95) {
      text += u"\u3002\r\n";
    } else {
      text += u"ASCII text 123";
    }
  }
  return text;
}

const std::u16string& Wide() {
  static const std::u16string text = MakeWide();
  return text;
}

const std::string& Host() {
  static const std::string text = [] {
    std::string host(4 * Wide().size(), '\0');
    host.resize(wfinfo::WideToHost(Wide(), host.data(), IconvCodePage()));
    return host;
  }();
  return text;
}

const std::string& Utf8() {
  static const std::string text = [] {
    std::string utf8(4 * Wide().size(), '\0');
    utf8.resize(wfinfo_test::Convert("UTF-8", "UTF-16LE", reinterpret_cast<const char*>(Wide().data()),
                                     2 * Wide().size(), utf8.data(), utf8.size()));
    return utf8;
  }();
  return text;
}

// Characters that Shift-JIS cannot hold, one in eight.
const std::u16string& WideWithEscapes() {
  static const std::u16string text = [] {
    std::u16string wide = Wide();
    for (std::size_t i = 0; i < wide.size(); i += 8) wide[i] = static_cast<char16_t>(0xAC00 + i % 0x2000);
    return wide;
  }();
  return text;
}

void SetBytes(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<long long>(bytes) * state.iterations());
}

// A converter that is kept open, so that only the conversion is measured.
class Iconv {
 public:
  Iconv(const char* to, const char* from) : converter_(iconv_open(to, from)) {}
  ~Iconv() { iconv_close(converter_); }
  std::size_t operator()(const void* input, std::size_t size, void* output, std::size_t room) {
    char* in = const_cast<char*>(static_cast<const char*>(input));
    char* out = static_cast<char*>(output);
    std::size_t left = room;
    iconv(converter_, &in, &size, &out, &left);
    return room - left;
  }

 private:
  iconv_t converter_;
};

void HostToWide(benchmark::State& state) {
  std::u16string out(Host().size(), u'\0');
  for (auto _ : state) benchmark::DoNotOptimize(wfinfo::HostToWide(Host(), out.data(), IconvCodePage()));
  SetBytes(state, Host().size());
}
BENCHMARK(HostToWide);

void HostToWideIconv(benchmark::State& state) {
  Iconv convert("UTF-16LE", "CP932");
  std::u16string out(Host().size(), u'\0');
  for (auto _ : state)
    benchmark::DoNotOptimize(convert(Host().data(), Host().size(), out.data(), 2 * out.size()));
  SetBytes(state, Host().size());
}
BENCHMARK(HostToWideIconv);

void HostToWideIconvByCharacter(benchmark::State& state) {
  Iconv convert("UTF-16LE", "CP932");
  std::u16string out(Host().size(), u'\0');
  for (auto _ : state) {
    char16_t* to = out.data();
    for (std::string_view rest = Host(); !rest.empty(); rest.remove_prefix(wfinfo::UnitLength(rest))) {
      const std::string_view unit = wfinfo::NextUnit(rest);
      to += convert(unit.data(), unit.size(), to, 4) / 2;
    }
    benchmark::DoNotOptimize(to);
  }
  SetBytes(state, Host().size());
}
BENCHMARK(HostToWideIconvByCharacter);

void WideToHost(benchmark::State& state) {
  const std::u16string& wide = state.range(0) != 0 ? WideWithEscapes() : Wide();
  std::string out(4 * wide.size(), '\0');
  for (auto _ : state) benchmark::DoNotOptimize(wfinfo::WideToHost(wide, out.data(), IconvCodePage()));
  SetBytes(state, 2 * wide.size());
}
BENCHMARK(WideToHost)->Arg(0)->Arg(1)->ArgName("escapes");

void WideToHostIconv(benchmark::State& state) {
  Iconv convert("CP932", "UTF-16LE");
  std::string out(4 * Wide().size(), '\0');
  for (auto _ : state)
    benchmark::DoNotOptimize(convert(Wide().data(), 2 * Wide().size(), out.data(), out.size()));
  SetBytes(state, 2 * Wide().size());
}
BENCHMARK(WideToHostIconv);

// What Shift-JIS cannot hold iconv refuses, which stands for the system's use of the default character.
void WideToHostIconvByCharacter(benchmark::State& state) {
  const std::u16string& wide = state.range(0) != 0 ? WideWithEscapes() : Wide();
  Iconv convert("CP932", "UTF-16LE");
  std::string out(4 * wide.size(), '\0');
  for (auto _ : state) {
    char* to = out.data();
    for (const char16_t unit : wide) to += convert(&unit, 2, to, 4);
    benchmark::DoNotOptimize(to);
  }
  SetBytes(state, 2 * wide.size());
}
BENCHMARK(WideToHostIconvByCharacter)->Arg(0)->Arg(1)->ArgName("escapes");

void ShiftJisTest(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(wfinfo::LooksLikeShiftJis(Host(), IconvCodePage()));
  SetBytes(state, Host().size());
}
BENCHMARK(ShiftJisTest);

void Utf8ToHost(benchmark::State& state) {
  std::string out(wfinfo::Utf8ToHostRoom(Utf8()), '\0');
  for (auto _ : state) benchmark::DoNotOptimize(wfinfo::Utf8ToHostMbcs(Utf8(), out.data(), IconvCodePage()));
  SetBytes(state, Utf8().size());
}
BENCHMARK(Utf8ToHost);

void LikelyUtf8(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(wfinfo::IsLikelyUtf8(Utf8()));
  SetBytes(state, Utf8().size());
}
BENCHMARK(LikelyUtf8);

// set: 0 SSE2, 1 AVX2.
void ValidateUtf8(benchmark::State& state) {
  const auto all = wfinfo::RunnableUtf8Validators();
  const auto& chosen = *all[std::min(static_cast<std::size_t>(state.range(0)), all.size() - 1)];
  for (auto _ : state) benchmark::DoNotOptimize(chosen.is_well_formed(Utf8()));
  SetBytes(state, Utf8().size());
}
BENCHMARK(ValidateUtf8)->Arg(0)->Arg(1)->ArgName("set");

#ifdef WFINFO_WITH_SIMDJSON
void ValidateUtf8Simdjson(benchmark::State& state, const char* name) {
  const auto* const implementation = simdjson::get_available_implementations()[name];
  if (implementation == nullptr) {
    state.SkipWithError("not built in");
    return;
  }
  for (auto _ : state) benchmark::DoNotOptimize(implementation->validate_utf8(Utf8().data(), Utf8().size()));
  SetBytes(state, Utf8().size());
}
BENCHMARK_CAPTURE(ValidateUtf8Simdjson, haswell, "haswell");
BENCHMARK_CAPTURE(ValidateUtf8Simdjson, westmere, "westmere");
#endif

}  // namespace
