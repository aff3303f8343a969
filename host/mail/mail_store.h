// The mails that the host was started with: loaded from .eml files, folders of them, and mbox files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

// What the host remembers of a mail while it runs; files are never changed.
enum MailFlag : std::uint32_t {
  kMailRead = 1,
  kMailReplied = 2,
  kMailForwarded = 4,
  kMailMarked = 8,
  kMailDeleted = 16,
  kMailOld = 32,  // seen in the list before, if not read
};

struct StoredMail {
  std::filesystem::path source;  // the file that holds it
  std::uint64_t offset = 0;      // of its first header in that file (mbox: behind the "From " line)
  std::string raw;               // the mail's own bytes; mbox: ">From " quoting undone
  std::uint32_t flags = 0;       // MailFlag; those but forwarded start from Status and X-Status
  std::size_t folder = 0;        // index into folders()
};

struct MailFolder {
  std::string name;            // UTF-8: the folder's own name, or the mbox file's without extension
  std::filesystem::path path;  // the folder, or the mbox file
};

class MailStore {
 public:
  enum class Unreadable : std::uint8_t { kSkip, kRefuse };

  // Adds the mails of a file or folder: *.eml, *.mbox (or any file that begins with an mbox "From " line), a
  // folder's files in order of their names and those of its folders one level down. Returns the reason in
  // UTF-8, "cannot read X: ...", when that fails; then nothing was added. Of a folder's files, one that
  // cannot be read makes it fail only when they are to be refused, or when nothing is left.
  std::optional<std::string> Add(const std::filesystem::path& path,
                                 Unreadable unreadable = Unreadable::kSkip);

  // Adds a mail that the host itself wrote to a file of its own, as one that was read. Gives its index.
  std::size_t AddWritten(const std::filesystem::path& file, std::string raw);

  // Why files of folders were skipped, each "cannot read X: ...".
  const std::vector<std::string>& skipped() const { return skipped_; }

  const std::vector<StoredMail>& mails() const { return mails_; }
  std::vector<StoredMail>& mails() { return mails_; }
  const std::vector<MailFolder>& folders() const { return folders_; }

 private:
  std::optional<std::string> AddFile(const std::filesystem::path& file);
  std::optional<std::string> AddFolder(const std::filesystem::path& folder, Unreadable unreadable);
  std::optional<std::string> AddFilesOf(const std::filesystem::path& folder, Unreadable unreadable);
  void AddMails(const std::filesystem::path& file, std::vector<StoredMail> mails, std::size_t folder);
  std::size_t FolderOf(const std::filesystem::path& path, std::string name);

  std::vector<StoredMail> mails_;
  std::vector<MailFolder> folders_;
  std::vector<std::string> skipped_;
};

// The mails of an mbox file's bytes. A mail begins at a "From " line that holds a time (12:34) and stands at
// the start or after an empty line; ">From ", ">>From " lines lose one ">".
std::vector<StoredMail> SplitMbox(std::string_view bytes);
bool IsMbox(std::string_view bytes);
// The flags that the Status and X-Status headers of a mail's bytes tell.
std::uint32_t FlagsOf(std::string_view raw);

// A path for messages; and one from UTF-8.
std::string PathToUtf8(const std::filesystem::path& path);
std::filesystem::path PathFromUtf8(std::string_view utf8);

}  // namespace wrenfold
