// kit.exe: runs the tests of this folder on the Windows at hand and leaves a report (docs/test-kit.md).
#include <windows.h>

#include <cstdio>

#include "tools/kit/console_win.h"
#include "tools/kit/guard_win.h"
#include "tools/kit/runner_win.h"
#include "tools/kit/system_facts_win.h"
#include "tools/kit/text_win.h"

namespace kit {
namespace {

constexpr char kUsage[] =
    "run.cmd [--only PATTERN[:PATTERN...]] [--mapi] [--report FOLDER] [--one] [--like-wine]\r\n"
    "\r\n"
    "  --only       only the tests whose names fit, such as dll.Dates*:services.*\r\n"
    "  --mapi       as administrator: make wrenfold.exe the system's mail client for some tests, then put it "
    "back\r\n"
    "  --report     where the report goes; else beside run.cmd, or into %TEMP% where that cannot be "
    "written\r\n"
    "  --one        one test at a time\r\n"
    "  --like-wine  what failed under Wine too does not count in the exit code\r\n"
    "\r\n"
    "Exit code 0: nothing failed; 1: something did; 2: the kit could not run; 130: stopped by Ctrl+C.";

constexpr int kFine = 0, kSomethingFailed = 1, kCannotRun = 2, kStopped = 130;

struct Options {
  Wanted wanted;
  bool mapi = false;
  bool like_wine = false;
  std::wstring report;
};

// False when a word is none of the options.
bool ReadOptions(int count, wchar_t** words, Options& options) {
  for (int i = 1; i < count; ++i) {
    const std::wstring_view word = words[i];
    if (word == L"--only" && i + 1 < count) {
      options.wanted.only = Utf8(words[++i]);
    } else if (word == L"--report" && i + 1 < count) {
      options.report = words[++i];
    } else if (word == L"--mapi") {
      options.mapi = true;
    } else if (word == L"--one") {
      options.wanted.lanes = 1;
    } else if (word == L"--like-wine") {
      options.like_wine = true;
    } else {
      return false;
    }
  }
  return true;
}

std::wstring OwnFolder() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.rfind(L'\\'));
}

// Without the backslash at its end; in its short form where the user's name is not ASCII and there is one, since
// the tests hand paths on in the system's code page.
std::wstring TempFolder() {
  wchar_t path[MAX_PATH + 1] = L"", short_path[MAX_PATH + 1] = L"";
  GetTempPathW(MAX_PATH, path);
  const std::wstring_view long_one = path;
  const bool is_ascii =
      long_one.find_first_not_of(
          L" !#$%&'()+,-.0123456789:;=@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{}~") ==
      long_one.npos;
  if (!is_ascii && GetShortPathNameW(path, short_path, MAX_PATH) != 0) lstrcpyW(path, short_path);
  std::wstring folder = path;
  while (folder.ends_with(L'\\')) folder.pop_back();
  return folder;
}

// The first of the folders that takes the report; "" when none does.
std::wstring WriteReport(const Report& report, const std::vector<std::wstring>& folders) {
  const std::wstring name = L"\\wfinfo-report-" + TimeInName();
  for (const std::wstring& folder : folders) {
    if (folder.empty() || !WriteFileAt(folder + name + L".json", JsonOf(report))) continue;
    if (WriteFileAt(folder + name + L".html", HtmlOf(report))) return folder + name + L".html";
  }
  return L"";
}

bool PrepareWork(const Place& place, bool mapi) {
  for (const wchar_t* const part : {L"programs", L"host", L"samples"}) {
    if (!CopyTree(place.kit + L"\\" + part, place.work + L"\\" + part)) return false;
  }
  const std::wstring temporary = place.work + L"\\temp", keys = place.work + L"\\gnupg";
  // Children inherit these: nothing of the user's own is taken.
  SetEnvironmentVariableW(L"TEMP", temporary.c_str());
  SetEnvironmentVariableW(L"TMP", temporary.c_str());
  SetEnvironmentVariableW(L"GNUPGHOME", keys.c_str());
  SetEnvironmentVariableW(L"WRENFOLD_HOME", nullptr);
  SetEnvironmentVariableW(L"WFINFO_KIT_MAPI", mapi ? L"1" : nullptr);
  return MakeFolder(temporary) && MakeFolder(keys);
}

// Files that a test's program still held when it was ended go a moment later.
bool RemoveWork(const std::wstring& work) {
  for (int tries = 0; tries < 50; ++tries) {
    if (RemoveTree(work)) return true;
    Sleep(100);
  }
  return false;
}

void Summarise(const Report& report, const std::wstring& page) {
  Say(std::to_string(CountOf(report, Outcome::kPassed)) + " passed, " +
      std::to_string(CountOf(report, Outcome::kFailed)) + " failed, " +
      std::to_string(CountOf(report, Outcome::kSkipped)) + " skipped, " +
      std::to_string(CountOf(report, Outcome::kNotRun)) + " not run");
  if (page.empty()) {
    Complain("the report could be written nowhere: name a folder with --report");
  } else {
    Say("The report: " + Utf8(page));
    Say("Please send it back with the file .json beside it.");
  }
}

int Finish(const Report& report, const Options& options, bool could_run) {
  if (!could_run) return kCannotRun;
  if (report.stopped) return kStopped;
  for (const Result& result : report.results) {
    if (Counts(result, options.like_wine)) return kSomethingFailed;
  }
  return kFine;
}

int RunKit(const Options& options, const Plan& plan, const Record& record, const Place& place,
           const std::wstring& scratch) {
  const ULONGLONG began = GetTickCount64();
  Report report{plan.version, plan.commit, LocalTime()};
  report.recorded_on = record.system();
  report.system = SystemFacts();
  Guard guard(scratch, options.mapi, plan.key_containers);
  if (guard.mended())
    report.notes.push_back("A run before this one was cut off; its settings were put back.");
  if (!options.wanted.only.empty()) report.notes.push_back("Only " + options.wanted.only + ".");
  if (options.mapi) report.notes.push_back("With --mapi.");
  report.results = RunAll(plan, record, place, options.wanted);
  if (report.results.empty()) report.notes.push_back("No test has such a name.");
  const bool nothing = report.results.empty();
  report.results.push_back({"kit.settings_are_as_before", false, 0, guard.PutBack(), {}});
  const bool gone = RemoveWork(place.work);
  report.results.push_back(
      {"kit.own_folder_is_gone",
       false,
       0,
       gone ? Verdict{Outcome::kPassed, "", ""}
            : Verdict{Outcome::kFailed, "something still holds files in " + Utf8(place.work), ""},
       {}});
  report.stopped = StopIsWanted();
  report.seconds = static_cast<double>(GetTickCount64() - began) / 1000;
  const std::wstring page = WriteReport(report, {options.report, options.report.empty() ? place.kit : L"",
                                                 options.report.empty() ? scratch : L""});
  Summarise(report, page);
  TellDone();
  return Finish(report, options, !nothing && !page.empty());
}

int Main(int count, wchar_t** words) {
  Options options;
  if (!ReadOptions(count, words, options)) {
    Say(kUsage);
    return kCannotRun;
  }
  const Place place{OwnFolder(), TempFolder() + L"\\wfinfo-kit-" + std::to_wstring(GetCurrentProcessId())};
  const std::optional<std::string> plan_text = ReadFileAt(place.kit + L"\\kit.json");
  const std::optional<Plan> plan = plan_text ? ReadPlan(*plan_text) : std::nullopt;
  if (!plan) return Complain("kit.json is missing beside kit.exe: unpack the whole kit first"), kCannotRun;
  const Record record(ReadFileAt(place.kit + L"\\expected.json").value_or(""));
  CreateMutexW(nullptr, FALSE, L"Local\\WFINFO test kit");
  if (GetLastError() == ERROR_ALREADY_EXISTS) return Complain("it runs already"), kCannotRun;
  // No box that waits for somebody when a test crashes; children inherit it.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  TakeCtrlC();
  const std::wstring scratch = TempFolder();
  RemoveTree(place.work);
  if (!PrepareWork(place, options.mapi)) {
    RemoveTree(place.work);
    return Complain("its programs could not be copied to " + Utf8(place.work)), kCannotRun;
  }
  return RunKit(options, *plan, record, place, scratch);
}

}  // namespace
}  // namespace kit

int wmain(int count, wchar_t** words) { return kit::Main(count, words); }
