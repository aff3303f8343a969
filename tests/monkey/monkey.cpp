// Random exports in random order with hostile arguments, against a host that answers at random.
//
//   monkey CALLS SEED [--only FIRST-LAST,NUMBER,...]
//
// Exit code 0: nothing was found. A crash or a call that does not come back within 20 seconds is told with the
// call's number and ends with 1, growth with 2: "monkey.py" finds the shortest sequence for it.
#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "src/bridge/host_protocol.h"
#include "src/catalogue/rows.h"
#include "tests/monkey/arguments_win.h"
#include "tests/monkey/exclusions.h"
#include "tests/monkey/host_win.h"
#include "tests/monkey/measure_win.h"

namespace monkey {
namespace {

using wfinfo::catalogue::Row;

constexpr std::size_t kMostParameters = 14;
constexpr int kPatienceMs = 20000;
constexpr DWORD kBoxPollMs = 10;

struct Export {
  const Row* row;
  Slot (*call)(Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot);
};

std::vector<Export> g_exports;
std::string g_call;  // the call at hand, and those inside it
std::atomic<unsigned long long> g_number = 0;
std::atomic<DWORD> g_since = 0;  // tick at which it began; 0 between calls
DWORD g_thread = 0;

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
    PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
    PostMessageA(window, WM_COMMAND, IDOK, 0);
    PostMessageA(window, WM_COMMAND, IDNO, 0);
  }
  return TRUE;
}

// Presses the boxes away, and sees that each call comes back.
DWORD WINAPI Watch(void*) {
  for (;; Sleep(kBoxPollMs)) {
    EnumThreadWindows(g_thread, &CloseBox, 0);
    const DWORD since = g_since;
    if (since != 0 && static_cast<int>(GetTickCount() - since) > kPatienceMs) Tell("no end", 1);
  }
}

// --- Calls ---

void FindExports() {
  const HMODULE library = LoadLibraryA("WFINFO.dll");
  for (const Row& row : wfinfo::catalogue::Rows()) {
    if (!ReasonToLeaveOut(row).empty()) continue;
    const auto address = reinterpret_cast<void*>(GetProcAddress(library, std::string(row.name).c_str()));
    if (address == nullptr) {
      std::printf("%s is not exported\n", std::string(row.name).c_str());
      std::exit(1);
    }
    g_exports.push_back({&row, reinterpret_cast<decltype(Export::call)>(address)});
  }
}

void ChooseLanguage(unsigned english) {
  static const auto notify = reinterpret_cast<void (*)(const void*)>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("WFINFO.dll"), "NotifyWrenfoldInfo")));
  wfinfo::HandOverRecord record{sizeof record, english, [](const char*) {}};
  notify(&record);
}

void Call(Dice& dice, Arguments& arguments) {
  const Export& chosen = g_exports[dice.Below(g_exports.size())];
  const std::size_t before = g_call.size();
  g_call.append(chosen.row->name).append("(");
  Slot a[kMostParameters] = {};
  for (std::size_t i = 0; i < chosen.row->parameters.size(); ++i) {
    std::string shown;
    a[i] = arguments.For(chosen.row->parameters[i], dice, shown);
    g_call.append(i > 0 ? ", " : "").append(shown);
  }
  g_call += ") ";
  const Slot result =
      chosen.call(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9], a[10], a[11], a[12], a[13]);
  if (chosen.row->result.ends_with("Str")) arguments.Keep(reinterpret_cast<const char*>(result));
  g_call.resize(before);
}

void Pump() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
}

// --- Sequences ---

struct Options {
  unsigned long long calls = 0;
  unsigned long long seed = 0;
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
    if (std::strcmp(words[i], "--only") != 0 || i + 1 == count) return false;
    ReadRanges(words[++i], options);
  }
  if (options.only.empty() && options.calls > 0) options.only.emplace_back(0, options.calls - 1);
  return true;
}

// The calls of one process, with what they work on.
class Run {
 public:
  explicit Run(const Options& options) : options_(options) {
    host_.reenter = [this](Dice& dice) { Call(dice, arguments_); };
  }

  void Make(unsigned long long number) {
    Dice dice(options_.seed, number);
    if (number % 1000 == 0) ChooseLanguage(static_cast<unsigned>(number / 1000 % 2));
    host_.Prepare(dice);
    g_number = number;
    g_since = GetTickCount() | 1;
    host_.dice = &dice;
    Call(dice, arguments_);
    if (dice.OneIn(8)) Pump();
    host_.dice = nullptr;
    g_since = 0;
  }

 private:
  const Options& options_;
  Host host_;
  Arguments arguments_;
};

void Show(unsigned long long done, const Holdings& held) {
  std::printf("%llu calls; GDI %u, USER %u, windows %u, handles %lu, %zu KiB\n", done, held.gdi, held.user,
              held.windows, held.handles, held.bytes / 1024);
  std::fflush(stdout);
}

// What a run may hold more at its end than after its first fifth: caches that fill, fragments.
bool HasGrown(const Holdings& before, const Holdings& after) {
  return after.gdi > before.gdi + 16 || after.user > before.user + 16 ||
         after.handles > before.handles + 64 || after.bytes > before.bytes + 32 * 1024 * 1024;
}

int Main(const Options& options) {
  g_thread = GetCurrentThreadId();
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  SetUnhandledExceptionFilter(&TellCrash);
  FindExports();
  CloseHandle(CreateThread(nullptr, 0, &Watch, nullptr, 0, nullptr));
  Run run(options);
  unsigned long long total = 0;
  for (const auto& [first, last] : options.only) total += last - first + 1;
  const unsigned long long step = total / 10 + 1;
  unsigned long long done = 0;
  Holdings early{};
  for (const auto& [first, last] : options.only) {
    for (auto number = first; number <= last; ++number) {
      run.Make(number);
      if (++done % step != 0) continue;
      const Holdings held = Measure();
      Show(done, held);
      if (done == 2 * step) early = held;
    }
  }
  const Holdings late = Measure();
  Show(done, late);
  if (early.handles == 0 || !HasGrown(early, late)) return 0;
  std::printf("growth since call %llu\n", 2 * step);
  return 2;
}

}  // namespace
}  // namespace monkey

int main(int count, char** words) {
  monkey::Options options;
  if (!monkey::ReadOptions(count, words, options)) {
    std::fprintf(stderr, "usage: monkey CALLS SEED [--only FIRST-LAST,NUMBER,...]\n");
    return 2;
  }
  return monkey::Main(options);
}
