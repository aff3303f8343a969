// What the small host holds while it runs: its mails, which one is open, and what it decoded of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mail_store.h"
#include "mime.h"

namespace wrenfold {

// Bits of the mail-state word that codes 15 and 263 answer.
enum MailState : std::uint32_t {
  kStateNoFolding = 0x00004000,
  kStateHighPriority = 0x00008000,
  kStateAttachment = 0x00010000,
  kStateReplied = 0x00040000,
  kStateForwarded = 0x00080000,
  kStateUnread = 0x00100000,
  kStateMessageId = 0x01000000,
  kStateInReplyTo = 0x02000000,
  kStateMarked = 0x04000000,
  kStateCc = 0x08000000,
};

class HostState {
 public:
  // Returns why the mails of `path` cannot be read; nullopt when they were added.
  std::optional<std::string> AddMails(const std::filesystem::path& path);

  std::size_t mail_count() const { return store_.mails().size(); }
  bool HasRoot() const { return root_ < mail_count(); }
  std::size_t root() const { return root_; }
  // Makes mail `index` the root mail, which is also the current one; false when there is no such mail.
  bool Open(std::size_t index);

  StoredMail& Mail(std::size_t index) { return store_.mails()[index]; }
  const MailFolder& FolderOf(std::size_t index) const {
    return store_.folders()[store_.mails()[index].folder];
  }
  const MailStore& store() const { return store_; }

  // The mail decoded to host text, kept from its first use on: addresses stay valid.
  const HostMessage& Message(std::size_t index);
  // Header `name` of the mail as host text, "" when absent.
  std::string Header(std::size_t index, std::string_view name);
  // The mail-state word.
  std::uint32_t StateWord(std::size_t index);
  // Turns line folding of a mail on or off.
  void SetFolding(std::size_t index, bool on);

 private:
  MailStore store_;
  std::size_t root_ = 0;
  std::vector<std::unique_ptr<HostMessage>> messages_;  // null until first used
  std::vector<bool> unfolded_;
};

}  // namespace wrenfold
