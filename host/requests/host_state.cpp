#include "host/requests/host_state.h"

#include "host/mail/headers.h"

namespace wrenfold {
namespace {

// The priority headers that mail programs write: "X-Priority: 1 (Highest)", "Importance: high".
bool SaysHighPriority(std::string_view priority, std::string_view importance) {
  return priority.starts_with('1') || importance.starts_with("high") || importance.starts_with("High");
}

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
  selection.SelectOpenMail();
  view.first_line = 0;
  view.all_text_selected = false;
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
      If(SaysHighPriority(Header(index, "X-Priority"), Header(index, "Importance")), kStateHighPriority) |
      If(!message.attachments.empty(), kStateAttachment) | If(message.body_was_html, kStateHtml) |
      If((flags & kMailReplied) != 0, kStateReplied) | If((flags & kMailForwarded) != 0, kStateForwarded) |
      If((flags & kMailRead) == 0, kStateUnread) |
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

void HostState::Remove(std::size_t index) {
  memories_[index].removed = true;
  selection.Forget(index);
}

std::vector<std::size_t> HostState::MailsOf(std::size_t folder) const {
  std::vector<std::size_t> indices;
  for (std::size_t i = 0; i < mail_count(); ++i) {
    if (store_.mails()[i].folder == folder && !memories_[i].removed) indices.push_back(i);
  }
  return indices;
}

const std::string& HostState::CurrentText() {
  if (draft_) return *draft_;
  const std::optional<std::string>& edited = memories_[root_].edited;
  return edited ? *edited : Message(root_).text;
}

std::string& HostState::EditCurrent() {
  if (draft_) return *draft_;
  std::optional<std::string>& edited = memories_[root_].edited;
  if (!edited) edited = Message(root_).text;
  return *edited;
}

void HostState::BeginDraft(DraftPurpose purpose, std::string text) {
  draft_ = std::move(text);
  draft_purpose_ = purpose;
}

}  // namespace wrenfold
