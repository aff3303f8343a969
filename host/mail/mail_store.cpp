#include "host/mail/mail_store.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/left_files.h"
#include "host/files/links.h"
#include "host/files/real_path.h"
#include "host/files/whole_file.h"
#include "host/mail/marks_file.h"
#include "host/mail/mbox.h"
#include "host/mail/mbox_adding.h"
#include "host/mime/message.h"
#include "host/mime/sections.h"
#include "host/terminal/progress.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

std::string ExtensionOf(const fs::path& path) { return Lower(PathToUtf8(path.extension())); }

bool IsMailFile(const fs::path& path) {
  const std::string extension = ExtensionOf(path);
  return extension == ".eml" || extension == ".mbox";
}

// What ReplaceFile writes beside a mail's file and renames at once.
bool IsMarks(const fs::path& path) { return IsMarksFile(PathToUtf8(path.filename())); }
bool IsHalfWritten(const fs::path& path) {
  return ExtensionOf(path) == ".new" && (IsMailFile(path.stem()) || IsMarks(path));
}

// The folder itself when it is given as "x/" or ".".
fs::path Normal(const fs::path& path) {
  const fs::path normal = path.lexically_normal();
  return normal.has_filename() ? normal : normal.parent_path();
}

std::string FolderName(const fs::path& folder) {
  std::error_code error;
  fs::path named = Normal(folder);
  if (named.filename() == "." || named.filename() == ".." || named.empty())
    named = fs::absolute(named, error);
  return PathToUtf8(Normal(named).filename());
}

// Entries of a folder in order of their names.
std::vector<fs::path> Entries(const fs::path& folder, std::error_code& error) {
  std::vector<fs::path> entries;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error))
    entries.push_back(entry->path());
  std::sort(entries.begin(), entries.end());
  return entries;
}

constexpr const char* kTooLong = "its name is too long, with the folders above it";

// Windows' run time knows no longer path than this: it lists an empty folder or finds no such file, and tells
// no error.
bool IsTooLong(const fs::path& path) {
#ifdef _WIN32
  constexpr std::size_t kLongest = 259;
#else
  constexpr std::size_t kLongest = 4095;
#endif
  std::error_code error;
  return fs::absolute(path, error).native().size() > kLongest;
}

bool IsFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

struct Listing {
  std::vector<fs::path> entries;
  std::optional<std::string> failure;
};

Listing ListingOf(const fs::path& folder) {
  if (IsTooLong(folder / "*")) return {{}, CannotRead(folder, kTooLong)};
  std::error_code error;
  Listing listing{Entries(folder, error), std::nullopt};
  if (error) listing.failure = CannotRead(folder, ReasonOf(error));
  return listing;
}

struct FlagLetter {
  char letter;
  std::uint32_t flag;
};

// "Status: RO", "X-Status: AF" as mail programs write them into mbox files.
constexpr FlagLetter kFlagLetters[] = {
    {'R', kMailRead}, {'A', kMailReplied}, {'F', kMailMarked}, {'D', kMailDeleted}, {'O', kMailOld}};

// Folders below folders that are looked at; what lies deeper is no mail tree.
constexpr int kDeepest = 32;

// A host that is adding to an mbox for longer is not waited for.
constexpr std::chrono::milliseconds kReadingWait{1000};

// One name for each file, however it is reached.
fs::path Key(const fs::path& path) { return RealPath(path); }

// Of a folder that may not be there yet, so that the system cannot tell its letters.
fs::path CaselessKey(const fs::path& path) { return PathFromUtf8(Lower(PathToUtf8(Key(path)))); }

fs::path FolderOfFile(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

fs::path FileKey(const fs::path& file) { return Key(FolderOfFile(file)) / file.filename(); }

fs::path FolderKey(const MailFolder& folder) {
  const fs::path key = folder.kind == FolderKind::kFolder ? Key(folder.path) : FileKey(folder.path);
  return PathFromUtf8(Lower(PathToUtf8(key)));
}

// Whether a file lies in a folder, or is that mbox, by any of its names.
class LiesIn {
 public:
  LiesIn(FolderKind kind, const fs::path& key) : kind_(kind), key_(key) {}

  bool operator()(const fs::path& file) {
    // Files of one folder mostly follow each other, and finding its key asks the system.
    fs::path holder = kind_ == FolderKind::kMbox ? file : FolderOfFile(file);
    if (holder != last_) {
      lies_ = FolderKey({{}, holder, kind_}) == key_;
      last_ = std::move(holder);
    }
    return lies_;
  }

 private:
  FolderKind kind_;
  const fs::path& key_;
  fs::path last_;
  bool lies_ = false;
};

// True when there surely is no such file; not when the system cannot tell.
bool IsGone(const fs::path& file) {
  std::error_code error;
  const fs::file_type type = fs::status(file, error).type();
  return type != fs::file_type::none && type != fs::file_type::unknown && type != fs::file_type::regular;
}

// True for keys that could differ by the case of letters beyond ASCII, which only the system knows.
bool AreAlike(const fs::path::string_type& a, const fs::path::string_type& b) {
  constexpr std::uint32_t kLastAscii = 0x7F;
  return std::ranges::equal(a, b, [](auto x, auto y) {
    return x == y ||
           (static_cast<std::uint32_t>(x) > kLastAscii && static_cast<std::uint32_t>(y) > kLastAscii);
  });
}

}  // namespace

std::uint32_t FlagsOf(std::string_view raw) {
  const MessageParts parts = SplitMessage(raw);
  const std::string letters =
      std::string(FindHeader(parts, "Status")) + std::string(FindHeader(parts, "X-Status"));
  std::uint32_t flags = 0;
  for (const FlagLetter& row : kFlagLetters) {
    if (letters.find(row.letter) != letters.npos) flags |= row.flag;
  }
  if (Trim(FindHeader(parts, "X-Unsent")) == "1") flags |= kMailRead;
  return flags;
}

std::vector<StoredMail> SplitMbox(std::string_view bytes) {
  std::vector<StoredMail> mails;
  for (const MboxSpan& span : MboxSpans(bytes)) {
    StoredMail& mail = mails.emplace_back();
    mail.offset = span.mail;
    mail.raw = MailOfSpan(bytes, span);
  }
  return mails;
}

// --- Reading ---

// The bytes of a file without what somebody was adding to the mbox: another host, or one that was ended,
// whose half mail is taken back.
std::optional<std::string> MailStore::ReadMails(const fs::path& file) {
  const bool is_mbox = ExtensionOf(file) == ".mbox";
  const FileHold hold(is_mbox ? std::vector{file} : std::vector<fs::path>(), kReadingWait);
  if (is_mbox && !hold.failure() && !read_only_ && TakeBackAdding(file))
    skipped_.push_back(PathToUtf8(file) + " ended in a mail that was not wholly added; that was taken back");
  std::optional<std::string> bytes = ReadWholeFile(file);
  if (!bytes || !(is_mbox || IsMbox(*bytes))) return bytes;
  if (const auto size = SizeBeforeAdding(file, *bytes)) bytes->resize(*size);
  return bytes;
}

// All or nothing: what a failed path has added already is taken back.
std::optional<std::string> MailStore::Add(const fs::path& path, Unreadable unreadable) {
  const std::size_t mails_before = mails_.size();
  const std::size_t folders_before = folders_.size();
  const std::size_t trees_before = trees_.size();
  const std::size_t skipped_before = skipped_.size();
  known_ = KnownFiles();
  nothing_new_ = false;
  std::optional<std::string> failure =
      IsFolder(path) ? AddTree(path, unreadable) : AddFile(path, TreeOf(FolderOfFile(path)));
  if (!left_.empty()) skipped_.push_back(ToldAsLeft(left_));
  left_.clear();
  if (!failure && mails_.size() == mails_before && !nothing_new_) {
    failure = skipped_.size() > skipped_before ? skipped_.back()
                                               : CannotRead(path, "no .eml or .mbox file in this folder");
  }
  if (failure) {
    mails_.resize(mails_before);
    folders_.resize(folders_before);
    folder_keys_.resize(folders_before);
    trees_.resize(trees_before);
  }
  return failure;
}

std::set<fs::path> MailStore::KnownFiles() const {
  std::set<fs::path> known;
  fs::path folder;
  fs::path key;
  for (const StoredMail& mail : mails_) {
    if (mail.place == MailPlace::kMemory) continue;
    // Mails of one folder mostly follow each other, and finding its key asks the system.
    if (key.empty() || FolderOfFile(mail.source) != folder) {
      folder = FolderOfFile(mail.source);
      key = Key(folder);
    }
    known.insert(key / mail.source.filename());
  }
  return known;
}

std::optional<std::string> MailStore::AddTree(const fs::path& root, Unreadable unreadable) {
  const std::size_t tree = TreeOf(root);
  trees_[tree].whole = true;
  return AddBranch(root, tree, 0, unreadable);
}

std::optional<std::string> MailStore::AddBranch(const fs::path& folder, std::size_t tree, int level,
                                                Unreadable unreadable) {
  AddFolder({FolderName(folder), Normal(folder), FolderKind::kFolder, tree});
  const Listing listing = ListingOf(folder);
  if (listing.failure) return listing.failure;
  std::size_t read = mails_.size();
  if (auto failure = AddFiles(listing.entries, tree, unreadable)) return failure;
  const std::size_t behind = mails_.size();
  for (const fs::path& entry : listing.entries) {
    // The system need not be asked again what a file is whose mails were just read, in this order.
    const std::size_t first = read;
    while (read < behind && mails_[read].source.native() == entry.native()) ++read;
    if (read > first) continue;
    // What there is, cannot be seen: a folder, a mail or neither. Each entry passes here once.
    if (IsTooLong(entry)) {
      std::string failure = CannotRead(entry, kTooLong);
      if (unreadable == Unreadable::kRefuse) return failure;
      skipped_.push_back(std::move(failure));
      continue;
    }
    // A link could lead back to where we are.
    if (level >= kDeepest || !IsFolder(entry) || IsLeftOut(entry) || IsLink(entry)) continue;
    auto failure = AddBranch(entry, tree, level + 1, unreadable);
    if (failure && unreadable == Unreadable::kRefuse) return failure;
    if (failure) skipped_.push_back(*std::move(failure));
  }
  return std::nullopt;
}

void MailStore::LeaveOut(const fs::path& folder) { left_out_.insert(CaselessKey(folder)); }

bool MailStore::IsLeftOut(const fs::path& folder) const {
  const std::string name = PathToUtf8(folder.filename());
  if (name.starts_with('.') || EqualsIgnoringCase(name, kOwnFolder)) return true;
  return !left_out_.empty() && left_out_.contains(CaselessKey(folder));
}

bool MailStore::LooksAt(std::size_t tree, std::string_view path) const {
  fs::path folder = trees_[tree].root;
  int level = 0;
  for (const fs::path& part : PathFromUtf8(std::string(path))) {
    folder /= part;
    if (++level > kDeepest || IsLeftOut(folder) || IsLink(folder)) return false;
  }
  return true;
}

std::optional<std::string> MailStore::AddFiles(const std::vector<fs::path>& entries, std::size_t tree,
                                               Unreadable unreadable) {
  Progress progress("reading mails", entries.size());
  for (const fs::path& entry : entries) {
    progress.Step();
    if (IsHalfWritten(entry)) {
      left_.push_back(entry);
      continue;
    }
    if (!IsMailFile(entry) || IsTooLong(entry)) continue;
    auto failure = AddFile(entry, tree);
    if (failure && unreadable == Unreadable::kRefuse) return failure;
    if (failure) skipped_.push_back(*std::move(failure));
  }
  return std::nullopt;
}

std::optional<std::string> MailStore::AddFile(const fs::path& file, std::size_t tree) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (status.type() == fs::file_type::not_found || error) return CannotRead(file, ReasonOf(error));
  if (status.type() == fs::file_type::directory) return std::nullopt;  // whatever its name
  if (status.type() != fs::file_type::regular) return CannotRead(file, "not a file");
  if (IsMarks(file)) return CannotRead(file, kMarksAreNoMail);
  if (!known_.empty() && known_.contains(FileKey(file))) return nothing_new_ = true, std::nullopt;
  errno = 0;
  std::optional<std::string> read = ReadMails(file);
  if (!read) return CannotRead(file, ReasonOf(std::error_code(errno, std::generic_category())));
  std::string& bytes = *read;
  // What filing leaves of an mbox when all its mails went elsewhere is a folder still.
  if (bytes.empty() && ExtensionOf(file) == ".mbox") {
    AddFolder({PathToUtf8(file.stem()), Normal(file), FolderKind::kMbox, tree});
    return nothing_new_ = true, std::nullopt;
  }
  if (bytes.empty()) return CannotRead(file, "the file is empty");
  std::vector<StoredMail> mails;
  if (IsMbox(bytes)) {
    mails = SplitMbox(bytes);
    // A mail that was saved with the "From " line of the mbox it lay in is still one mail of its folder.
    if (mails.size() != 1 || ExtensionOf(file) != ".eml") {
      AddMails(file, std::move(mails),
               AddFolder({PathToUtf8(file.stem()), Normal(file), FolderKind::kMbox, tree}));
      return std::nullopt;
    }
  } else {
    if (ExtensionOf(file) == ".mbox") return CannotRead(file, kNoMbox);
    mails.emplace_back().raw = std::move(bytes);
  }
  AddMails(file, std::move(mails), FolderOfMails(file, tree));
  return std::nullopt;
}

std::size_t MailStore::FolderOfMails(const fs::path& file, std::size_t tree) {
  const fs::path folder = FolderOfFile(file);
  const bool same = filled_ == folder && filled_number_ < folders_.size() &&
                    !folders_[filled_number_].removed && folders_[filled_number_].path == Normal(folder);
  if (!same) {
    filled_number_ = AddFolder({FolderName(folder), Normal(folder), FolderKind::kFolder, tree});
    filled_ = folder;
  }
  return filled_number_;
}

std::size_t MailStore::AddWritten(const fs::path& file, std::string raw) {
  StoredMail mail;
  mail.raw = std::move(raw);
  std::vector<StoredMail> mails;
  mails.push_back(std::move(mail));
  const std::size_t folder = FolderAt(FolderOfFile(file));
  // As the folder is written, by which its mails are known when it is read again.
  AddMails(folders_[folder].path / file.filename(), std::move(mails), folder);
  mails_.back().flags |= kMailRead;
  return mails_.size() - 1;
}

void MailStore::AddMails(const fs::path& file, std::vector<StoredMail> mails, std::size_t folder) {
  const bool in_mbox = folders_[folder].kind == FolderKind::kMbox;
  for (StoredMail& mail : mails) {
    mail.source = file;
    mail.folder = folder;
    mail.flags = mail.first_flags = FlagsOf(mail.raw);
    mail.place = in_mbox ? MailPlace::kMbox : MailPlace::kFile;
    mails_.push_back(std::move(mail));
  }
}

// --- Folders ---

std::size_t MailStore::TreeOf(const fs::path& root) {
  const fs::path key = Key(root);
  for (std::size_t i = 0; i < trees_.size(); ++i) {
    if (Key(trees_[i].root) == key) return i;
  }
  trees_.push_back({Normal(root)});
  return trees_.size() - 1;
}

// The tree in which the folder lies, else a tree of its own.
std::size_t MailStore::TreeAround(const fs::path& folder) {
  for (std::size_t i = 0; i < trees_.size(); ++i) {
    const fs::path inside = Normal(folder).lexically_relative(trees_[i].root);
    if (!inside.empty() && *inside.begin() != "..") return i;
  }
  return TreeOf(folder);
}

std::size_t MailStore::FolderAt(const fs::path& path) {
  return AddFolder({FolderName(path), Normal(path), FolderKind::kFolder, TreeAround(path)});
}

// A path that is not there yet lies where its nearest folder does.
std::optional<std::size_t> MailStore::ReadsFrom(const fs::path& folder) const {
  std::error_code error;
  fs::path at = Key(folder);
  std::vector<fs::path> behind;  // names below `at`, the first one last
  for (; at.has_relative_path() && !fs::exists(at, error); at = at.parent_path())
    behind.push_back(at.filename());
  for (std::size_t i = 0; i < folders_.size(); ++i) {
    const MailFolder& here = folders_[i];
    if (here.removed || here.kind != FolderKind::kFolder || !fs::equivalent(here.path, at, error) || error)
      continue;
    if (behind.empty()) return i;
    const bool reads =
        std::ranges::none_of(behind, [&](const fs::path& name) { return IsLeftOut(at / name); });
    if (trees_[here.tree].whole && reads) return i;
  }
  return std::nullopt;
}

std::size_t MailStore::AddFolder(const MailFolder& folder) {
  fs::path key = FolderKey(folder);
  std::error_code error;
  for (std::size_t i = 0; i < folders_.size(); ++i) {
    if (folders_[i].removed || !AreAlike(folder_keys_[i].native(), key.native())) continue;
    if (folder_keys_[i] == key || fs::equivalent(folders_[i].path, folder.path, error)) return i;
  }
  folders_.push_back(folder);
  folder_keys_.push_back(std::move(key));
  return folders_.size() - 1;
}

std::string MailStore::PathInTree(std::size_t folder) const {
  const MailFolder& found = folders_[folder];
  const std::u8string path = found.path.lexically_relative(trees_[found.tree].root).generic_u8string();
  return {path.begin(), path.end()};
}

// --- Reading again ---

MailStore::Changes MailStore::ReadAgain(std::size_t folder) {
  Changes changes;
  if (folders_[folder].kind == FolderKind::kSearch) return changes;
  if (folders_[folder].kind == FolderKind::kMbox) return ReadMboxAgain(folder);
  const Listing listing = ListingOf(folders_[folder].path);
  if (listing.failure) return changes.failure = *listing.failure, changes;
  const std::size_t before = mails_.size();
  LiesIn lies_here(FolderKind::kFolder, folder_keys_[folder]);
  for (std::size_t i = 0; i < before; ++i) {
    if (mails_[i].place != MailPlace::kFile || !lies_here(mails_[i].source) || !IsGone(mails_[i].source))
      continue;
    mails_[i].place = MailPlace::kMemory;
    changes.gone.push_back(i);
  }
  known_ = KnownFiles();
  const std::size_t skipped = skipped_.size();
  AddFiles(listing.entries, folders_[folder].tree, Unreadable::kSkip);
  const auto first = skipped_.begin() + static_cast<std::ptrdiff_t>(skipped);
  const std::set<std::string> told(skipped_.begin(), first);
  skipped_.erase(std::remove_if(first, skipped_.end(), [&](const auto& why) { return told.contains(why); }),
                 skipped_.end());
  left_.clear();  // told at the start
  changes.added = mails_.size() - before;
  return changes;
}

// A mail is known again by its bytes; what stands around it may have changed.
MailStore::Changes MailStore::ReadMboxAgain(std::size_t folder) {
  Changes changes;
  const fs::path file = folders_[folder].path;
  const auto bytes = ReadMails(file);
  if (!bytes) return changes.failure = WhyUnreadable(file), changes;
  if (!bytes->empty() && !IsMbox(*bytes)) return changes.failure = CannotRead(file, kNoMbox), changes;
  std::vector<std::size_t> before;
  LiesIn lies_here(FolderKind::kMbox, folder_keys_[folder]);
  for (std::size_t i = 0; i < mails_.size(); ++i) {
    if (mails_[i].place == MailPlace::kMbox && lies_here(mails_[i].source)) before.push_back(i);
  }
  std::vector<StoredMail> added;
  for (StoredMail& mail : SplitMbox(*bytes)) {
    const auto same =
        std::find_if(before.begin(), before.end(), [&](std::size_t i) { return mails_[i].raw == mail.raw; });
    if (same == before.end()) {
      added.push_back(std::move(mail));
    } else {
      mails_[*same].offset = mail.offset;
      before.erase(same);
    }
  }
  for (const std::size_t i : before) mails_[i].place = MailPlace::kMemory;
  changes.gone = std::move(before);
  changes.added = added.size();
  AddMails(file, std::move(added), folder);
  return changes;
}

}  // namespace wrenfold
