#include "host/mail/mail_store.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/whole_file.h"
#include "host/mime/sections.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

struct Reason {
  std::errc code;
  const char* text;
};

// The system's own texts are in the user's language or none at all under some C libraries; these are ours.
constexpr Reason kReasons[] = {
    {std::errc::no_such_file_or_directory, "no such file or folder"},
    {std::errc::not_a_directory, "no such file or folder"},
    {std::errc::permission_denied, "access denied"},
    {std::errc::operation_not_permitted, "access denied"},
    {std::errc::filename_too_long, "the name is too long"},
};

std::string CannotRead(const fs::path& path, const std::string& reason) {
  return "cannot read " + PathToUtf8(path) + ": " + reason;
}

std::string ReasonOf(const std::error_code& error) {
  for (const Reason& row : kReasons) {
    if (error == row.code) return row.text;
  }
  return error ? error.message() : "the file cannot be opened";
}

std::string ExtensionOf(const fs::path& path) { return Lower(PathToUtf8(path.extension())); }

bool IsMailFile(const fs::path& path) {
  const std::string extension = ExtensionOf(path);
  return extension == ".eml" || extension == ".mbox";
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

bool IsFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

// True for "12:34" anywhere.
bool HoldsTime(std::string_view line) {
  const auto digit = [line](std::size_t at) { return IsDigit(line[at]); };
  for (std::size_t colon = line.find(':'); colon != line.npos; colon = line.find(':', colon + 1)) {
    if (colon >= 2 && colon + 2 < line.size() && digit(colon - 2) && digit(colon - 1) && digit(colon + 1) &&
        digit(colon + 2)) {
      return true;
    }
  }
  return false;
}

bool IsFromLine(std::string_view line) { return line.starts_with("From ") && HoldsTime(line); }

// ">From " and ">>From " lose one ">".
bool IsQuotedFrom(std::string_view line) {
  const std::size_t marks = line.find_first_not_of('>');
  return marks != line.npos && marks > 0 && line.substr(marks).starts_with("From ");
}

struct FlagLetter {
  char letter;
  std::uint32_t flag;
};

// "Status: RO", "X-Status: AF" as mail programs write them into mbox files.
constexpr FlagLetter kFlagLetters[] = {
    {'R', kMailRead}, {'A', kMailReplied}, {'F', kMailMarked}, {'D', kMailDeleted}, {'O', kMailOld}};

}  // namespace

std::uint32_t FlagsOf(std::string_view raw) {
  const MessageParts parts = SplitMessage(raw);
  const std::string letters =
      std::string(FindHeader(parts, "Status")) + std::string(FindHeader(parts, "X-Status"));
  std::uint32_t flags = 0;
  for (const FlagLetter& row : kFlagLetters) {
    if (letters.find(row.letter) != letters.npos) flags |= row.flag;
  }
  return flags;
}

std::string PathToUtf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

fs::path PathFromUtf8(std::string_view utf8) { return std::u8string(utf8.begin(), utf8.end()); }

bool IsMbox(std::string_view bytes) { return IsFromLine(bytes.substr(0, FirstLine(bytes).text)); }

std::vector<StoredMail> SplitMbox(std::string_view bytes) {
  std::vector<StoredMail> mails;
  bool after_empty = true;
  for (std::size_t at = 0; at < bytes.size();) {
    const LineLength length = FirstLine(bytes.substr(at));
    const std::string_view line = bytes.substr(at, length.text);
    const std::string_view with_end = bytes.substr(at, length.with_end);
    at += length.with_end;
    if (after_empty && IsFromLine(line)) {
      mails.emplace_back().offset = at;
    } else if (!mails.empty()) {
      mails.back().raw += IsQuotedFrom(line) ? with_end.substr(1) : with_end;
    }
    after_empty = line.empty();
  }
  // The empty line before the next "From " line is the separator's.
  for (StoredMail& mail : mails) {
    for (const std::string_view end : {"\r\n", "\n"}) {
      if (!mail.raw.ends_with(std::string(end) + std::string(end))) continue;
      mail.raw.resize(mail.raw.size() - end.size());
      break;
    }
  }
  return mails;
}

// All or nothing: what a failed path has added already is taken back.
std::optional<std::string> MailStore::Add(const fs::path& path, Unreadable unreadable) {
  const std::size_t mails_before = mails_.size();
  const std::size_t folders_before = folders_.size();
  const std::size_t skipped_before = skipped_.size();
  std::optional<std::string> failure = IsFolder(path) ? AddFolder(path, unreadable) : AddFile(path);
  if (!failure && mails_.size() == mails_before) {
    failure = skipped_.size() > skipped_before ? skipped_.back()
                                               : CannotRead(path, "no .eml or .mbox file in this folder");
  }
  if (failure) {
    mails_.resize(mails_before);
    folders_.resize(folders_before);
  }
  return failure;
}

std::optional<std::string> MailStore::AddFolder(const fs::path& folder, Unreadable unreadable) {
  if (auto failure = AddFilesOf(folder, unreadable)) return failure;
  std::error_code error;
  for (const fs::path& entry : Entries(folder, error)) {
    if (!IsFolder(entry)) continue;
    auto failure = AddFilesOf(entry, unreadable);
    if (failure && unreadable == Unreadable::kRefuse) return failure;
    if (failure) skipped_.push_back(*std::move(failure));
  }
  return std::nullopt;
}

std::optional<std::string> MailStore::AddFilesOf(const fs::path& folder, Unreadable unreadable) {
  std::error_code error;
  const std::vector<fs::path> entries = Entries(folder, error);
  if (error) return CannotRead(folder, ReasonOf(error));
  for (const fs::path& entry : entries) {
    if (!IsMailFile(entry) || IsFolder(entry)) continue;
    auto failure = AddFile(entry);
    if (failure && unreadable == Unreadable::kRefuse) return failure;
    if (failure) skipped_.push_back(*std::move(failure));
  }
  return std::nullopt;
}

std::optional<std::string> MailStore::AddFile(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (status.type() == fs::file_type::not_found || error) return CannotRead(file, ReasonOf(error));
  if (status.type() != fs::file_type::regular) return CannotRead(file, "not a file");
  errno = 0;
  std::optional<std::string> read = ReadWholeFile(file);
  if (!read) return CannotRead(file, ReasonOf(std::error_code(errno, std::generic_category())));
  std::string& bytes = *read;
  if (bytes.empty()) return CannotRead(file, "the file is empty");
  std::vector<StoredMail> mails;
  if (IsMbox(bytes)) {
    mails = SplitMbox(bytes);
    // A mail that was saved with the "From " line of the mbox it lay in is still one mail of its folder.
    if (mails.size() != 1 || ExtensionOf(file) != ".eml") {
      AddMails(file, std::move(mails), FolderOf(file, PathToUtf8(file.stem())));
      return std::nullopt;
    }
  } else {
    if (ExtensionOf(file) == ".mbox") return CannotRead(file, "an mbox file begins with a \"From \" line");
    mails.emplace_back().raw = std::move(bytes);
  }
  const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
  AddMails(file, std::move(mails), FolderOf(folder, FolderName(folder)));
  return std::nullopt;
}

std::size_t MailStore::AddWritten(const fs::path& file, std::string raw) {
  StoredMail mail;
  mail.raw = std::move(raw);
  std::vector<StoredMail> mails;
  mails.push_back(std::move(mail));
  AddMails(file, std::move(mails), FolderOf(file.parent_path(), FolderName(file.parent_path())));
  mails_.back().flags |= kMailRead;
  return mails_.size() - 1;
}

void MailStore::AddMails(const fs::path& file, std::vector<StoredMail> mails, std::size_t folder) {
  for (StoredMail& mail : mails) {
    mail.source = file;
    mail.folder = folder;
    mail.flags = FlagsOf(mail.raw);
    mails_.push_back(std::move(mail));
  }
}

std::size_t MailStore::FolderOf(const fs::path& path, std::string name) {
  const fs::path normal = Normal(path);
  for (std::size_t i = 0; i < folders_.size(); ++i) {
    if (folders_[i].path == normal) return i;
  }
  folders_.push_back({std::move(name), normal});
  return folders_.size() - 1;
}

}  // namespace wrenfold
