// What the small host holds while it runs: its mails, which one is open, and what it decoded of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/mail/list_view.h"
#include "host/mail/mail_state.h"
#include "host/mail/mail_store.h"
#include "host/mail/reception.h"
#include "host/mail/selection.h"
#include "host/mime/message.h"
#include "host/requests/command_state.h"

namespace wrenfold {

// What the mail being written was begun for, as code 169 answers.
enum class DraftPurpose : std::int64_t { kNewMail = 0, kReply = 1, kForward = 2 };

class HostState {
 public:
  // Returns why the mails of `path` cannot be read; nullopt when they were added.
  std::optional<std::string> AddMails(const std::filesystem::path& path, MailStore::Unreadable unreadable);
  // Why files of folders were left out, each "cannot read X: ...".
  const std::vector<std::string>& skipped_mails() const { return store_.skipped(); }

  // --- The mails; an index counts all of them, in the order in which they were read ---

  std::size_t mail_count() const { return store_.mails().size(); }
  bool HasRoot() const { return root_ < mail_count(); }
  std::size_t root() const { return root_; }
  // Makes mail `index` the root mail and its folder the current one; false when there is no such mail.
  bool Open(std::size_t index);

  StoredMail& Mail(std::size_t index) { return store_.mails()[index]; }
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

  // Adds mails to a folder while the program runs; no file of that folder changes.
  void Import(std::vector<StoredMail> mails, std::size_t folder);
  // Takes a mail out of its folder; its file stays, and so does the root mail.
  void Remove(std::size_t index);

  // --- Folders: the mail list shows the mails of the current one (shown_list.h) ---

  const std::vector<MailFolder>& folders() const { return store_.folders(); }
  std::size_t folder() const { return HasRoot() ? store_.mails()[root_].folder : 0; }
  // In the order in which they were read.
  std::vector<std::size_t> MailsOf(std::size_t folder) const;

  // --- The current mail: the one being written, else the root mail ---

  bool HasCurrent() const { return draft_ || HasRoot(); }
  const std::string& CurrentText();
  // The same text to be changed. Changes to a received mail show in the current mail only: the root mail
  // stays as it came.
  std::string& EditCurrent();
  void BeginDraft(DraftPurpose purpose, std::string text);
  void EndDraft() { draft_.reset(); }
  bool HasDraft() const { return draft_.has_value(); }
  DraftPurpose draft_purpose() const { return draft_purpose_; }

  // --- What is only remembered ---

  // A number that one code sets and another asks for (pane, sort method, ...), 0 at first.
  std::int64_t& Setting(int code) { return settings_[code]; }
  Selection selection;
  ListView list;
  MailView view;
  Reception reception;
  // Why the last request that failed did, as UTF-8; "" before the first.
  std::string failure;
  // What the keyword commands work with: accounts, templates, address book, ...
  CommandState commands;

 private:
  // What the host keeps of one mail beside its file.
  struct Memory {
    std::unique_ptr<HostMessage> message;  // null until first used
    std::optional<std::string> edited;     // its text once headers were changed
    std::uint32_t changed_mask = 0;
    std::uint32_t changed_bits = 0;
    std::int64_t colour = 0;
    bool removed = false;
  };

  MailStore store_;
  std::size_t root_ = 0;
  std::vector<Memory> memories_;
  std::optional<std::string> draft_;
  DraftPurpose draft_purpose_ = DraftPurpose::kNewMail;
  std::map<int, std::int64_t> settings_;
};

}  // namespace wrenfold
