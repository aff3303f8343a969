// One call of an export, from its entry to its return: what the user was told in it.
#pragma once

#include <atomic>

namespace wfinfo {

// While it lasts, its thread tells the user once at most that a dialog shows: an export that asks the host
// more than once is refused as often, for one reason. A thin export sends one request and needs none. An
// export that is called by another belongs to that one's call.
class ExportCall {
 public:
  ExportCall();
  ~ExportCall();
  ExportCall(const ExportCall&) = delete;
  ExportCall& operator=(const ExportCall&) = delete;

 private:
  friend bool UserKnowsOfDialog();
  friend void UserWasToldOfDialog();

  bool is_outermost_;
  bool told_ = false;
};

// Export calls that are their thread's present one. Thin exports make none and find 0: a look at the thread's
// own slot costs more than all else that a request does by itself.
extern std::atomic<int> g_presentCalls;

// While the host handles what it was sent. The macros that it runs meanwhile make calls of their own.
class HostTurn {
 public:
  HostTurn() : waiting_(g_presentCalls.load(std::memory_order_relaxed) == 0 ? nullptr : Leave()) {}
  ~HostTurn() {
    if (waiting_ != nullptr) Return(waiting_);
  }
  HostTurn(const HostTurn&) = delete;
  HostTurn& operator=(const HostTurn&) = delete;

 private:
  static ExportCall* Leave();
  static void Return(ExportCall* call);

  ExportCall* waiting_;
};

// True when the present call of this thread has told the user already.
bool UserKnowsOfDialog();
void UserWasToldOfDialog();

// At process attach and detach. Without the first, or when the system has no slot to give, every refusal
// is told.
void BeginExportCalls();
void EndExportCalls();

}  // namespace wfinfo
