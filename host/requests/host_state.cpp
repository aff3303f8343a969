#include "host/requests/host_state.h"

#include <algorithm>

#include "host/mail/headers.h"
#include "host/mail/priority.h"

namespace wrenfold {
namespace {

std::uint32_t If(bool condition, std::uint32_t bit) { return condition ? bit : 0; }

std::uint32_t StateOfText(std::string_view text, bool has_attachments) {
  return If(IsUrgent(text), kStateHighPriority) | If(has_attachments, kStateAttachment) |
         If(CountHeaders(text, "Message-ID") > 0, kStateMessageId) |
         If(CountHeaders(text, "In-Reply-To") > 0, kStateInReplyTo) |
         If(CountHeaders(text, "Cc") > 0, kStateCc);
}

}  // namespace

std::uint32_t StateOfFlags(std::uint32_t flags) {
  return If((flags & kMailReplied) != 0, kStateReplied) | If((flags & kMailForwarded) != 0, kStateForwarded) |
         If((flags & kMailRead) == 0, kStateUnread) | If((flags & kMailMarked) != 0, kStateMarked);
}

std::optional<std::string> HostState::AddMails(const std::filesystem::path& path,
                                               MailStore::Unreadable unreadable) {
  const bool first = mail_count() == 0;
  const std::size_t before = mail_count();
  std::optional<std::string> reason = store_.Add(path, unreadable);
  memories_.resize(mail_count());
  if (reason) return reason;
  tree_.Load();
  LoadMarks(before);
  if (first && HasRoot()) folder_ = Mail(root_).folder;
  return std::nullopt;
}

bool HostState::Open(std::size_t index) {
  if (index >= mail_count()) return false;
  root_ = index;
  selection.SelectOpenMail();
  view.first_line = 0;
  view.all_text_selected = false;
  // A search folder stays while its own mails are opened.
  const bool listed =
      folders()[folder_].kind == FolderKind::kSearch && std::ranges::count(MailsOf(folder_), index) > 0;
  if (!listed && !memories_[index].removed) folder_ = Mail(index).folder;
  return true;
}

const HostMessage& HostState::Message(std::size_t index) {
  if (const HostMessage* message = decoded_.Find(index)) return *message;
  return decoded_.Keep(index, MakeHostMessage(Mail(index).raw), root_);
}

std::string HostState::Header(std::size_t index, std::string_view name) {
  const HostMessage* message = decoded_.Find(index);
  std::string& header = memories_[index].header;
  if (message == nullptr && header.empty()) header = MakeHostHeader(Mail(index).raw);
  return std::string(HeaderValue(message != nullptr ? message->text : header, name).value_or(""));
}

std::uint32_t HostState::StateWord(std::size_t index) {
  const HostMessage& message = Message(index);
  const std::uint32_t found = StateOfText(message.text, !message.attachments.empty()) |
                              If(message.body_was_html, kStateHtml) | StateOfFlags(Mail(index).flags);
  const Memory& memory = memories_[index];
  return (found & ~memory.changed_mask) | memory.changed_bits;
}

void HostState::ChangeState(std::size_t index, std::uint32_t bits, std::uint32_t mask) {
  Memory& memory = memories_[index];
  memory.changed_mask |= mask;
  memory.changed_bits = (memory.changed_bits & ~mask) | (bits & mask);
}

std::uint32_t HostState::CurrentState() {
  if (!HasDraft()) return StateWord(root_);
  const Draft& draft = *writing.draft;
  const std::uint32_t found =
      StateOfText(draft.text, !draft.attachments.empty()) | If(!draft.html.empty(), kStateHtml);
  return found ^ writing.switched;
}

void HostState::ChangeCurrentState(std::uint32_t bits, std::uint32_t mask) {
  if (!HasDraft()) return ChangeState(root_, bits, mask);
  writing.switched ^= (CurrentState() ^ bits) & mask;
}

void HostState::Remove(std::size_t index) {
  memories_[index].removed = true;
  selection.Forget(index);
}

const std::string& HostState::CurrentText() {
  if (HasDraft()) return writing.draft->text;
  const std::optional<std::string>& edited = memories_[root_].edited;
  return edited ? *edited : Message(root_).text;
}

std::string& HostState::EditText(std::size_t index) {
  std::optional<std::string>& edited = memories_[index].edited;
  if (!edited) edited = Message(index).text;
  ChangeState(index, kStateAltered, kStateAltered);
  return *edited;
}

void HostState::TakeRewritten(std::size_t index, std::string raw, std::int64_t moved_bytes) {
  StoredMail& mail = Mail(index);
  mail.raw = std::move(raw);
  decoded_.Forget(index);
  memories_[index].header.clear();
  memories_[index].edited.reset();
  memories_[index].rewritten = true;
  for (StoredMail& other : store_.mails()) {
    if (other.source == mail.source && other.offset > mail.offset) {
      other.offset = static_cast<std::uint64_t>(static_cast<std::int64_t>(other.offset) + moved_bytes);
    }
  }
  SaveMarks();
}

std::size_t HostState::AddWritten(const std::filesystem::path& file, std::string raw) {
  const std::size_t index = store_.AddWritten(file, std::move(raw));
  memories_.resize(mail_count());
  tree_.Load();
  return index;
}

}  // namespace wrenfold
