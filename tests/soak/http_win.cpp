#include "tests/soak/http_win.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/monkey/dice.h"
#include "tests/soak/findings.h"
#include "tests/soak/peers.h"
#include "tests/support/library.h"

namespace soak {
namespace {

constexpr unsigned kStatusCode = 19;  // HTTP_QUERY_STATUS_CODE
constexpr std::size_t kStretches = 8;
constexpr std::size_t kLongestLife = 40;  // opens of one thread
constexpr std::size_t kCeiling = 4'194'304;
constexpr std::size_t kLeastOfTooMuch = kCeiling - 8192;

enum class End { kWhole, kFails, kFailsOrEmpty, kPrefix };

struct Kind {
  const char* name;  // what the server does with it: servers.py
  std::size_t of;    // so many of kAll opens
  End end;
  const char* status;  // nullptr when there is none, or not always
};
constexpr Kind kKinds[] = {
    {"page", 8, End::kWhole, "200"},           {"chunked", 3, End::kWhole, "200"},
    {"empty", 1, End::kWhole, "200"},          {"missing", 4, End::kWhole, "404"},
    {"moved", 1, End::kWhole, "302"},          {"closed", 4, End::kFails, nullptr},
    {"nowhere", 1, End::kFails, nullptr},      {"silent", 2, End::kFailsOrEmpty, nullptr},
    {"reset", 2, End::kFailsOrEmpty, nullptr}, {"half-header", 2, End::kFailsOrEmpty, nullptr},
    {"half-body", 2, End::kPrefix, "200"},     {"reset-body", 2, End::kPrefix, nullptr},
};
constexpr std::size_t kAll = 32;

const Kind& KindOf(monkey::Dice& dice) {
  std::size_t left = dice.Below(kAll);
  for (const Kind& kind : kKinds) {
    if (left < kind.of) return kind;
    left -= kind.of;
  }
  return kKinds[0];
}

std::size_t SizeOf(const Kind& kind, monkey::Dice& dice) {
  if (std::string_view(kind.name) == "empty") return 0;
  if (dice.OneIn(500)) return kCeiling + dice.Below(kCeiling);
  return 1 + dice.Below(dice.OneIn(50) ? 600'000 : 20'000);
}

// Result texts are the process's, not the thread's: callers on several threads take turns.
std::string Status() {
  static std::mutex turn;
  const std::lock_guard lock(turn);
  const char* const status = Inet_HttpQueryInfo(kStatusCode);
  return status != nullptr ? status : "";
}

class Open {
 public:
  Open(const HttpPlan& plan, unsigned long long number)
      : number_(number), dice_(plan.seed, number), kind_(KindOf(dice_)), size_(SizeOf(kind_, dice_)) {
    const bool closed = std::string_view(kind_.name) == "closed";
    url_ = "http://127.0.0.1:" + std::to_string(closed ? plan.closed_port : plan.port) + "/" + kind_.name +
           "/" + std::to_string(number) + "/" + std::to_string(size_);
    if (std::string_view(kind_.name) == "nowhere") url_ = dice_.OneIn(2) ? "nonsense://x" : "http://";
  }

  void Make() {
    const long long request = Inet_OpenUrl(url_.c_str());
    if (request != 0 && request != -1) return LookAtOpened();
    Note("failed");
    if (kind_.end == End::kWhole || kind_.status != nullptr) Complain("it did not open");
    // What was open before is closed.
    if (!Status().empty()) Complain("there is a status although nothing is open");
    if (Inet_Read() != nullptr) Complain("there is a text although nothing is open");
  }

 private:
  void LookAtOpened() {
    if (kind_.end == End::kFails) Complain("it opened");
    // Nobody reads it: the thread's next open, or its end, closes it.
    if (dice_.OneIn(10)) return Note("left unread");
    if (const std::string status = Status(); kind_.status != nullptr && status != kind_.status)
      Complain("status \"" + status + "\"");
    const char* const text = Inet_Read();
    text != nullptr ? LookAt(text) : LookAtNone();
  }

  void LookAtNone() {
    Note("opened, no text");
    if (kind_.end == End::kWhole) Complain("it could not be read");
  }

  void LookAt(std::string_view text) {
    if (!BeginsBody(text, number_)) return Complain("other bytes than were sent");
    const bool whole = text.size() == size_;
    const bool cut = size_ >= kLeastOfTooMuch && text.size() >= kLeastOfTooMuch && text.size() <= kCeiling;
    Note(whole ? "whole" : cut ? "cut at the limit" : text.empty() ? "empty" : "the beginning");
    if (kind_.end == End::kWhole && !whole && !cut)
      return Complain(std::to_string(text.size()) + " of " + std::to_string(size_) + " bytes");
    if (kind_.end == End::kFailsOrEmpty && !text.empty()) return Complain("a text from nowhere");
    const char* const rest = whole ? Inet_Read() : nullptr;
    if (whole && kind_.end == End::kWhole && (rest == nullptr || *rest != '\0'))
      Complain("a second text of the same page");
  }

  void Note(const char* outcome) const { Count(std::string(kind_.name) + ": " + outcome); }
  void Complain(const std::string& what) const {
    Find("open " + std::to_string(number_) + " (" + url_ + "): " + what);
  }

  unsigned long long number_;
  monkey::Dice dice_;
  const Kind& kind_;
  std::size_t size_;
  std::string url_;
};

// The opens `first` to `last` - 1, each `step`-th, in threads of which each lives for some of them. Some close
// what they have, of others the library does at their end.
void MakeInLives(const HttpPlan& plan, unsigned long long first, unsigned long long last, unsigned step) {
  for (unsigned long long number = first; number < last;) {
    std::thread([&] {
      monkey::Dice dice(~plan.seed, number);
      for (auto left = 1 + dice.Below(kLongestLife); left > 0 && number < last; --left, number += step)
        Open(plan, number).Make();
      if (dice.OneIn(2)) Inet_Close();
    }).join();
  }
}

void MakeStretch(const HttpPlan& plan, unsigned long long first, unsigned long long last) {
  std::vector<std::thread> callers;
  for (unsigned i = 0; i < plan.threads; ++i)
    callers.emplace_back([&plan, first, last, i] { MakeInLives(plan, first + i, last, plan.threads); });
  for (std::thread& caller : callers) caller.join();
}

}  // namespace

void RunHttp(const HttpPlan& plan) {
  Flatness flatness(Flatness::kAlone);
  for (std::size_t i = 0; i < kStretches; ++i) {
    const unsigned long long end = plan.opens * (i + 1) / kStretches;
    MakeStretch(plan, plan.opens * i / kStretches, end);
    if (i > 0) flatness.Measure(end);
  }
  flatness.Judge();
}

}  // namespace soak
