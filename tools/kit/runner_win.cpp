#include "tools/kit/runner_win.h"

#include <deque>
#include <mutex>
#include <thread>

#include "tools/kit/console_win.h"
#include "tools/kit/process_win.h"
#include "tools/kit/text_win.h"

namespace kit {
namespace {

constexpr int kListingSeconds = 60;

struct Job {
  const Suite* suite = nullptr;  // or
  const MacroRun* macros = nullptr;
  std::string test;
  std::size_t result = 0;  // its index
};

class Runner {
 public:
  Runner(const Plan& plan, const Record& record, const Place& place, const Wanted& wanted)
      : plan_(plan), record_(record), place_(place), wanted_(wanted) {}

  std::vector<Result> All() {
    Collect();
    std::vector<std::thread> lanes;
    for (int lane = 1; lane < wanted_.lanes; ++lane) lanes.emplace_back([this] { Work(false); });
    Work(true);
    for (std::thread& lane : lanes) lane.join();
    ClearProgress();
    return std::move(results_);
  }

 private:
  bool IsWanted(std::string_view name) const { return wanted_.only.empty() || Matches(wanted_.only, name); }

  // Whether a pattern may fit a name that begins so: spares listing the programs that are not asked for.
  bool MayBeWanted(std::string_view begin) const {
    if (wanted_.only.empty()) return true;
    for (std::string_view rest = wanted_.only; !rest.empty();) {
      const std::string_view one = rest.substr(0, rest.find(':'));
      const std::string_view fixed = one.substr(0, one.find_first_of("*?"));
      const std::size_t both = std::min(fixed.size(), begin.size());
      if (fixed.substr(0, both) == begin.substr(0, both)) return true;
      rest.remove_prefix(std::min(one.size() + 1, rest.size()));
    }
    return false;
  }

  std::size_t Add(const std::string& name, bool first, Verdict verdict = {}) {
    results_.push_back({name, first, 0, std::move(verdict), record_.Of(name)});
    return results_.size() - 1;
  }

  void Collect() {
    for (const Suite& suite : plan_.suites) {
      if (MayBeWanted(suite.name + ".")) CollectSuite(suite);
    }
    for (const MacroRun& run : plan_.macros) {
      if (!IsWanted(run.name)) continue;
      if (!IsLeftOut(run.name, false)) desktop_.push_back({nullptr, &run, run.name, Add(run.name, false)});
    }
    for (const LeftOut& absent : plan_.absent) {
      if (IsWanted(absent.pattern)) Add(absent.pattern, false, {Outcome::kSkipped, absent.reason, ""});
    }
  }

  bool IsLeftOut(const std::string& name, bool first) {
    for (const LeftOut& left : plan_.left_out) {
      if (!Matches(left.pattern, name)) continue;
      Add(name, first, {Outcome::kSkipped, left.reason, ""});
      return true;
    }
    return false;
  }

  void CollectSuite(const Suite& suite) {
    Start start = StartOf(suite, L"--gtest_list_tests");
    start.seconds = kListingSeconds;
    const Ended listed = Run(start, place_.work, L"list");
    const std::vector<std::string> tests = ListedTests(listed.output);
    if (tests.empty() && !listed.stopped) {
      Verdict verdict = JudgeTest(listed, kListingSeconds);
      verdict.reason = "the program lists no tests: " + verdict.reason;
      verdict.outcome = Outcome::kFailed;
      Add(suite.name + ".(list)", suite.first, std::move(verdict));
    }
    for (const std::string& test : tests) {
      const std::string name = suite.name + "." + test;
      if (!IsWanted(name) || test.find(".DISABLED_") != test.npos || IsLeftOut(name, suite.first)) continue;
      (suite.desktop ? desktop_ : others_).push_back({&suite, nullptr, test, Add(name, suite.first)});
    }
  }

  Start StartOf(const Suite& suite, const std::wstring& argument) const {
    Start start;
    start.program = place_.work + L"\\" + WidePath(suite.program);
    start.arguments = {argument, L"--gtest_color=no"};
    start.folder = place_.work + L"\\" + WidePath(suite.folder);
    start.seconds = suite.seconds;
    return start;
  }

  // One lane has all that shows windows; what needs no desktop goes beside it.
  bool Take(bool desktop, Job& job) {
    const std::lock_guard lock(mutex_);
    std::deque<Job>& jobs = desktop && !desktop_.empty() ? desktop_ : others_;
    if (jobs.empty()) return false;
    job = jobs.front();
    jobs.pop_front();
    return true;
  }

  void Work(bool desktop) {
    for (Job job; Take(desktop, job);) {
      if (StopIsWanted()) {
        Keep(job, {Outcome::kNotRun, "stopped by Ctrl+C", ""}, 0);
        continue;
      }
      const ULONGLONG began = GetTickCount64();
      Verdict verdict = job.suite != nullptr ? RunTest(job) : RunMacros(job);
      Keep(job, std::move(verdict), static_cast<double>(GetTickCount64() - began) / 1000);
    }
  }

  void Keep(const Job& job, Verdict verdict, double seconds) {
    const std::lock_guard lock(mutex_);
    Result& result = results_[job.result];
    result.verdict = std::move(verdict);
    result.verdict.reason = Shown(std::move(result.verdict.reason), place_);
    result.verdict.output = Shown(std::move(result.verdict.output), place_);
    result.seconds = seconds;
    ++done_;
    if (result.verdict.outcome == Outcome::kFailed) {
      ++failed_;
      ClearProgress();
      Say("failed: " + result.name + ": " + result.verdict.reason);
    }
    ShowProgress("[" + std::to_string(done_) + " of " +
                 std::to_string(done_ + desktop_.size() + others_.size()) + ", " + std::to_string(failed_) +
                 " failed] " + result.name);
  }

  Verdict RunTest(const Job& job) {
    const Start start = StartOf(*job.suite, L"--gtest_filter=" + Wide(job.test));
    return JudgeTest(Run(start, place_.work, L"test" + std::to_wstring(job.result)), start.seconds);
  }

  Verdict RunMacros(const Job& job) {
    const MacroRun& run = *job.macros;
    Start start;
    start.program = place_.work + L"\\host\\wrenfold.exe";
    start.folder = place_.work + L"\\runs\\" + std::to_wstring(job.result);
    if (!LayOut(run, start.folder)) return {Outcome::kFailed, "its files could not be laid out", ""};
    for (const std::string& argument : run.arguments) start.arguments.push_back(Wide(argument));
    start.input = run.input;
    start.errors_apart = !run.joined;
    start.seconds = run.seconds;
    const Ended ended = Run(start, place_.work, L"run" + std::to_wstring(job.result));
    RemoveTree(start.folder);
    return JudgeMacros(ended, run);
  }

  bool LayOut(const MacroRun& run, const std::wstring& folder) const {
    bool good = MakeFolder(folder);
    for (const auto& [from, name] : run.copies) {
      good = good && CopyTree(place_.kit + L"\\" + WidePath(from), folder + L"\\" + WidePath(name));
    }
    for (const std::string& name : run.folders) good = good && MakeFolder(folder + L"\\" + WidePath(name));
    for (const auto& [name, contents] : run.files)
      good = good && WriteFileAt(folder + L"\\" + WidePath(name), contents);
    return good;
  }

  const Plan& plan_;
  const Record& record_;
  const Place& place_;
  const Wanted& wanted_;
  std::mutex mutex_;  // of all below
  std::deque<Job> desktop_, others_;
  std::vector<Result> results_;
  std::size_t done_ = 0;
  int failed_ = 0;
};

bool IsUtf8(std::string_view text) {
  return text.empty() || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(),
                                             static_cast<int>(text.size()), nullptr, 0) != 0;
}

std::string WithVisibleBytes(std::string_view line) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string shown;
  for (const char unit : line) {
    const auto byte = static_cast<unsigned char>(unit);
    if (byte < 0x80) {
      shown += unit;
    } else {
      ((shown += "\\x") += kDigits[byte >> 4]) += kDigits[byte & 15];
    }
  }
  return shown;
}

}  // namespace

std::vector<Result> RunAll(const Plan& plan, const Record& record, const Place& place, const Wanted& wanted) {
  return Runner(plan, record, place, wanted).All();
}

std::string Shown(std::string text, const Place& place) {
  for (const auto& [path, word] : {std::pair{place.work, "<work>"}, std::pair{place.kit, "<kit>"}}) {
    const std::string plain = Utf8(path);
    for (const std::string& form : {Replaced(plain, "\\", "\\\\"), Replaced(plain, "\\", "/"), plain}) {
      text = Replaced(text, form, word);
    }
  }
  if (IsUtf8(text)) return text;
  std::string shown;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view line = rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1);
    shown += IsUtf8(line) ? std::string(line) : WithVisibleBytes(line);
    rest.remove_prefix(line.size());
  }
  return shown;
}

}  // namespace kit
