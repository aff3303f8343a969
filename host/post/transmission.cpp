#include "host/post/transmission.h"

#include <utility>

namespace wrenfold {

void Transmission::Start(std::int64_t command, std::vector<TransmissionStep> steps) {
  result_ = {};
  result_.command = command;
  steps_ = std::move(steps);
  next_ = 0;
  running_ = !steps_.empty();
  cancel_asked = false;
}

void Transmission::Advance(const Carry& carry) {
  if (!running_) return;
  if (next_ < steps_.size() && cancel_asked) result_.cancelled = true;
  if (next_ >= steps_.size() || cancel_asked) {
    running_ = false;
    return;
  }
  const TransmissionStep& step = steps_[next_++];
  carried = 1;
  if (auto failure = carry(step)) {
    result_.failures.push_back(*std::move(failure));
  } else if (step.kind == TransmissionStep::Kind::kSend) {
    result_.sent += carried;
  } else {
    result_.received += carried;
  }
  running_ = next_ < steps_.size();
}

std::string Transmission::Summary() const {
  std::string text = "received " + MailsInWords(result_.received) + ", sent " + MailsInWords(result_.sent);
  const std::size_t failures = result_.failures.size();
  if (failures > 0) text += ", " + std::to_string(failures) + (failures == 1 ? " failure" : " failures");
  if (result_.cancelled) text += ", cancelled";
  return text;
}

std::string NoticeOf(const WaitingNotice& notice) {
  if (notice.own == 0) return "";
  const std::size_t all = notice.own + notice.others;
  std::string text =
      MailsInWords(notice.own) + (notice.own == 1 ? " waits in " : " wait in ") + notice.folder;
  if (notice.others > 0) text += ", beside " + MailsInWords(notice.others) + " of other runs or programs";
  text += std::string("; TransmitCustom(0) or SendRemain() sends ") + (all == 1 ? "it" : "them");
  if (notice.deferred > 0) text += ", " + std::to_string(notice.deferred) + " not before Deferred-Delivery";
  return text;
}

std::string MailsInWords(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " mail" : " mails");
}

}  // namespace wrenfold
