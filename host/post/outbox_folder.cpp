#include "host/post/outbox_folder.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/free_name.h"
#include "host/files/renaming.h"
#include "host/files/safe_saving.h"
#include "host/files/whole_file.h"
#include "host/folders/filing.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

// Sending may last: who waited for it would find the mail gone. Other holds of a file are short.
constexpr std::chrono::milliseconds kSendingWait{200};

std::string ExtensionOf(const fs::path& file) { return Lower(PathToUtf8(file.extension())); }

// Beside the name first, where nobody takes half of it for a mail; no file that is there is touched.
// Returns why it cannot be written.
std::optional<std::string> WriteNew(const fs::path& file, std::string_view bytes) {
  const fs::path beside = BesideFile(file);
  std::error_code error;
  const WriteOutcome written = WriteWholeFile(beside, bytes);
  if (written) error = RenameToNew(beside, file);
  if (written && !error) return std::nullopt;
  std::error_code ignored;
  fs::remove(beside, ignored);
  return error ? CannotWrite(file, ReasonOf(error)) : WhyUnwritable(file, written.reason);
}

}  // namespace

std::vector<fs::path> MailFilesOf(const fs::path& folder) {
  std::vector<fs::path> files = MailAndMboxFilesOf(folder);
  std::erase_if(files, [](const fs::path& file) { return ExtensionOf(file) != ".eml"; });
  return files;
}

std::vector<fs::path> MailAndMboxFilesOf(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string extension = ExtensionOf(entry->path());
    if (extension == ".eml" || extension == ".mbox") files.push_back(entry->path());
  }
  std::ranges::sort(files);
  return files;
}

std::optional<std::string> MoveFileTo(const fs::path& from, const fs::path& to) {
  std::error_code error = RenameToNew(from, to);
  if (!error) return std::nullopt;
  if (error == std::errc::file_exists) return CannotWrite(to, ReasonOf(error));
  // Another volume, perhaps.
  const auto bytes = ReadWholeFile(from);
  if (!bytes) return WhyUnreadable(from);
  if (auto reason = WriteNew(to, *bytes)) return reason;
  fs::remove(from, error);
  if (!error) return std::nullopt;
  std::error_code ignored;
  fs::remove(to, ignored);
  return "cannot remove " + PathToUtf8(from) + ": " + ReasonOf(error);
}

std::vector<fs::path> UnfinishedFilesOf(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string name = Lower(PathToUtf8(entry->path().filename()));
    if (name.ends_with(".eml.new") || name.ends_with(kUnfinished)) files.push_back(entry->path());
  }
  std::ranges::sort(files);
  return files;
}

void OutboxFolder::Open(fs::path outbox, fs::path sent) {
  outbox_ = std::move(outbox);
  sent_ = std::move(sent);
}

std::optional<std::string> OutboxFolder::Add(std::string_view mail, const std::string& unique,
                                             fs::path& file) const {
  file = FreeName(outbox_ / (unique + ".eml"));
  return SaveSafely(file, mail);
}

std::vector<fs::path> OutboxFolder::Waiting(std::string_view now) const {
  std::vector<fs::path> files = MailFilesOf(outbox_);
  // One that cannot be read is tried, so that its failure is told.
  std::erase_if(files, [now](const fs::path& file) {
    const auto raw = ReadWholeFile(file);
    return raw && !(IsToBeSent(*raw) && IsDue(*raw, now));
  });
  return files;
}

std::optional<std::string> OutboxFolder::Send(const fs::path& file, const MailStamp& stamp,
                                              const Hand& hand) {
  const std::string name = PathToUtf8(file.filename());
  const FileHold hold(file, kSendingWait);
  if (hold.failure()) return name + ": " + kSentByAnother;
  if (const auto sent = sent_in_run_.find(file); sent != sent_in_run_.end()) return File(file, sent->second);
  const auto raw = ReadWholeFile(file);
  if (!raw) return WhyUnreadable(file);
  if (raw->empty()) return CannotRead(file, "the file is empty");
  if (!HasRecipients(*raw)) return name + " has no recipient";
  // The Message-ID is in the file before anybody has the mail: sent twice, it is known for the same.
  const std::string mail = FinishMail(*raw, stamp);
  if (mail != *raw) {
    const WriteOutcome outcome = ReplaceFile(file, mail);
    if (!outcome) return WhyUnwritable(file, outcome.reason);
  }
  if (auto reason = MakeFolders(sent_)) return name + ": " + *reason;
  if (auto reason = hand(file, mail)) return name + ": " + *reason;
  return File(file, mail);
}

std::optional<std::string> OutboxFolder::File(const fs::path& file, std::string mail) {
  const fs::path target = FreeName(sent_ / file.filename());
  const std::string was_sent = PathToUtf8(file) + " was sent, but ";
  if (!RenameToNew(file, target)) return Forget(file);
  std::error_code error;
  // The file is gone, held by another program, or on another volume: the copy comes out of memory.
  if (const auto reason = mail.empty() ? std::nullopt : WriteNew(target, mail)) {
    const bool waits = fs::exists(file, error);
    if (waits) sent_in_run_[file] = std::move(mail);
    return was_sent + "no copy of it can be kept: " + *reason +
           (waits ? "; it lies in the outbox still, from where another run would send it again" : "");
  }
  fs::remove(file, error);
  if (!error) return Forget(file);
  sent_in_run_[file].clear();  // its copy is there
  return was_sent +
         "cannot be removed from the outbox, from where another run would send it again: " + ReasonOf(error);
}

std::optional<std::string> OutboxFolder::Forget(const fs::path& file) {
  sent_in_run_.erase(file);
  return std::nullopt;
}

}  // namespace wrenfold
