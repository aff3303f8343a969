// Answers the library's requests. What is served stands in tables, one for each family of services; the list
// of all families is given to the server.
#pragma once

#include <windows.h>

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/mail/missing_mail.h"
#include "host/requests/host_state.h"
#include "host/requests/trace.h"

namespace wrenfold {

// One slot of an argument block.
using Slot = long long;

// What the host answers: a number, or the address of a text that the host keeps.
struct Answer {
  Slot value = 0;
  bool is_text = false;
  bool served = true;      // false: the handler knows only other forms of this request
  bool explained = false;  // HostState::failure tells why it is 0, or not whole
};

class RequestServer;

// One request as its handler sees it.
class Request {
 public:
  Request(RequestServer& server, HostState& state, int code, Slot* block)
      : state(state), server_(server), code_(code), block_(block) {}

  HostState& state;

  // The code that came; 0 for a menu command.
  int code() const { return code_; }

  // Slots, read with care: 0 or "" for what is not there.
  Slot Number(std::size_t slot) const;
  std::string_view Text(std::size_t slot) const;
  bool HasText(std::size_t slot) const;
  // Fills the buffer whose address and size stand in two slots, cut to whole characters; nothing without
  // a buffer.
  void FillBuffer(std::size_t address_slot, std::size_t size_slot, std::string_view text) const;
  // Writes the low 32 bits of a slot, for the few requests that answer in their block.
  void SetLowNumber(std::size_t slot, std::uint32_t value) const;
  // The text that lies at lParam itself (code 297 comes without a block).
  std::string_view WholeText() const;

  static Answer AnswerNumber(Slot value) { return {value}; }
  static Answer Done(bool done) { return {done ? 1 : 0}; }
  static Answer NotServed() { return {0, false, false}; }
  // 0, because of `why`: one line of UTF-8 without a full stop that names the value at fault. The trace
  // and the macro can ask for it; what in a value would break the line or command a terminal is made
  // visible there.
  Answer Fail(std::string_view why) const;
  // The same where 0 is a plain answer and nothing went wrong, as at the end of a walk: `--strict` lets
  // it pass.
  Answer None(std::string_view why) const;
  // For a number that a list does not have: a walk ends behind the last, and no walk comes before the first.
  Answer NoNumber(Slot number, std::string_view why) const { return number < 0 ? Fail(why) : None(why); }
  // Keeps `text` until the next text answer of the same code.
  Answer AnswerText(std::string text) const;
  // For a text that the host keeps anyway.
  static Answer AnswerKept(const std::string& text);

 private:
  RequestServer& server_;
  int code_;
  Slot* block_;
};

using Handler = Answer (*)(Request& request);

struct Service {
  int code;
  // The block for the trace, one letter a slot: T text, I number, A address; P: lParam is a text itself.
  // nullptr: as the catalogue says.
  const char* shapes;
  Handler handler;
  // What it answers and does, for docs/host-protocol-by-code.md: no capital in front, no full stop behind.
  const char* doc = "";
};

// Runs `kAnswer` when there is a root mail; else the answer is 0.
template <Handler kAnswer>
Answer WithRoot(Request& request) {
  return request.state.HasRoot() ? kAnswer(request) : request.Fail(kNoOpenMail);
}

// Runs `kAnswer` when there is a current mail.
template <Handler kAnswer>
Answer WithCurrent(Request& request) {
  return request.state.HasCurrent() ? kAnswer(request) : request.Fail(kNeitherMail);
}

// Runs `kAnswer` while a mail is being written.
template <Handler kAnswer>
Answer WithDraft(Request& request) {
  return request.state.HasDraft() ? kAnswer(request) : request.Fail(kNoWrittenMail);
}

// A menu command, which comes as WM_COMMAND or in the first slot of codes 12 and 57.
struct Command {
  int id;
  Handler handler;
  const char* doc = "";  // as above
};

// What one file of services answers. Objects of this type are constants that live for ever.
struct ServiceFamily {
  std::span<const Service> services;
  std::span<const Command> commands;
};

// The call of a macro that requests come from.
struct CallUnderWay {
  std::string name;      // of the export; "" between calls
  std::string unserved;  // its first request that is not served: "code 96"; "" without one
  bool failed = false;   // one of its requests did
  bool traced = false;   // one of its requests was shown
};

class RequestServer {
 public:
  // `families` and `trace` outlive the server.
  RequestServer(HostState& state, std::span<const ServiceFamily* const> families, const Trace& trace)
      : state_(state), families_(families), trace_(trace) {}

  HostState& state() { return state_; }
  const Trace& trace() const { return trace_; }

  // Answers a host request: `block` is lParam, 0 without a block.
  Slot Serve(int code, LPARAM block);
  // Answers a menu command.
  Slot ServeCommand(int id);

  // Around each call of an export by a macro; a call may lead to others. HostState::failure is that of the
  // call. Begin gives what End takes: the call around this one. End gives what came of this one.
  CallUnderWay BeginCall(std::string name);
  CallUnderWay EndCall(CallUnderWay outer) { return std::exchange(call_, std::move(outer)); }

  void NoteFailure() { call_.failed = true; }

  const std::string& Keep(int code, std::string text) { return kept_[code] = std::move(text); }

  // "14 requests, 2 not served: code 96 (SetMailColor) twice"; only the not served ones are named. Of a
  // trace that is limited "3 shown of 14 requests, ...".
  std::string Summary() const;
  std::uint64_t not_served() const;
  std::uint64_t requests() const { return requests_; }

 private:
  struct Unserved {
    std::string title;  // "code 96 (SetMailColor)"
    std::uint64_t count = 0;
  };
  void Show(const RequestKey& key, std::string slots, std::vector<macro::Value> values, Answer answer);
  void Note(const TracedRequest& request);
  void NoteUnserved(const RequestKey& key);

  const Service* FindService(int code) const;
  const Command* FindCommand(long long id) const;

  HostState& state_;
  std::span<const ServiceFamily* const> families_;
  const Trace& trace_;
  CallUnderWay call_;
  std::uint64_t requests_ = 0;
  std::map<std::string, Unserved> unserved_;
  std::map<int, std::string> kept_;
  std::uint64_t shown_ = 0;  // requests that the trace showed
};

}  // namespace wrenfold
