// Address lists: large, varied input, so that the branch predictor learns nothing by heart. The peers read
// the same list; each row says how many addresses go through in a second.
#include <benchmark/benchmark.h>

#include <initializer_list>
#include <random>
#include <string>
#include <string_view>

#include "src/addresses/address_entry.h"
#include "src/addresses/address_list.h"
#include "src/text/long_text.h"
#include "tests/support/slow_address_entry.h"

#ifdef WFINFO_WITH_GMIME
#include <gmime/gmime.h>
#endif
#ifdef WFINFO_WITH_VMIME
#include <vmime/vmime.hpp>
#endif

namespace {

constexpr std::size_t kAddresses = 20000;

std::string Word(std::mt19937& random) {
  std::string word(3 + random() % 8, 'a');
  for (char& c : word) c = static_cast<char>('a' + random() % 26);
  return word;
}

std::string Join(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view piece : pieces) text += piece;
  return text;
}

// One address in one of the shapes that headers hold, of which peers take the first five.
constexpr unsigned kShapes = 8;
constexpr unsigned kAsciiShapes = 5;
std::string Entry(std::mt19937& random, unsigned shape) {
  const std::string address = Join({Word(random), ".", Word(random), "@", Word(random), ".example.com"});
  const std::string bracketed = Join({" <", address, ">"});
  const std::string one = Word(random), two = Word(random), three = Word(random);
  switch (shape) {
    case 0:
      return address;
    case 1:
      return Join({one, " ", two, bracketed});
    case 2:
      return Join({"\"", one, ", ", two, "\"", bracketed});
    case 3:
      return Join({"\"", one, " \\\"", two, "\\\"\"", bracketed});
    case 4:
      return Join({one, " (", two, ", ", three, ")", bracketed});
    case 5:
      return Join({"\x8E\x52\x93\x63\x81\x40\x91\xBE\x98\x59", bracketed});
    case 6:
      return Join({"\x83\x5C\x83\x7C\x1A\x9A\x80\x84 ", one, bracketed});
    default:
      return Join({"'", one, "'", bracketed});
  }
}

enum Kind : int { kAllShapes, kAsciiOnly, kShapeByShape };

std::string MakeList(Kind kind) {
  std::mt19937 random(4);
  std::string list;
  for (std::size_t i = 0; i < kAddresses; ++i) {
    if (i > 0) list += random() % 4 == 0 ? ",\r\n " : ", ";
    const auto drawn = static_cast<unsigned>(random() % (kind == kAsciiOnly ? kAsciiShapes : kShapes));
    list += Entry(random, kind == kShapeByShape ? static_cast<unsigned>(i * kShapes / kAddresses) : drawn);
  }
  return list;
}

// Shape by shape, what an entry is made of can be foreseen: the time beyond is that of guesses that fail.
const std::string& List(long long kind) {
  static const std::string lists[] = {MakeList(kAllShapes), MakeList(kAsciiOnly), MakeList(kShapeByShape)};
  return lists[kind];
}

void Report(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kAddresses));
}

void Split(benchmark::State& state) {
  const std::string_view list = List(state.range(0));
  for (auto _ : state) {
    for (wfinfo::AddressReader reader(list); reader.Read();) benchmark::DoNotOptimize(reader.entry());
  }
  Report(state);
}
BENCHMARK(Split)->ArgName("ascii")->DenseRange(0, 2);

void Count(benchmark::State& state) {
  const std::string_view list = List(state.range(0));
  for (auto _ : state) {
    if (wfinfo::CountAddresses(list).entries != kAddresses) state.SkipWithError("wrong count");
  }
  Report(state);
}
BENCHMARK(Count)->ArgName("ascii")->DenseRange(0, 2);

// Every entry by its number, as a macro asks for them in a loop.
void ByNumber(benchmark::State& state) {
  const std::string_view list = List(kAllShapes);
  for (auto _ : state) {
    for (std::size_t n = 0; n < kAddresses; ++n) benchmark::DoNotOptimize(wfinfo::NthAddressAgain(list, n));
  }
  Report(state);
}
BENCHMARK(ByNumber);

// What looking at the list for each entry takes, which nothing can be quicker than that notices every change.
void CompareForEach(benchmark::State& state) {
  const std::string_view list = List(kAllShapes);
  const std::string copy(list);
  for (auto _ : state) {
    for (std::size_t n = 0; n < kAddresses; ++n) {
      benchmark::ClobberMemory();
      benchmark::DoNotOptimize(wfinfo::AreSame(list.data(), copy.data(), list.size()));
    }
  }
  Report(state);
}
BENCHMARK(CompareForEach);

// The reference of the tests: a kind for every byte first, then searches.
void PlainLoop(benchmark::State& state) {
  const std::string_view list = List(kAsciiOnly);
  for (auto _ : state) {
    for (std::size_t at = 0;;) {
      const wfinfo_test::SlowAddressEntry entry(list, at);
      if (entry.error != wfinfo::AddressError::kNone) break;
      at = entry.next;
    }
  }
  Report(state);
}
BENCHMARK(PlainLoop);

#ifdef WFINFO_WITH_GMIME
void GMime(benchmark::State& state) {
  g_mime_init();
  const std::string& list = List(kAsciiOnly);
  for (auto _ : state) {
    InternetAddressList* const parsed = internet_address_list_parse(nullptr, list.c_str());
    benchmark::DoNotOptimize(internet_address_list_length(parsed));
    g_object_unref(parsed);
  }
  Report(state);
}
BENCHMARK(GMime);
#endif

#ifdef WFINFO_WITH_VMIME
void VMime(benchmark::State& state) {
  const std::string& list = List(kAsciiOnly);
  for (auto _ : state) {
    vmime::addressList parsed;
    parsed.parse(list);
    benchmark::DoNotOptimize(parsed.getAddressCount());
  }
  Report(state);
}
BENCHMARK(VMime);
#endif

}  // namespace
