#include "host/requests/host_state.h"

#include "host/mail/headers.h"
#include "host/mail/priority.h"

namespace wrenfold {
namespace {

std::uint32_t If(bool condition, std::uint32_t bit) { return condition ? bit : 0; }

}  // namespace

std::optional<std::string> HostState::AddMails(const std::filesystem::path& path,
                                               MailStore::Unreadable unreadable) {
  std::optional<std::string> reason = store_.Add(path, unreadable);
  memories_.resize(mail_count());
  return reason;
}

bool HostState::Open(std::size_t index) {
  if (index >= mail_count()) return false;
  root_ = index;
  all_selected = found_selected = false;
  return true;
}

const HostMessage& HostState::Message(std::size_t index) {
  std::unique_ptr<HostMessage>& message = memories_[index].message;
  if (!message) message = std::make_unique<HostMessage>(MakeHostMessage(Mail(index).raw));
  return *message;
}

std::string HostState::Header(std::size_t index, std::string_view name) {
  return std::string(HeaderValue(Message(index).text, name).value_or(""));
}

std::uint32_t HostState::StateWord(std::size_t index) {
  const std::uint32_t flags = Mail(index).flags;
  const HostMessage& message = Message(index);
  const std::uint32_t found =
      If(IsUrgent(message.text), kStateHighPriority) | If(!message.attachments.empty(), kStateAttachment) |
      If(message.body_was_html, kStateHtml) | If((flags & kMailReplied) != 0, kStateReplied) |
      If((flags & kMailForwarded) != 0, kStateForwarded) | If((flags & kMailRead) == 0, kStateUnread) |
      If(CountHeaders(message.text, "Message-ID") > 0, kStateMessageId) |
      If(CountHeaders(message.text, "In-Reply-To") > 0, kStateInReplyTo) |
      If((flags & kMailMarked) != 0, kStateMarked) | If(CountHeaders(message.text, "Cc") > 0, kStateCc);
  const Memory& memory = memories_[index];
  return (found & ~memory.changed_mask) | memory.changed_bits;
}

void HostState::ChangeState(std::size_t index, std::uint32_t bits, std::uint32_t mask) {
  Memory& memory = memories_[index];
  memory.changed_mask |= mask;
  memory.changed_bits = (memory.changed_bits & ~mask) | (bits & mask);
}

void HostState::Import(std::vector<StoredMail> mails, std::size_t folder) {
  for (StoredMail& mail : mails) {
    mail.folder = folder;
    store_.mails().push_back(std::move(mail));
  }
  memories_.resize(mail_count());
}

std::vector<std::size_t> HostState::MailsOf(std::size_t folder) const {
  std::vector<std::size_t> indices;
  for (std::size_t i = 0; i < mail_count(); ++i) {
    if (store_.mails()[i].folder == folder && !memories_[i].removed) indices.push_back(i);
  }
  return indices;
}

std::size_t HostState::ListPosition() const {
  std::size_t position = 0;
  for (std::size_t i = 0; i < root_; ++i) {
    position += store_.mails()[i].folder == folder() && !memories_[i].removed ? 1 : 0;
  }
  return position;
}

const std::string& HostState::CurrentText() {
  if (HasDraft()) return writing.draft->text;
  const std::optional<std::string>& edited = memories_[root_].edited;
  return edited ? *edited : Message(root_).text;
}

std::string& HostState::EditText(std::size_t index) {
  std::optional<std::string>& edited = memories_[index].edited;
  if (!edited) edited = Message(index).text;
  return *edited;
}

void HostState::TakeRewritten(std::size_t index, std::string raw, std::int64_t moved_bytes) {
  StoredMail& mail = Mail(index);
  mail.raw = std::move(raw);
  memories_[index].message.reset();
  memories_[index].edited.reset();
  for (StoredMail& other : store_.mails()) {
    if (other.source == mail.source && other.offset > mail.offset) {
      other.offset = static_cast<std::uint64_t>(static_cast<std::int64_t>(other.offset) + moved_bytes);
    }
  }
}

std::size_t HostState::AddWritten(const std::filesystem::path& file, std::string raw) {
  const std::size_t index = store_.AddWritten(file, std::move(raw));
  memories_.resize(mail_count());
  return index;
}

}  // namespace wrenfold
