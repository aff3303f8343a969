// What the small host holds while it runs: its mails, which one is open, and what it decoded of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/folders/folder_tree.h"
#include "host/list/list_view.h"
#include "host/list/selection.h"
#include "host/macro/runner.h"
#include "host/mail/mail_state.h"
#include "host/mail/mail_store.h"
#include "host/mail/marks_file.h"
#include "host/mime/message.h"
#include "host/post/reception.h"
#include "host/requests/command_state.h"
#include "host/requests/decoded_mails.h"
#include "host/requests/folder_state.h"
#include "host/writing/writing_state.h"

namespace wrenfold {

// Bits of the state word that MailFlag tells.
std::uint32_t StateOfFlags(std::uint32_t flags);

class HostState {
 public:
  HostState() = default;
  HostState(const HostState&) = delete;
  HostState& operator=(const HostState&) = delete;

  // Returns why the mails of `path` cannot be read; nullopt when they were added.
  std::optional<std::string> AddMails(const std::filesystem::path& path, MailStore::Unreadable unreadable);
  // A folder that is no part of a tree of mails; before mails are added.
  void LeaveOut(const std::filesystem::path& folder) { store_.LeaveOut(folder); }
  // Why files of folders were left out, each "cannot read X: ...".
  const std::vector<std::string>& skipped_mails() const { return store_.skipped(); }

  // --- The mails; an index counts all of them, in the order in which they were read ---

  std::size_t mail_count() const { return store_.mails().size(); }
  bool HasRoot() const { return root_ < mail_count(); }
  std::size_t root() const { return root_; }
  // Makes mail `index` the root mail and its folder the current one; false when there is no such mail.
  bool Open(std::size_t index);

  StoredMail& Mail(std::size_t index) { return store_.mails()[index]; }
  // The mail decoded to host text; its address stays valid as DecodedMails tells.
  const HostMessage& Message(std::size_t index);
  // The whole root mail as host text. There must be one.
  const std::string& RootText() { return Message(root_).text; }
  // Header `name` of the mail as host text, "" when absent.
  std::string Header(std::size_t index, std::string_view name);

  // The mail-state word: what the mail and its file say, and what was changed since.
  std::uint32_t StateWord(std::size_t index);
  // Sets the bits of `mask` to those of `bits`. Nothing is written to the mail's own file.
  void ChangeState(std::size_t index, std::uint32_t bits, std::uint32_t mask);
  bool Folds(std::size_t index) { return (StateWord(index) & kStateNoFolding) == 0; }

  // Colour label of a mail, 0 at first.
  std::int64_t colour(std::size_t index) const { return memories_[index].colour; }
  void set_colour(std::size_t index, std::int64_t colour) { memories_[index].colour = colour; }

  // --- What is kept of mails beside their files (marks_file.h), in host_marks.cpp ---

  // Writes what differs from what was read, into the folders where the mails lie. Reading gives it back when
  // mails are added; filing writes it at once, the end of the program the rest. False when a file cannot be
  // written: what it holds is as it was, and `complain` is told once.
  bool SaveMarks();
  // Takes one line of UTF-8 that the user is to see.
  std::function<void(const std::string&)> complain;

  // Takes a mail out of its folder; its file stays, and so does the root mail.
  void Remove(std::size_t index);
  // True for a mail in no folder: removed, or opened from a file alone.
  bool IsRemoved(std::size_t index) const { return memories_[index].removed; }
  bool LiesIn(std::size_t index, std::size_t folder) const {
    return store_.mails()[index].folder == folder && !IsRemoved(index);
  }
  // True for a number that no mail has any more: it was removed for good.
  bool IsGone(std::size_t index) const {
    return index >= mail_count() || (memories_[index].removed && !memories_[index].alone);
  }
  // Makes the mail at `offset` of a file the root mail, one of no folder unless it was read already. Why not.
  std::optional<std::string> OpenFile(const std::filesystem::path& file, std::uint64_t offset);

  // --- Folders: the mail list shows the mails of the current one (shown_list.h) ---

  const std::vector<MailFolder>& folders() const { return store_.folders(); }
  const std::vector<MailTree>& trees() const { return store_.trees(); }
  // See MailStore.
  std::optional<std::size_t> ReadsFrom(const std::filesystem::path& folder) const {
    return store_.ReadsFrom(folder);
  }
  FolderTree& tree() { return tree_; }
  std::size_t folder() const { return folder_; }
  // Makes a folder the current one and opens its first mail; an empty one leaves no root mail.
  void ShowFolder(std::size_t folder);
  // In the order in which they were read, or found.
  std::vector<std::size_t> MailsOf(std::size_t folder) const;
  // Reads a folder's files again, or searches again. Why it cannot be read.
  std::optional<std::string> Refresh(std::size_t folder);
  // Searches for the mails of a search folder unless those found are still right or it waits to be asked;
  // others are left alone.
  void EnsureSearched(std::size_t folder);
  FolderState& folder_state() { return folder_state_; }

  // --- Filing: files and list follow; the root mail becomes the next of the list when it leaves. Each
  // returns why some mails stay where they are, "" when all was done ---

  void set_read_only(bool read_only) { store_.set_read_only(read_only); }
  bool read_only() const { return store_.read_only(); }
  std::string MoveMails(std::span<const std::size_t> mails, std::size_t target);
  std::string CopyMails(std::span<const std::size_t> mails, std::size_t target);
  // To the trash of their tree, which is made when missing; what lies in it is removed for good.
  std::string DeleteMails(std::span<const std::size_t> mails);
  // A draft that was sent or saved elsewhere goes out of its mbox for good, also when mails are only read:
  // left there it would be sent again. Why it stays.
  std::string TakeOutOfMbox(std::size_t draft);
  // Writes new mails into a folder, behind the mails that there are.
  std::string AddMail(std::string raw, std::size_t folder, std::uint32_t flags);
  std::string Import(std::vector<StoredMail> mails, std::size_t folder);
  // The same of the mails, unread, in a file that is in no folder; the file goes when it does not stay there.
  std::string Receive(const std::filesystem::path& file, std::size_t folder, bool stays);
  // The folder of a path on disk, which becomes one of the host's.
  std::size_t FolderAt(const std::filesystem::path& path);

  // --- The current mail: the one being written, else the root mail ---

  bool HasCurrent() const { return HasDraft() || HasRoot(); }
  const std::string& CurrentText();
  // The same text to be changed. Changes to a received mail show in the current mail only: the root mail
  // stays as it came until it is saved.
  std::string& EditCurrent() { return HasDraft() ? writing.draft->text : EditText(root_); }
  // Its state word: of a mail being written what its text says and what was changed.
  std::uint32_t CurrentState();
  void ChangeCurrentState(std::uint32_t bits, std::uint32_t mask);
  bool HasDraft() const { return writing.draft.has_value(); }
  DraftPurpose draft_purpose() const { return HasDraft() ? writing.draft->purpose : DraftPurpose::kNewMail; }
  WritingState writing;

  // --- Changes to received mails ---

  // The text of a mail with its changes; nullopt when it was not changed.
  const std::optional<std::string>& Changes(std::size_t index) const { return memories_[index].edited; }
  void SetChanges(std::size_t index, std::optional<std::string> text) {
    memories_[index].edited = std::move(text);
  }
  std::string& EditText(std::size_t index);
  // A mail has other bytes in its file: what was decoded of the old ones and the changes are forgotten.
  // In an mbox the mails behind it move.
  void TakeRewritten(std::size_t index, std::string raw, std::int64_t moved_bytes);
  // A mail was written to a file of its own, in a folder that becomes one of the host's. Gives its index.
  std::size_t AddWritten(const std::filesystem::path& file, std::string raw);

  // --- What is only remembered ---

  Selection selection;
  ListView list;
  MailView view;
  Reception reception;
  // Why the last request, or the last call of a macro, failed, as UTF-8; "" when it did not.
  std::string failure;
  // Runs macros in other windows; empty: nobody does, and those requests are answered 0.
  MacroRunner run_macro;
  // Runs the macro file that has its turn before a mail is sent (UTF-8); empty: no mail is sent then.
  MacroFileRunner run_macro_file;
  // What the keyword commands work with: accounts, templates, address book, ...
  CommandState commands;

 private:
  // A mail's line in a marks file, as it was read or written last.
  struct KeptMarks {
    std::filesystem::path folder;  // that holds the marks file
    std::filesystem::path source;
    std::uint64_t offset = 0;
    MailMarks marks;
    bool operator==(const KeptMarks&) const = default;
  };

  // What the host keeps of one mail beside its file.
  struct Memory {
    std::string header;                 // the headers of its text, "" until one is asked for without the rest
    std::optional<std::string> edited;  // its text once headers were changed
    std::uint32_t changed_mask = 0;
    std::uint32_t changed_bits = 0;
    std::int64_t colour = 0;
    std::string other_marks;        // fields of the marks file that others wrote
    std::optional<KeptMarks> kept;  // what the file holds of it
    bool rewritten = false;         // since then the mail has other bytes
    bool removed = false;
    bool alone = false;  // opened from a file: it is removed from nowhere
  };

  // Where the mail list is before mails leave it, and the nearest mail that is left afterwards.
  struct ListPlace {
    std::vector<std::size_t> list;
    std::size_t position;
    bool root_listed;
  };
  ListPlace PlaceInList();
  void ReturnTo(const ListPlace& place);
  // Behind the mails that there are; and out of there again.
  std::vector<std::size_t> Append(std::vector<StoredMail> mails);
  void TakeOut(const std::vector<std::size_t>& added);
  std::vector<std::size_t> Filable(std::span<const std::size_t> mails, std::string& failure) const;
  void MailsChanged();
  void Search(std::size_t folder);
  // Of the mails from `first` on, those that came.
  void LoadMarks(std::size_t first);
  MailMarks MarksOf(std::size_t index) const;
  void TakeMarks(std::size_t index, const MailMarks& marks);
  bool LiesOnDisk(std::size_t index) const;
  // Where its marks file is; the mails that share one.
  std::filesystem::path MarksFolder(std::size_t index) const;
  std::vector<std::size_t> MailsBesideMarks(const std::filesystem::path& folder) const;
  std::vector<MarkableMail> Markable(const std::vector<std::size_t>& mails) const;
  std::optional<KeptMarks> MarksToKeep(std::size_t index) const;
  bool MarksDiffer(std::size_t index, const std::optional<KeptMarks>& now) const;
  std::vector<std::filesystem::path> ChangedMarksFolders() const;
  std::vector<MarksLine> LinesToKeep(const MarksText& text, const std::vector<std::size_t>& mails) const;
  std::vector<MarksLine> LinesOfOthers(const MarksText& text, const std::filesystem::path& folder,
                                       const std::vector<std::size_t>& mails) const;
  std::optional<std::string> SaveMarksOf(const std::filesystem::path& folder);
  void NoteKept(const std::filesystem::path& folder, const std::vector<std::size_t>& mails);
  // For mails of files that are named: the one at a place; and with what was written there since.
  std::optional<std::size_t> MailAt(const std::filesystem::path& file, std::uint64_t offset) const;
  std::optional<std::size_t> KnownMail(const StoredMail& read);

  MailStore store_;
  FolderTree tree_{store_};
  FolderState folder_state_;
  std::size_t root_ = 0;
  std::size_t folder_ = 0;
  std::vector<Memory> memories_;
  DecodedMails decoded_;
  std::set<std::filesystem::path> unsaved_told_;  // marks files that cannot be written
};

}  // namespace wrenfold
