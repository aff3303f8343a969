// The mails that were decoded last. A macro may walk through a mailbox of any size: what it read first is
// let go of, and decoded again when it is asked for again.
#pragma once

#include <cstddef>
#include <deque>
#include <unordered_map>

#include "host/mime/message.h"

namespace wrenfold {

class DecodedMails {
 public:
  // Texts and attachments that are kept together, in bytes; and how many mails however long they are, so that
  // whoever looks at one mail may look at others.
  static constexpr std::size_t kMostBytes = 16 << 20;
  static constexpr std::size_t kAlways = 16;

  // Null for a mail that is not kept.
  const HostMessage* Find(std::size_t mail) const;
  // Keeps a mail that is not kept yet, and lets go of the oldest others but for `open`; until it is one of
  // these itself its address stays valid.
  const HostMessage& Keep(std::size_t mail, HostMessage message, std::size_t open);
  // The mail has other bytes now.
  void Forget(std::size_t mail);

  std::size_t count() const { return kept_.size(); }

 private:
  void LetGo(std::size_t open);

  std::unordered_map<std::size_t, HostMessage> kept_;
  std::deque<std::size_t> order_;  // the oldest first
  std::size_t bytes_ = 0;
};

}  // namespace wrenfold
