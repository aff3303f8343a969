#include "host/requests/host_state.h"

#include <algorithm>

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
  const bool first = mail_count() == 0;
  std::optional<std::string> reason = store_.Add(path, unreadable);
  memories_.resize(mail_count());
  if (reason) return reason;
  tree_.Load();
  if (first && HasRoot()) folder_ = Mail(root_).folder;
  return std::nullopt;
}

bool HostState::Open(std::size_t index) {
  if (index >= mail_count()) return false;
  root_ = index;
  all_selected = found_selected = false;
  // A search folder stays while its own mails are opened.
  const bool listed =
      folders()[folder_].kind == FolderKind::kSearch && std::ranges::count(MailsOf(folder_), index) > 0;
  if (!listed && !memories_[index].removed) folder_ = Mail(index).folder;
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
  MailsChanged();
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
  ChangeState(root_, kStateAltered, kStateAltered);
  return *edited;
}

void HostState::BeginDraft(DraftPurpose purpose, std::string text) {
  draft_ = std::move(text);
  draft_purpose_ = purpose;
}

}  // namespace wrenfold
