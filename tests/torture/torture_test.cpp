// Every fallible call that an export makes into the system fails once, one call at a time: the export then does what
// it does else or gives its failure value, nothing crashes, nothing is lost and no file is left.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>

#include "src/catalogue/requests.h"
#include "tests/monkey/measure_win.h"
#include "tests/support/library.h"
#include "tests/support/row_calls_win.h"
#include "tests/support/scripted_host_win.h"
#include "tests/support/temp_folder_win.h"
#include "tests/torture/failing_calls_win.h"
#include "tests/torture/system_calls.h"

namespace torture {
namespace {

using wfinfo::catalogue::Row;
using wfinfo::catalogue::Rows;
using wfinfo_test::ArgumentList;
using wfinfo_test::CallTargets;
using wfinfo_test::Slot;

constexpr unsigned kMostOfOneFunction = 6;  // calls of it that fail in turn

std::string g_doing;  // what is under test, for a crash

LONG WINAPI TellCrash(EXCEPTION_POINTERS* exception) {
  std::printf("exception %08lX: %s\n", exception->ExceptionRecord->ExceptionCode, g_doing.c_str());
  std::fflush(stdout);
  TerminateProcess(GetCurrentProcess(), 1);
  return EXCEPTION_CONTINUE_SEARCH;
}

// Exports with another failure value than 0 or "", or whose result changes by itself.
struct Known {
  std::string_view name;
  std::string_view why;
};
constexpr Known kOtherResults[] = {
    {"Bypass_GetFileSize", "-1"},
    {"Bypass_GetFileAttributes", "4294967295"},
    {"SelectedRootText2", "the body in place of an empty selection, and a failure gives an empty one"},
    {"OrikaeshiSelectedRootText2", "the same"},
};

// What the tests over all rows do not call, and what is called with here: nobody listens there.
struct Unanswered {
  std::string_view name;
  const char* text;
  Slot number;
};
constexpr Unanswered kUnanswered[] = {
    {"Inet_OpenUrl", "http://127.0.0.1:1/", 0},
    {"Inet_Read", nullptr, 0},
    {"Inet_HttpQueryInfo", nullptr, 0},
    {"Inet_GetResponseCode", nullptr, 0},
    {"Inet_Close", nullptr, 0},
    {"Sock_connect", "127.0.0.1", 1},
    {"Sock_send", "text", 0},
    {"Sock_recv", nullptr, 0},
    {"Sock_GetRecvData", nullptr, 0},
    {"Sock_closesocket", nullptr, 0},
    {"Sock_gethostbyname", "127.0.0.1", 0},
    {"Sock_gethostbyaddr", "127.0.0.1", 0},
    {"Sock_WSAGetLastError", nullptr, 0},
    {"Sock_GetErrorString", nullptr, 0},
};

// The argument lists with which a row is called; none when it is not.
std::vector<ArgumentList> ListsOf(const Row& row, const CallTargets& targets) {
  if (wfinfo_test::ReasonNotToCall(row).empty()) return wfinfo_test::ArgumentListsOf(row, targets);
  for (const Unanswered& each : kUnanswered) {
    if (each.name != row.name) continue;
    if (each.text == nullptr) return {{}};
    return {{static_cast<Slot>(reinterpret_cast<INT_PTR>(each.text)), each.number}};
  }
  return {};
}

// What came of the failures of one system call under one export.
struct Outcome {
  unsigned usual = 0;
  unsigned failure = 0;  // the export's failure value
  unsigned other = 0;    // another value, which stands in kOtherResults
};

bool HasOtherResult(std::string_view name) {
  for (const Known& known : kOtherResults) {
    if (known.name == name) return true;
  }
  return false;
}

// Codes that hand-written exports ask texts with; those of thin exports stand in their rows.
constexpr int kTexts[] = {1,   2,   19,  47,  81,  86,  87,  111, 113, 114, 115,
                          134, 153, 158, 262, 268, 269, 285, 291, 292, 293, 297};

class Torture : public testing::Test {
 protected:
  Torture() {
    SetUnhandledExceptionFilter(&TellCrash);
    GetCurrentDirectoryA(sizeof before_, before_);
    SetCurrentDirectoryA(folder_.Path(".").c_str());
    InterceptSystemCalls();
    targets_ = {host_.OpenWindow("STATIC"), host_.frame()};
    for (const int code : kTexts) texts_.insert(code);
    for (const Row& row : Rows()) {
      if (row.kind == wfinfo::catalogue::Kind::kThin && row.result.ends_with("Str")) texts_.insert(row.code);
    }
    host_.hook = [this](HWND, UINT message, WPARAM wparam, LPARAM, LRESULT* answer) {
      if (message == WM_COMMAND) return *answer = 1, true;
      if (message != wfinfo::kHostRequest) return false;
      *answer = AnswerTo(static_cast<int>(wparam));
      return true;
    };
  }
  ~Torture() override {
    host_.TakeMessages();
    SetCurrentDirectoryA(before_);
  }

  LRESULT AnswerTo(int code) {
    static const char mail[] = "Subject: text\r\nFrom: a@b.c\r\n\r\nbody\r\n";
    if (code == 3 || code == 143 || code == 144 || code == 176 || code == 256) return 0;
    if (code == 290 || code == 313) return reinterpret_cast<LRESULT>(L"text");
    if (code == 75) return reinterpret_cast<LRESULT>(record_);
    return texts_.count(code) != 0 || code == 307 ? reinterpret_cast<LRESULT>(mail) : 1;
  }

  void Prepare() {
    Disarm();
    folder_.Write("text", "a,b\r\nc,d\r\n");
    ShowWindow(host_.frame(), SW_SHOWNORMAL);
    SetActiveWindow(host_.frame());
  }

  // The result of the call with what `name` is armed to do, as text.
  std::string Result(const Row& row, const ArgumentList& arguments, std::string_view name, unsigned nth) {
    Prepare();
    Arm(name, nth);
    const Slot result = wfinfo_test::CallRow(row, arguments, targets_);
    failed_ = HasFailed();
    counts_ = CallCounts();
    Disarm();
    wfinfo_test::EndLateEffects();
    host_.TakeMessages();
    if (row.result == "Void") return "";
    if (!row.result.ends_with("Str"))
      return std::to_string(row.result == "Int32" ? static_cast<int>(result) : result);
    const auto* const text = reinterpret_cast<const char*>(result);
    if (text == nullptr) return "null";
    return IsBadStringPtrA(text, 1 << 20) ? "unreadable" : "\"" + std::string(text) + "\"";
  }

  static bool IsFailureOf(const Row& row, std::string_view result) {
    if (row.result == "Str") return result == "\"\"";
    if (row.result == "OptStr") return result == "\"\"" || result == "null";
    return result == "0" || row.result == "Void";
  }

  std::set<std::string> Files() const {
    std::set<std::string> names;
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA("*", &found);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileA(search, &found))
      names.insert(found.cFileName);
    FindClose(search);
    return names;
  }

  void FailEachCall(const Row& row, const ArgumentList& arguments);
  void FailOne(const Row& row, const ArgumentList& arguments, const std::string& usual,
               const std::string& name, unsigned nth);

  wfinfo_test::TempFolder folder_;
  char before_[MAX_PATH];
  wfinfo_test::ScriptedHost host_;
  wfinfo_test::BoxCloser closer_;
  CallTargets targets_{};
  std::set<int> texts_;
  alignas(16) char record_[8192] = "text";
  bool failed_ = false;
  std::vector<Counted> counts_;
  std::map<std::pair<std::string, std::string>, Outcome> outcomes_;  // by export and system call
  unsigned total_ = 0;
};

void Torture::FailOne(const Row& row, const ArgumentList& arguments, const std::string& usual,
                      const std::string& name, unsigned nth) {
  g_doing = std::string(row.name) + ", call " + std::to_string(nth) + " of " + name;
  Prepare();
  const auto files = Files();
  const std::string result = Result(row, arguments, name, nth);
  if (!failed_) return;
  ++total_;
  Outcome& outcome = outcomes_[{std::string(row.name), name}];
  ++(result == usual ? outcome.usual : IsFailureOf(row, result) ? outcome.failure : outcome.other);
  for (const std::string& left : Files()) EXPECT_TRUE(files.count(left) != 0) << g_doing << " left " << left;
  if (result != usual && !IsFailureOf(row, result) && !HasOtherResult(row.name))
    ADD_FAILURE() << g_doing << ": " << result << " instead of " << usual;
  // What the first failure made is kept or is given back: from the second on nothing is added.
  Result(row, arguments, name, nth);
  const long outstanding = Outstanding();
  const long handles = monkey::Measure().handles;
  for (int again = 0; again < 2; ++again) Result(row, arguments, name, nth);
  EXPECT_LE(Outstanding(), outstanding) << g_doing;
  // Without the entry that closes a store of certificates it stays open.
  if (row.family == "S/MIME" && name == "GetProcAddress") return;
  EXPECT_LE(monkey::Measure().handles, handles) << g_doing;
}

void Torture::FailEachCall(const Row& row, const ArgumentList& arguments) {
  g_doing = row.name;
  Result(row, arguments, "", 0);
  const std::string usual = Result(row, arguments, "", 0);  // what it keeps is there now
  const std::vector<Counted> counts = counts_;
  for (const Counted& counted : counts) {
    const SystemCall* const call = FindSystemCall(counted.name);
    if (call == nullptr || !call->why.empty()) continue;
    for (unsigned nth = 1; nth <= counted.calls && nth <= kMostOfOneFunction; ++nth)
      FailOne(row, arguments, usual, counted.name, nth);
  }
}

// One of so many parts of the rows, which WFINFO_PART tells as "2/6"; they count from 0.
struct Part {
  unsigned number = 0;
  unsigned of = 1;
};

Part PartToRun() {
  const char* const told = std::getenv("WFINFO_PART");
  Part part;
  if (told != nullptr && std::sscanf(told, "%u/%u", &part.number, &part.of) != 2) part.of = 0;
  return part;
}

TEST_F(Torture, EveryExportStandsTheFailureOfEachSystemCall) {
  const char* const only = std::getenv("TORTURE_ONLY");
  const Part part = PartToRun();
  ASSERT_LT(part.number, part.of) << "WFINFO_PART is no part such as 2/6";
  unsigned index = 0;
  for (const Row& row : Rows()) {
    if (only != nullptr && row.name != only) continue;
    if (index++ % part.of != part.number) continue;
    for (const ArgumentList& arguments : ListsOf(row, targets_)) FailEachCall(row, arguments);
  }
  // For tests/torture/table.py.
  for (const auto& [names, outcome] : outcomes_) {
    std::printf("under %s failed %s: %u usual, %u failure, %u other\n", names.first.c_str(),
                names.second.c_str(), outcome.usual, outcome.failure, outcome.other);
  }
  std::printf("%u failures\n", total_);
  if (only == nullptr) {
    EXPECT_GT(total_, 1500u / part.of);
  }
  for (const std::string& name : WithoutRow()) ADD_FAILURE() << name << " has no row in system_calls.cpp";
}

}  // namespace
}  // namespace torture
