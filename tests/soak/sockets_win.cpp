#include "tests/soak/sockets_win.h"

#include <iterator>
#include <string>
#include <string_view>

#include "tests/monkey/dice.h"
#include "tests/monkey/library_memory_win.h"
#include "tests/soak/findings.h"
#include "tests/soak/peers.h"
#include "tests/support/library.h"

namespace soak {
namespace {

constexpr std::size_t kStretches = 8;
constexpr std::size_t kBufferRoom = 32'752;  // bytes of one answer that are kept
constexpr std::size_t kLeastWhenFull = kBufferRoom - 16;
constexpr unsigned long long kRoundsForEachWait = 1000;  // one of them may take 20 seconds

enum class End { kBeginning, kFull, kNothing };

struct Kind {
  const char* name;  // what the server does: servers.py
  std::size_t of;    // so many of kAll rounds
  End end;
};
constexpr Kind kKinds[] = {
    {"answer", 8, End::kBeginning},  // the exchange ends with the server's close, whatever is still to be read
    {"pieces", 3, End::kBeginning}, {"flood", 2, End::kFull},
    {"silent", 2, End::kNothing},   {"reset", 1, End::kNothing},
};
constexpr std::size_t kAll = 16;
constexpr ULONGLONG kSlowMs = 1000;
// At the end of each thousand rounds, in turn: the peers whose silence is waited out.
constexpr Kind kWaitedFor[] = {{"deaf", 0, End::kNothing}, {"gone", 0, End::kNothing}};

const Kind& KindOf(unsigned long long number, monkey::Dice& dice) {
  if (number % kRoundsForEachWait == kRoundsForEachWait - 1)
    return kWaitedFor[number / kRoundsForEachWait % std::size(kWaitedFor)];
  std::size_t left = dice.Below(kAll);
  for (const Kind& kind : kKinds) {
    if (left < kind.of) return kind;
    left -= kind.of;
  }
  return kKinds[0];
}

// Answers that came whole and those that did not.
unsigned long long g_whole = 0;
unsigned long long g_cut = 0;

class Round {
 public:
  Round(const SocketPlan& plan, unsigned long long number)
      : plan_(plan),
        number_(number),
        dice_(plan.seed, number),
        kind_(KindOf(number, dice_)),
        size_(1 + dice_.Below(dice_.OneIn(4) ? 30'000 : 2000)) {}

  void Make() {
    if (kind_.of > 0 && dice_.OneIn(6)) return MeetNobody();
    if (kind_.of > 0 && dice_.OneIn(10)) return LookUp();
    if (!Connect(plan_.port)) return Complain("no connection");
    if (dice_.OneIn(10) && !Connect(plan_.port)) return Complain("no second connection");
    const std::string request =
        std::string(kind_.name) + " " + std::to_string(number_) + " " + std::to_string(size_) + "\n";
    if (Sock_send(request.c_str()) != 1) return Complain("the request was not sent");
    if (kind_.of > 0 && dice_.OneIn(10)) return GiveUp();
    LookAt(Sock_recv());
  }

  std::string Shown() const { return "round " + std::to_string(number_) + " (" + kind_.name + ")"; }

 private:
  bool Connect(unsigned port) {
    return Sock_connect(dice_.OneIn(4) ? "localhost" : "127.0.0.1", port, dice_.OneIn(2) ? 1 : 0) == 1;
  }

  void MeetNobody() {
    Count("closed port: no connection");
    if (Sock_connect("127.0.0.1", plan_.closed_port, 0) != 0) Complain("connected where nobody listens");
    if (std::string_view(Sock_GetErrorString()) != "connect function failed.") Complain("another error text");
  }

  void LookUp() {
    Count("name: found");
    const char* const found = Sock_gethostbyname("127.0.0.1");
    if (found == nullptr || std::string_view(found) != "1.0.0.127") Complain("another address");
  }

  void GiveUp() {
    Count("given up before the answer");
    if (Sock_closesocket() != 1 || Sock_recv() != 0) Complain("not closed");
  }

  void LookAt(long long received) {
    const std::string_view text = Sock_GetRecvData();
    if (received < 0 || text.size() != static_cast<std::size_t>(received))
      return Complain(std::to_string(received) + " bytes told, " + std::to_string(text.size()) + " there");
    if (!BeginsBody(text, number_)) return Complain("other bytes than were sent");
    const bool full = text.size() >= kLeastWhenFull && text.size() <= kBufferRoom;
    const char* const outcome = text.empty()           ? "nothing"
                                : full                 ? "a full buffer"
                                : text.size() == size_ ? "whole"
                                                       : "the beginning";
    Count(std::string(kind_.name) + ": " + outcome);
    if (kind_.end == End::kBeginning) ++(text.size() == size_ ? g_whole : g_cut);
    if (!Fits(text.size(), full))
      Complain(std::to_string(text.size()) + " bytes of " + std::to_string(size_));
    if (Sock_send("x") != 0) Complain("the socket is still there");
  }

  bool Fits(std::size_t length, bool full) const {
    switch (kind_.end) {
      case End::kFull:
        return full;
      case End::kNothing:
        return length == 0;
      default:
        return length <= size_;
    }
  }

  void Complain(const std::string& what) const { Find(Shown() + ": " + what); }

  const SocketPlan& plan_;
  unsigned long long number_;
  monkey::Dice dice_;
  const Kind& kind_;
  std::size_t size_;
};

}  // namespace

void RunSockets(const SocketPlan& plan) {
  monkey::WatchLibraryMemory();
  Flatness flatness(Flatness::kAlone);
  for (std::size_t i = 0; i < kStretches; ++i) {
    const unsigned long long end = plan.rounds * (i + 1) / kStretches;
    for (auto number = plan.rounds * i / kStretches; number < end; ++number) {
      Round round(plan, number);
      const ULONGLONG began = GetTickCount64();
      round.Make();
      const ULONGLONG took_ms = GetTickCount64() - began;
      if (took_ms >= kSlowMs) Print("slow: " + round.Shown() + ": " + std::to_string(took_ms) + " ms");
    }
    if (i > 0) flatness.Measure(end);
  }
  flatness.Judge();
  if (g_whole <= g_cut) Find("most answers came without their end");
}

}  // namespace soak
