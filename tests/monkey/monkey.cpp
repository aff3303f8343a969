// Random exports in random order with hostile arguments, against a host that answers at random.
//
//   monkey CALLS SEED [--only FIRST-LAST,NUMBER,... | --row EXPORT] [--show] [--growth]
//   monkey --left-out
//
// Exit code 0: nothing was found. A crash or a call that does not come back within 20 seconds, or longer on a busy
// machine, is told with the call's number and ends with 1, growth with 2, an export that was never called with 3:
// "monkey.py" finds the shortest sequence. --show prints each call, --growth the exports behind which handles and
// memory grew (slow).
//
// The last of the calls are made in rows: one export again and again, with other arguments each time, at a host that
// keeps calm. What it holds must not grow with each stretch of them. --row makes the row of one export alone.
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "src/bridge/host_protocol.h"
#include "src/catalogue/rows.h"
#include "tests/monkey/arguments_win.h"
#include "tests/monkey/exclusions.h"
#include "tests/monkey/growth.h"
#include "tests/monkey/host_win.h"
#include "tests/monkey/library_memory_win.h"
#include "tests/monkey/measure_win.h"

namespace monkey {
namespace {

using wfinfo::catalogue::Row;

constexpr std::size_t kMostParameters = 14;
constexpr int kPatienceMs = 20000;
constexpr DWORD kBoxPollMs = 10;
constexpr unsigned kPatiencePolls =
    1000;  // a machine with much else to do takes longer for a look, and for a call
constexpr unsigned long long kWithBoxes = 500;          // calls before the host takes the messages itself
constexpr unsigned long long kEnoughForAll = 10000;     // calls that reach every export, whatever the seed
constexpr unsigned long long kCallsOfALanguage = 1000;  // then the other one

// Rows of calls of one export.
constexpr unsigned long long kToWarmUp = 10;
constexpr unsigned long long kStretch = 100;
constexpr unsigned long long kMostStretches = 8;  // as long as something grows with each
constexpr unsigned long long kUsualRow = kToWarmUp + kStretch;
constexpr unsigned long long kNumbersOfARow = 1000;
constexpr unsigned long long kCallsForEachMsOfARow = 50;  // of a run: a row of slow calls ends early
static_assert(kToWarmUp + kMostStretches * kStretch <= kNumbersOfARow);

struct Export {
  const Row* row;
  Slot (*call)(Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot);
  unsigned long long calls;
};

std::vector<Export> g_exports;
std::string g_call;  // the call at hand, and those inside it
std::atomic<unsigned long long> g_number = 0;
std::atomic<DWORD> g_since = 0;  // tick at which it began; 0 between calls
DWORD g_thread = 0;
bool g_show = false;

// --- Findings ---

[[noreturn]] void Tell(const char* what, unsigned code) {
  std::printf("%s in call %llu: %s\n", what, g_number.load(), g_call.c_str());
  std::fflush(stdout);
  TerminateProcess(GetCurrentProcess(), code);
  std::abort();
}

LONG WINAPI TellCrash(EXCEPTION_POINTERS* exception) {
  char what[64];
  wsprintfA(what, "exception %08X", exception->ExceptionRecord->ExceptionCode);
  Tell(what, 1);
}

BOOL CALLBACK CloseBox(HWND window, LPARAM) {
  char name[16];
  if (GetClassNameA(window, name, sizeof name) != 0 && std::strcmp(name, wfinfo::kDialogClass) == 0) {
    PostMessageA(window, WM_CANCELMODE, 0, 0);  // its menu, which a key that a call pressed may open
    PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
    PostMessageA(window, WM_COMMAND, IDOK, 0);
    PostMessageA(window, WM_COMMAND, IDNO, 0);
    PostMessageA(window, WM_COMMAND, IDABORT, 0);
  }
  return TRUE;
}

BOOL CALLBACK ShowWindowOfThread(HWND window, LPARAM) {
  char name[32] = "";
  GetClassNameA(window, name, sizeof name);
  std::printf("  window %s%s\n", name, IsWindowEnabled(window) ? "" : ", disabled");
  return TRUE;
}

// Presses the boxes away, and sees that each call comes back.
DWORD WINAPI Watch(void*) {
  unsigned long long number = 0;
  for (unsigned polls = 0;; Sleep(kBoxPollMs)) {
    EnumThreadWindows(g_thread, &CloseBox, 0);
    const DWORD since = g_since;
    polls = since != 0 && number == g_number ? polls + 1 : 0;
    number = g_number;
    if (polls > kPatiencePolls && static_cast<int>(GetTickCount() - since) > kPatienceMs) {
      EnumThreadWindows(g_thread, &ShowWindowOfThread, 0);
      Tell("no end", 1);
    }
  }
}

// --- Calls ---

void FindExports() {
  const HMODULE library = LoadLibraryA("WFINFO.dll");
  WatchLibraryMemory();
  for (const Row& row : wfinfo::catalogue::Rows()) {
    if (!ReasonToLeaveOut(row.name).empty()) continue;
    const auto address = reinterpret_cast<void*>(GetProcAddress(library, std::string(row.name).c_str()));
    if (address == nullptr) {
      std::printf("%s is not exported\n", std::string(row.name).c_str());
      std::exit(1);
    }
    g_exports.push_back({&row, reinterpret_cast<decltype(Export::call)>(address), 0});
  }
}

// Prints what is not called, and why. False when a name of the lists is no export.
bool ShowLeftOut() {
  bool known = true;
  const auto show = [&](const LeftOut& left) {
    std::printf("%s: %s\n", std::string(left.name).c_str(), std::string(left.why).c_str());
  };
  const auto show_export = [&](const LeftOut& left) {
    show(left);
    if (wfinfo::catalogue::FindRow(left.name) != nullptr) return;
    std::printf("%s is no export\n", std::string(left.name).c_str());
    known = false;
  };
  std::puts("[left out]");
  for (const LeftOut& left : kLeftOut) show_export(left);
  std::puts("[called by the set-up]");
  for (const LeftOut& left : kCalledBySetUp) show_export(left);
  std::puts("[never done]");
  for (const LeftOut& left : kTamed) show(left);
  for (const OwnTexts& own : kOwnTexts) {
    const Row* const row = wfinfo::catalogue::FindRow(own.name);
    const bool there =
        row != nullptr && std::any_of(row->parameters.begin(), row->parameters.end(),
                                      [&](const auto& each) { return each.name == own.parameter; });
    if (!there)
      std::printf("%s has no %s\n", std::string(own.name).c_str(), std::string(own.parameter).c_str());
    known = known && there;
  }
  return known;
}

template <class Function>
Function Exported(const char* name) {
  return reinterpret_cast<Function>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("WFINFO.dll"), name)));
}

Host* g_host = nullptr;

// What the host hands over, by the number of the call: boxes at first, then a function that calls back; both
// languages; a table of services or none.
void HandOver(unsigned long long number) {
  static const auto notify = Exported<void (*)(const void*)>("NotifyWrenfoldInfo");
  static const auto version = Exported<int (*)(void*)>("GetWFInfoVersion");
  static void* services[wfinfo::kLogEntry + 1];
  services[wfinfo::kLogEntry] = reinterpret_cast<void*>(
      static_cast<wfinfo::LogFunction>([](const char*, unsigned) { g_host->Interrupt(); }));
  wfinfo::HandOverRecord record{8, static_cast<unsigned>(number / kCallsOfALanguage % 2),
                                [](const char*) { g_host->Interrupt(); }};
  if (number >= kWithBoxes) record.size = sizeof record;
  notify(&record);
  version(number / 300 % 2 != 0 ? services : nullptr);
}

// Exports with a body of their own; of those that are made of rows alone one of each form, another with each seed.
std::vector<Export*> ExportsForRows(unsigned long long seed) {
  std::vector<Export*> chosen;
  std::map<std::string, std::vector<Export*>> forms;
  for (Export& each : g_exports) {
    const Row& row = *each.row;
    if (row.kind == wfinfo::catalogue::Kind::kHand) {
      chosen.push_back(&each);
      continue;
    }
    std::string form = std::to_string(static_cast<int>(row.kind));
    form.append(" ").append(row.dispatcher).append(" ").append(row.result);
    for (const auto& parameter : row.parameters) form.append(" ").append(parameter.type);
    forms[form].push_back(&each);
  }
  for (const auto& [form, exports] : forms) chosen.push_back(exports[seed % exports.size()]);
  return chosen;
}

void Call(Export& chosen, Dice& dice, Arguments& arguments) {
  ++chosen.calls;
  const std::size_t before = g_call.size();
  g_call.append(chosen.row->name).append("(");
  Slot a[kMostParameters] = {};
  for (std::size_t i = 0; i < chosen.row->parameters.size(); ++i) {
    std::string shown;
    a[i] = arguments.For(*chosen.row, chosen.row->parameters[i], dice, shown);
    g_call.append(i > 0 ? ", " : "").append(shown);
  }
  g_call += ") ";
  if (g_show) std::printf("%llu: %s\n", g_number.load(), g_call.c_str()), std::fflush(stdout);
  const Slot result =
      chosen.call(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9], a[10], a[11], a[12], a[13]);
  if (chosen.row->result.ends_with("Str")) {
    arguments.Keep(reinterpret_cast<const char*>(result));
  } else if (chosen.row->result == "Int") {
    arguments.Keep(result);
  }
  g_call.resize(before);
}

// The name of the export that was called.
std::string_view CallAny(Dice& dice, Arguments& arguments) {
  Export& chosen = g_exports[dice.Below(g_exports.size())];
  Call(chosen, dice, arguments);
  return chosen.row->name;
}

bool AllWereCalled() {
  bool all = true;
  for (const Export& each : g_exports) {
    if (each.calls != 0) continue;
    std::printf("%s was never called\n", std::string(each.row->name).c_str());
    all = false;
  }
  return all;
}

void Pump() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
}

// --- Sequences ---

struct Options {
  unsigned long long calls = 0;
  unsigned long long seed = 0;
  bool growth = false;
  std::string row;  // the only export called in a row, and no other calls; "" for all
  std::vector<std::pair<unsigned long long, unsigned long long>> only;  // first and last
};

void ReadRanges(const char* text, Options& options) {
  for (char* end; *text != '\0'; text = *end == ',' ? end + 1 : end) {
    const auto first = std::strtoull(text, &end, 10);
    const auto last = *end == '-' ? std::strtoull(end + 1, &end, 10) : first;
    options.only.emplace_back(first, last);
  }
}

bool ReadOptions(int count, char** words, Options& options) {
  if (count < 3) return false;
  options.calls = std::strtoull(words[1], nullptr, 10);
  options.seed = std::strtoull(words[2], nullptr, 10);
  for (int i = 3; i < count; ++i) {
    if (std::strcmp(words[i], "--show") == 0) {
      g_show = true;
    } else if (std::strcmp(words[i], "--growth") == 0) {
      options.growth = true;
    } else if (std::strcmp(words[i], "--row") == 0 && i + 1 < count) {
      options.row = words[++i];
    } else if (std::strcmp(words[i], "--only") == 0 && i + 1 < count) {
      ReadRanges(words[++i], options);
    } else {
      return false;
    }
  }
  return true;
}

struct Growth {
  long handles = 0;
  long long bytes = 0;
};

// The calls of one process, with what they work on.
class Run {
 public:
  explicit Run(const Options& options) : options_(options), rows_(ExportsForRows(options.seed)) {
    g_host = &host_;
    host_.reenter = [this](Dice& dice) { CallAny(dice, arguments_); };
    const unsigned long long in_rows = rows_.size() * kUsualRow;
    first_of_rows_ = options.calls;
    if (options.calls >= in_rows + kEnoughForAll) first_of_rows_ -= in_rows;
  }
  ~Run() { g_host = nullptr; }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  // The call of the number at which rows begin; the number of calls when there are too few for rows.
  unsigned long long FirstOfRows() const { return first_of_rows_; }

  void Make(unsigned long long number) {
    const std::size_t row =
        number < first_of_rows_ ? rows_.size() : (number - first_of_rows_) / kNumbersOfARow;
    if (number >= first_of_rows_ && row >= rows_.size()) return;
    Dice dice(options_.seed, number);
    HandOver(number);
    host_.calm = row < rows_.size();
    host_.Prepare(dice);
    arguments_.windows = host_.Windows();
    g_number = number;
    const Holdings before = options_.growth ? Measure() : Holdings{};
    g_since = GetTickCount() | 1;
    host_.dice = &dice;
    std::string_view name;
    if (row < rows_.size()) {
      name = rows_[row]->row->name;
      Call(*rows_[row], dice, arguments_);
    } else {
      name = CallAny(dice, arguments_);
    }
    if (dice.OneIn(8)) Pump();
    host_.dice = nullptr;
    g_since = 0;
    if (options_.growth) Note(name, before, Measure());
  }

  // Makes each row of calls. The number of calls made; `grows` is set when something did.
  unsigned long long MakeRows(bool& grows) {
    unsigned long long made = 0;
    std::string slow;
    for (std::size_t row = 0; row < rows_.size() && first_of_rows_ < options_.calls; ++row) {
      if (!options_.row.empty() && rows_[row]->row->name != options_.row) continue;
      const unsigned long long first = first_of_rows_ + row * kNumbersOfARow;
      unsigned long long number = first;
      const DWORD began = GetTickCount();
      const auto is_late = [&] { return GetTickCount() - began > options_.calls / kCallsForEachMsOfARow; };
      const auto make = [&](unsigned long long calls, bool whole) {
        for (const auto end = number + calls; number < end && (whole || !is_late()); ++number, ++made)
          Make(number);
      };
      make(kToWarmUp, true);
      std::vector<Holdings> measures{Measure()};
      make(kStretch, false);
      measures.push_back(Measure());
      std::string grown = SteadyGrowth(measures);
      if (number < first + kUsualRow) slow.append(" ").append(rows_[row]->row->name);
      while (!grown.empty() && measures.size() <= kMostStretches) {
        make(kStretch, true);
        measures.push_back(Measure());
        grown = SteadyGrowth(measures);
      }
      if (grown.empty()) continue;
      grows = true;
      std::printf("growth: %s keeps %s of %llu calls in a row, from call %llu on\n",
                  std::string(rows_[row]->row->name).c_str(), grown.c_str(), number - first - kToWarmUp,
                  first);
    }
    if (!slow.empty()) std::printf("slow, so their rows ended early:%s\n", slow.c_str());
    return made;
  }

  // The exports with which most has grown, re-entered ones under the outermost's name.
  void ShowGrowth() const {
    for (const auto& [name, grown] : growth_) {
      if (grown.handles > 4 || grown.bytes > 1 << 20) {
        std::printf("  %s: %ld handles, %lld bytes\n", std::string(name).c_str(), grown.handles, grown.bytes);
      }
    }
  }

 private:
  void Note(std::string_view name, const Holdings& before, const Holdings& after) {
    Growth& grown = growth_[name];
    grown.handles += after.handles - before.handles;
    grown.bytes += static_cast<long long>(after.bytes) - static_cast<long long>(before.bytes);
  }

  const Options& options_;
  Host host_;
  Arguments arguments_;
  std::vector<Export*> rows_;  // what each row calls
  unsigned long long first_of_rows_ = 0;
  std::map<std::string_view, Growth> growth_;
};

void Show(unsigned long long done, const Holdings& held) {
  std::printf("%llu calls; GDI %ld, USER %ld, handles %ld, blocks %ld, %zu KiB\n", done, held.gdi, held.user,
              held.handles, held.blocks, held.bytes / 1024);
  std::fflush(stdout);
}

// Makes the calls of `ranges`; true when more is held at the end than after a fifth of them.
bool MakeInOrder(Run& run, const std::vector<std::pair<unsigned long long, unsigned long long>>& ranges,
                 unsigned long long& done) {
  unsigned long long total = 0;
  for (const auto& [first, last] : ranges) total += last - first + 1;
  const unsigned long long step = total / 10 + 1;
  std::vector<Holdings> measures;
  for (const auto& [first, last] : ranges) {
    for (auto number = first; number <= last; ++number) {
      run.Make(number);
      if (++done % step != 0) continue;
      const Holdings held = Measure();
      Show(done, held);
      if (done >= 2 * step) measures.push_back(held);
    }
  }
  measures.push_back(Measure());
  Show(done, measures.back());
  if (!HasGrown(measures)) return false;
  std::printf("growth since call %llu\n", 2 * step);
  return true;
}

int Main(const Options& options) {
  g_thread = GetCurrentThreadId();
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  SetUnhandledExceptionFilter(&TellCrash);
  FindExports();
  CloseHandle(CreateThread(nullptr, 0, &Watch, nullptr, 0, nullptr));
  Run run(options);
  auto ranges = options.only;
  if (ranges.empty() && options.row.empty() && run.FirstOfRows() > 0)
    ranges.emplace_back(0, run.FirstOfRows() - 1);
  unsigned long long done = 0;
  bool grows = MakeInOrder(run, ranges, done);
  run.ShowGrowth();
  if (options.only.empty()) {
    const unsigned long long in_rows = run.MakeRows(grows);
    done += in_rows;
    Show(done, Measure());
    std::printf("%zu exports; of the calls %llu in rows\n", g_exports.size(), in_rows);
  }
  if (grows) return 2;
  return done < kEnoughForAll || !options.row.empty() || AllWereCalled() ? 0 : 3;
}

}  // namespace
}  // namespace monkey

int main(int count, char** words) {
  if (count == 2 && std::strcmp(words[1], "--left-out") == 0) return monkey::ShowLeftOut() ? 0 : 3;
  monkey::Options options;
  if (!monkey::ReadOptions(count, words, options)) {
    std::fprintf(
        stderr,
        "usage: monkey CALLS SEED [--only FIRST-LAST,NUMBER,... | --row EXPORT] [--show] [--growth]\n"
        "       monkey --left-out\n");
    return 2;
  }
  return monkey::Main(options);
}
