// A transmission: mails that are received and sent one after the other, with a cancel between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace wrenfold {

// One mail to be received or sent.
struct TransmissionStep {
  enum class Kind : std::uint8_t { kReceive, kFetch, kSend };  // fetched mails stay on the server
  Kind kind = Kind::kReceive;
  std::filesystem::path file;
  std::string account;  // host text, of a mail to be received
};

// What the last transmission did, or the running one has done so far.
struct TransmissionResult {
  std::int64_t command = 0;  // menu command that began it, 0 before the first
  std::size_t received = 0;
  std::size_t sent = 0;
  std::vector<std::string> failures;  // "cannot read X", one for each mail that stayed
  bool cancelled = false;
};

class Transmission {
 public:
  // Carries a step out; returns why that failed, else nullopt.
  using Carry = std::function<std::optional<std::string>(const TransmissionStep& step)>;

  // Begins a transmission; a cancel that was asked for before is forgotten. Only while none is running.
  void Start(std::int64_t command, std::vector<TransmissionStep> steps);

  // True until the last step was taken, or the next one would have been after a cancel.
  bool IsRunning() const { return running_; }

  // Takes the next step, or ends.
  void Advance(const Carry& carry);

  // Asked before each step.
  bool cancel_asked = false;
  // Mails that the step received or sent: whoever carries it out may set it to what an mbox held, or to 0
  // when another host was quicker.
  std::size_t carried = 1;

  const TransmissionResult& result() const { return result_; }

  // "received 2 mails, sent 1 mail, 1 failure, cancelled"
  std::string Summary() const;

 private:
  TransmissionResult result_;
  std::vector<TransmissionStep> steps_;
  std::size_t next_ = 0;
  bool running_ = false;
};

// What waits in the outbox when the program ends: of `own`, the mails that this run put there or tried to
// send, and of `others`, which others put there.
struct WaitingNotice {
  std::string folder;
  std::size_t own = 0;
  std::size_t others = 0;
  std::size_t deferred = 0;  // of all of them
};
// "1 mail waits in X; TransmitCustom(0) or SendRemain() sends it"; "" when none of the run does.
std::string NoticeOf(const WaitingNotice& notice);

// "1 mail", "2 mails".
std::string MailsInWords(std::size_t count);

}  // namespace wrenfold
