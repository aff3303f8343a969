#include "host/requests/decoded_mails.h"

#include <utility>

namespace wrenfold {
namespace {

std::size_t BytesOf(const HostMessage& message) {
  std::size_t bytes = message.text.size();
  for (const Attachment& attachment : message.attachments) bytes += attachment.bytes.size();
  return bytes;
}

}  // namespace

const HostMessage* DecodedMails::Find(std::size_t mail) const {
  const auto found = kept_.find(mail);
  return found == kept_.end() ? nullptr : &found->second;
}

const HostMessage& DecodedMails::Keep(std::size_t mail, HostMessage message, std::size_t open) {
  bytes_ += BytesOf(message);
  order_.push_back(mail);
  const HostMessage& kept = kept_.emplace(mail, std::move(message)).first->second;
  LetGo(open);
  return kept;
}

void DecodedMails::Forget(std::size_t mail) {
  const auto found = kept_.find(mail);
  if (found == kept_.end()) return;
  bytes_ -= BytesOf(found->second);
  kept_.erase(found);
  std::erase(order_, mail);
}

void DecodedMails::LetGo(std::size_t open) {
  while (bytes_ > kMostBytes && order_.size() > kAlways) {
    const std::size_t oldest = order_.front();
    order_.pop_front();
    if (oldest == open) {
      order_.push_back(oldest);
      continue;
    }
    const auto found = kept_.find(oldest);
    bytes_ -= BytesOf(found->second);
    kept_.erase(found);
  }
}

}  // namespace wrenfold
