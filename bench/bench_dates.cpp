// Reading and printing dates, beside the parsers of GMime and curl and beside strftime. Each row gives
// nanoseconds for one date; "times_ours" is how many times as long as ours the peer of the same group takes.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "src/dates/date_format.h"
#include "src/dates/date_parse.h"
#ifdef WFINFO_WITH_GMIME
#include <gmime/gmime.h>
#endif
#ifdef WFINFO_WITH_CURL
#include <curl/curl.h>
#endif

namespace {

using namespace wfinfo;

constexpr std::size_t kDates = 16'384;  // too many for the branch predictor to learn by heart

std::vector<CivilTime> RandomTimes() {
  std::mt19937_64 random(47);
  const FileTicks first = DayNumber(1995, 1, 1) * kTicksPerDay, last = DayNumber(2035, 1, 1) * kTicksPerDay;
  std::vector<CivilTime> times;
  for (std::size_t i = 0; i < kDates; ++i) {
    const auto range = static_cast<std::uint64_t>(last - first);
    times.push_back(*CivilFromTicks(first + static_cast<FileTicks>(random() % range)));
  }
  return times;
}

std::string Printed(std::string_view format, const CivilTime& time) {
  char text[128];
  return {text, FormatDateText(format, time, text, sizeof text)};
}

// What mail headers hold: mostly the usual form, comments behind it, some with named zones or
// without weekday.
std::vector<std::string> MailDates() {
  constexpr const char* kZones[] = {" +0900", " +0000",       " -0800",       " -0500",       " +0100",
                                    " +0530", " +0900 (JST)", " +0000 (UTC)", " -0700 (PDT)", " GMT"};
  constexpr const char* kFormats[] = {"EW, DD EM YYYY hh:mm:ss", "EW, DD EM YYYY hh:mm:ss",
                                      "EW,  D EM YYYY hh:mm:ss", "DD EM YYYY hh:mm:ss"};
  std::mt19937 random(48);
  std::vector<std::string> dates;
  for (const CivilTime& time : RandomTimes()) {
    dates.push_back(Printed(kFormats[random() % std::size(kFormats)], time) +
                    kZones[random() % std::size(kZones)]);
  }
  return dates;
}

// Forms beside the usual one that all three parsers know, one for each number.
constexpr unsigned kOtherForms = 6;
std::string OtherDate(unsigned form, const CivilTime& time) {
  struct Form {
    const char* format;
    const char* zone;  // no part of the format, where M is the month
  };
  static constexpr Form kForms[kOtherForms] = {
      {"EW, DD EM YYYY hh:mm:ss", " GMT"}, {"EW, DD EM YY hh:mm:ss", " +0100"},
      {"EFW, DD-EM-YY hh:mm:ss", " GMT"},  {"EW EM DD hh:mm:ss YYYY", ""},
      {"DD EM YYYY hh:mm:ss", " EST"},     {"EW, DD EM YYYY hh:mm:ss", ""}};
  return Printed(kForms[form].format, time) + kForms[form].zone;
}

enum class Order { kMixed, kFormByForm };

// Form by form, what comes can be foreseen: the time beyond is that of guesses that fail.
std::vector<std::string> OtherDates(Order order) {
  std::mt19937 random(49);
  std::vector<std::string> dates;
  for (const CivilTime& time : RandomTimes()) {
    const auto drawn = static_cast<unsigned>(random() % kOtherForms);
    const auto next = static_cast<unsigned>(dates.size() * kOtherForms / kDates);
    dates.push_back(OtherDate(order == Order::kMixed ? drawn : next, time));
  }
  return dates;
}

// Runs `work` over all items again and again, and shows the time against the one that the group's first
// row took.
template <class Items, class Work>
void Measure(benchmark::State& state, const Items& items, double& ours_ns, bool is_ours, Work work) {
  std::size_t at = 0;
  const std::clock_t start = std::clock();  // processor time: other programs do not count
  for (auto _ : state) {
    work(items[at]);
    at = (at + 1) % kDates;
  }
  const double ns = static_cast<double>(std::clock() - start) * (1e9 / CLOCKS_PER_SEC) /
                    static_cast<double>(state.iterations());
  if (is_ours) ours_ns = ns;
  state.counters["times_ours"] = ns / ours_ns;
}

double g_read_mail_ns, g_read_other_ns, g_read_in_order_ns, g_print_ns, g_header_ns;

void ReadOurs(benchmark::State& state, const std::vector<std::string>& dates, double& ours_ns) {
  Measure(state, dates, ours_ns, true, [](const std::string& date) {
    auto read = ReadHeaderDate(date);
    benchmark::DoNotOptimize(read);
  });
}

#ifdef WFINFO_WITH_GMIME
void ReadGMime(benchmark::State& state, const std::vector<std::string>& dates, double& ours_ns) {
  Measure(state, dates, ours_ns, false, [](const std::string& date) {
    GDateTime* const read = g_mime_utils_header_decode_date(date.c_str());
    benchmark::DoNotOptimize(read);
    if (read != nullptr) g_date_time_unref(read);
  });
}
#endif

#ifdef WFINFO_WITH_CURL
void ReadCurl(benchmark::State& state, const std::vector<std::string>& dates, double& ours_ns) {
  Measure(state, dates, ours_ns, false, [](const std::string& date) {
    time_t read = curl_getdate(date.c_str(), nullptr);
    benchmark::DoNotOptimize(read);
  });
}
#endif

void PrintOurs(benchmark::State& state, const char* format, double& ours_ns) {
  const std::string_view text = format;
  Measure(state, RandomTimes(), ours_ns, true, [text](const CivilTime& time) {
    char out[128];
    benchmark::DoNotOptimize(FormatDateText(text, time, out, sizeof out));
    benchmark::ClobberMemory();
  });
}

std::vector<std::tm> RandomTm() {
  std::vector<std::tm> times;
  for (const CivilTime& t : RandomTimes()) {
    std::tm tm = {};
    tm.tm_year = t.year - 1900;
    tm.tm_mon = t.month - 1;
    tm.tm_mday = t.day;
    tm.tm_wday = t.weekday;
    tm.tm_hour = t.hour;
    tm.tm_min = t.minute;
    tm.tm_sec = t.second;
    times.push_back(tm);
  }
  return times;
}

void PrintStrftime(benchmark::State& state, const char* format, double& ours_ns) {
  Measure(state, RandomTm(), ours_ns, false, [format](const std::tm& time) {
    char out[128];
    benchmark::DoNotOptimize(std::strftime(out, sizeof out, format, &time));
    benchmark::ClobberMemory();
  });
}

void PrintDefaultForm(benchmark::State& state) {
  double ours_ns = 0;
  Measure(state, RandomTimes(), ours_ns, true, [](const CivilTime& time) {
    char out[kDefaultFormRoom];
    benchmark::DoNotOptimize(DefaultDateForm(time, -540, out));
    benchmark::ClobberMemory();
  });
}

BENCHMARK_CAPTURE(ReadOurs, mail_dates, MailDates(), g_read_mail_ns);
#ifdef WFINFO_WITH_GMIME
BENCHMARK_CAPTURE(ReadGMime, mail_dates, MailDates(), g_read_mail_ns);
#endif
#ifdef WFINFO_WITH_CURL
BENCHMARK_CAPTURE(ReadCurl, mail_dates, MailDates(), g_read_mail_ns);
#endif
BENCHMARK_CAPTURE(ReadOurs, other_forms, OtherDates(Order::kMixed), g_read_other_ns);
BENCHMARK_CAPTURE(ReadOurs, other_forms_in_order, OtherDates(Order::kFormByForm), g_read_in_order_ns);
#ifdef WFINFO_WITH_GMIME
BENCHMARK_CAPTURE(ReadGMime, other_forms, OtherDates(Order::kMixed), g_read_other_ns);
#endif
#ifdef WFINFO_WITH_CURL
BENCHMARK_CAPTURE(ReadCurl, other_forms, OtherDates(Order::kMixed), g_read_other_ns);
#endif
BENCHMARK_CAPTURE(PrintOurs, numbers, "YYYY/MM/DD hh:mm:ss", g_print_ns);
BENCHMARK_CAPTURE(PrintStrftime, numbers, "%Y/%m/%d %H:%M:%S", g_print_ns);
BENCHMARK_CAPTURE(PrintOurs, header, "EW, DD EM YYYY hh:mm:ss", g_header_ns);
BENCHMARK_CAPTURE(PrintStrftime, header, "%a, %d %b %Y %H:%M:%S", g_header_ns);
BENCHMARK(PrintDefaultForm);

}  // namespace
