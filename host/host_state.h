// What the small host holds while it runs: its mails, which one is open, and what it decoded of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
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
  // The mail-state word: what the mail and its file say, and what was changed since.
  std::uint32_t StateWord(std::size_t index);
  // Sets the bits of `mask` to those of `bits`. Nothing is written to the mail's file.
  void ChangeState(std::size_t index, std::uint32_t bits, std::uint32_t mask);
  bool Folds(std::size_t index) { return (StateWord(index) & kStateNoFolding) == 0; }

  // Colour label of a mail, 0 at first.
  std::int64_t colour(std::size_t index) const { return memories_[index].colour; }
  void set_colour(std::size_t index, std::int64_t colour) { memories_[index].colour = colour; }

 private:
  // What the host keeps of one mail beside its file.
  struct Memory {
    std::unique_ptr<HostMessage> message;  // null until first used
    std::uint32_t changed_mask = 0;
    std::uint32_t changed_bits = 0;
    std::int64_t colour = 0;
  };

  MailStore store_;
  std::size_t root_ = 0;
  std::vector<Memory> memories_;
};

}  // namespace wrenfold
