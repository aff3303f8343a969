// task_cost: what a macro waits for, through the exports of the library; the least of some rounds. Beside it
// what the check of a text parameter alone takes, which reads the text byte by byte.
#include <windows.h>

#include <cstdio>
#include <string>

#include "bench/windows/report.h"
#include "bench/windows/stopwatch.h"

extern "C" {
#include "wfinfo.h"
}

namespace {

using wfinfo_bench::Least_ns;

std::string List(int entries) {
  std::string list;
  for (int i = 0; i < entries; ++i) {
    const std::string number = std::to_string(i);
    list += "\"Recipient, No. " + number + "\" <r" + number + "@mail.example.com>, ";
  }
  return list;
}

// Nanoseconds for each of `calls` calls: one entry after the other, within four stretches of the list, so
// that the middle and the end are among them.
double EntriesByNumber_ns(const std::string& list, int entries, int calls) {
  const int stretch = calls / 4;
  return Least_ns([&] {
           for (int i = 0; i < calls; ++i) {
             const int n = entries / 8 + entries / 4 * (i / stretch) + i % stretch;
             if (GetEmailList(list.c_str(), n)[0] == '\0') std::printf("no entry\n");
           }
         }) /
         calls;
}

double Check_ns(const std::string& text) {
  return Least_ns([&] {
    if (IsBadStringPtrA(text.c_str(), static_cast<UINT_PTR>(-1) >> 1)) std::printf("a bad text\n");
  });
}

}  // namespace

int main() {
  const std::string list = List(20000), short_list = List(2000);
  const std::string text = "C:\\" + std::string(1 << 20, 'a');
  const auto size = static_cast<double>(text.size());
  wfinfo_bench::Report report;
  report.Time("GetEmailList/all", EntriesByNumber_ns(list, 20000, 400));
  report.Time("GetEmailList/2000", EntriesByNumber_ns(short_list, 2000, 400));
  report.Time("IsBadStringPtr/list", Check_ns(list));
  report.Time("IsBadStringPtr/text", Check_ns(text), size);
  report.Time("ToUpper", Least_ns([&] { ToUpper(text.c_str()); }), size);
  report.Time("ToLower", Least_ns([&] { ToLower(text.c_str()); }), size);
  report.Time("ToBaseName", Least_ns([&] { ToBaseName(text.c_str()); }), size);
  return 0;
}
