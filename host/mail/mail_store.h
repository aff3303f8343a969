// The mails that the host was started with: loaded from .eml files, trees of folders of them, and mbox files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "host/mail/mbox.h"

namespace wrenfold {

// What the headers of a mail, or the way in which it came, tell of its state.
enum MailFlag : std::uint32_t {
  kMailRead = 1,
  kMailReplied = 2,
  kMailForwarded = 4,
  kMailMarked = 8,
  kMailDeleted = 16,
  kMailOld = 32,  // seen in the list before, if not read
};

// What holds a mail on disk.
enum class MailPlace : std::uint8_t {
  kMemory,  // nothing: it was imported, opened from a file outside its folder, or removed
  kFile,    // a file of its own in its folder
  kMbox,    // a part of the mbox file that is its folder
};

struct StoredMail {
  std::filesystem::path source;   // the file that holds it, or held it when it was read
  std::uint64_t offset = 0;       // of its first header in that file (mbox: behind the "From " line)
  std::string raw;                // the mail's own bytes; mbox: ">From " quoting undone
  std::uint32_t flags = 0;        // MailFlag; those but forwarded start from Status and X-Status
  std::uint32_t first_flags = 0;  // what its own headers tell whenever it is read
  std::size_t folder = 0;         // index into folders()
  MailPlace place = MailPlace::kMemory;
};

enum class FolderKind : std::uint8_t {
  kFolder,
  kMbox,
  kSearch,  // shows what a search finds; there is nothing of that path on disk
};

struct MailFolder {
  std::string name;            // UTF-8: the folder's own name, or the mbox file's without extension
  std::filesystem::path path;  // the folder, or the mbox file
  FolderKind kind = FolderKind::kFolder;
  std::size_t tree = 0;  // index into trees()
  bool removed = false;  // deleted while the host runs: the others keep their numbers
};

// What one path on the command line gave: a folder with those below it; of a file, the folder it lies in.
struct MailTree {
  std::filesystem::path root;
  bool whole = false;  // the folder was named: those below it are read too
};

// What is wrong with an .mbox file that is none.
inline constexpr char kNoMbox[] = "an mbox file begins with a \"From \" line";

// A folder of this name holds what the host itself keeps, the mails that it sends and receives among it.
inline constexpr char kOwnFolder[] = "wrenfold";

class MailStore {
 public:
  enum class Unreadable : std::uint8_t { kSkip, kRefuse };

  // A folder that is not looked at below another one, where mails wait to be received or sent.
  void LeaveOut(const std::filesystem::path& folder);

  // Adds the mails of a file or folder: *.eml, *.mbox (or any file that begins with an mbox "From " line), a
  // folder's files in order of their names, then those of the folders below it. Folders without mails are
  // added too; below the first, kOwnFolder, those that are left out and those whose name begins with a period
  // are not looked at. A file that was read before is not read again. Returns the reason in UTF-8, "cannot
  // read X: ...", when that fails; then nothing was added. Of a folder's files, one that cannot be read makes
  // it fail only when they are to be refused, or when nothing is left.
  std::optional<std::string> Add(const std::filesystem::path& path,
                                 Unreadable unreadable = Unreadable::kSkip);

  // The folder whose mails lie in `folder`, or that would read it from a path which is not there yet;
  // nullopt for one that is no folder of mails. However the two are named, links included.
  std::optional<std::size_t> ReadsFrom(const std::filesystem::path& folder) const;

  // Whether Add reads the folder of a path in a tree, "lists/users": what is filed elsewhere is lost.
  bool LooksAt(std::size_t tree, std::string_view path) const;

  // Adds a mail that the host itself wrote to a file of its own, as one that was read. Gives its index.
  std::size_t AddWritten(const std::filesystem::path& file, std::string raw);

  // Why files of folders were skipped, each "cannot read X: ..."; of all half-written ones that one Add met
  // "X, Y were left ...".
  const std::vector<std::string>& skipped() const { return skipped_; }

  const std::vector<StoredMail>& mails() const { return mails_; }
  std::vector<StoredMail>& mails() { return mails_; }
  const std::vector<MailFolder>& folders() const { return folders_; }
  const std::vector<MailTree>& trees() const { return trees_; }

  // The number of the folder, added behind the others unless it is there, in any case of letters; FolderAt is
  // that of a path on disk.
  std::size_t FolderAt(const std::filesystem::path& path);
  std::size_t TreeAround(const std::filesystem::path& folder);
  std::size_t AddFolder(const MailFolder& folder);
  void RemoveFolder(std::size_t folder) { folders_[folder].removed = true; }
  // Where a folder lies in its tree, as UTF-8 with slashes: "lists/users", "." for the top.
  std::string PathInTree(std::size_t folder) const;

  // Looks at a folder's files again: new mails are added, behind the others; `gone` are those whose file is
  // no longer there, or whose mbox does not hold them any more. A file that was rewritten keeps the mail that
  // was read from it. What cannot be read is told in skipped(), once.
  struct Changes {
    std::size_t added = 0;
    std::vector<std::size_t> gone;
    std::string failure;  // "cannot read X: ..."; then nothing was changed
  };
  Changes ReadAgain(std::size_t folder);

  // No file or folder is changed: filing changes what is remembered, and no more.
  void set_read_only(bool read_only) { read_only_ = read_only; }
  bool read_only() const { return read_only_; }

 private:
  std::optional<std::string> ReadMails(const std::filesystem::path& file);
  std::optional<std::string> AddFile(const std::filesystem::path& file, std::size_t tree);
  std::optional<std::string> AddTree(const std::filesystem::path& root, Unreadable unreadable);
  std::optional<std::string> AddBranch(const std::filesystem::path& folder, std::size_t tree, int level,
                                       Unreadable unreadable);
  std::optional<std::string> AddFiles(const std::vector<std::filesystem::path>& entries, std::size_t tree,
                                      Unreadable unreadable);
  std::size_t FolderOfMails(const std::filesystem::path& file, std::size_t tree);
  void AddMails(const std::filesystem::path& file, std::vector<StoredMail> mails, std::size_t folder);
  std::size_t TreeOf(const std::filesystem::path& root);
  bool IsLeftOut(const std::filesystem::path& folder) const;
  std::set<std::filesystem::path> KnownFiles() const;
  Changes ReadMboxAgain(std::size_t folder);

  std::vector<StoredMail> mails_;
  std::vector<MailFolder> folders_;
  std::vector<std::filesystem::path> folder_keys_;  // of each folder: its path without "..", links, capitals
  std::vector<MailTree> trees_;
  std::set<std::filesystem::path> known_;  // files that were read before, while others are being read
  std::filesystem::path filled_;  // the folder whose files were read last, and its number: to find a folder's
  std::size_t filled_number_ = 0;  // number asks the system, and its files mostly follow each other
  std::set<std::filesystem::path> left_out_;
  bool nothing_new_ = false;  // a file was read that gave no mail, rightly
  std::vector<std::string> skipped_;
  std::vector<std::filesystem::path> left_;  // half-written files that Add has met
  bool read_only_ = false;
};

// The mails of an mbox file's bytes. A mail begins at a "From " line that holds a time (12:34) and stands at
// the start or after an empty line; ">From ", ">>From " lines lose one ">".
std::vector<StoredMail> SplitMbox(std::string_view bytes);
// The flags that the Status and X-Status headers of a mail's bytes tell; a draft counts as read.
std::uint32_t FlagsOf(std::string_view raw);

}  // namespace wrenfold
