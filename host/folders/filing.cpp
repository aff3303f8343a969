#include "host/folders/filing.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <system_error>
#include <utility>
#include <variant>

#include "host/base/file_reasons.h"
#include "host/base/free_name.h"
#include "host/base/paths.h"
#include "host/base/whole_file.h"
#include "host/folders/mail_exchange.h"
#include "host/mail/mbox.h"
#include "host/mime/message.h"
#include "host/mime/sections.h"
#include "src/addresses/address_entry.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

// --- Writing ---

// A mail in its new place, and what undoes it.
struct Written {
  StoredMail mail;
  std::optional<std::uintmax_t> mbox_size;  // before it was added to an mbox; else it has a file of its own
};

ExportedMail AsExported(const StoredMail& mail) {
  const MessageParts parts = SplitMessage(mail.raw);
  wfinfo::AddressReader from(FindHeader(parts, "From"));
  ExportedMail exported;
  exported.bytes = mail.raw;
  if (from.Read()) exported.from = from.entry().address;
  // A folded address would end the "From " line.
  const bool one_word =
      std::all_of(exported.from.begin(), exported.from.end(), [](char c) { return c > ' '; });
  if (!one_word) exported.from.clear();
  exported.date = FindHeader(parts, "Date");
  return exported;
}

fs::path NewFile(const StoredMail& mail, const MailFolder& target) {
  if (mail.place == MailPlace::kFile) return FreeName(target.path / mail.source.filename());
  return FreeName(target.path / PathFromUtf8(ExportName(AsExported(mail), ExportNaming::kDate, 0) + ".eml"));
}

std::optional<std::string> WriteFile(Written& written, const MailFolder& target) {
  StoredMail& mail = written.mail;
  const bool own_file = mail.place == MailPlace::kFile;
  const fs::path file = NewFile(mail, target);
  // The file itself, which may hold more than the mail: a "From " line in front of it.
  const auto bytes = own_file ? ReadWholeFile(mail.source) : std::optional(mail.raw);
  if (!bytes) return WhyUnreadable(mail.source);
  if (!ReplaceFile(file, *bytes)) return "cannot write " + PathToUtf8(file);
  mail.source = file;
  if (!own_file) mail.offset = 0;
  mail.place = MailPlace::kFile;
  return std::nullopt;
}

// The last bytes of a file.
std::string EndingOf(const fs::path& file, std::uintmax_t size) {
  constexpr std::uintmax_t kSeparator = 4;  // bytes: two line ends
  return ReadBytes(file, size - std::min(size, kSeparator), static_cast<std::size_t>(kSeparator))
      .value_or("");
}

std::optional<std::string> AppendToMbox(Written& written, const MailFolder& target) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(target.path, error);
  if (error) return CannotRead(target.path, ReasonOf(error));
  const std::string separator = MboxSeparator(EndingOf(target.path, size));
  const std::string entry = MboxEntry(AsExported(written.mail));
  if (!AppendToFile(target.path, separator + entry)) {
    fs::resize_file(target.path, size, error);
    return "cannot write " + PathToUtf8(target.path);
  }
  written.mbox_size = size;
  written.mail.source = target.path;
  written.mail.offset = size + separator.size() + entry.find('\n') + 1;
  written.mail.place = MailPlace::kMbox;
  // The entry ends its last line, and so does the mail when it is taken out again.
  written.mail.raw = MailOfSpan(entry, MboxSpans(entry)[0]);
  return std::nullopt;
}

// The mail as it is in `target`, or why it cannot be there.
std::variant<Written, std::string> Write(const StoredMail& mail, std::size_t target, const MailStore& store) {
  const MailFolder& folder = store.folders()[target];
  Written written{mail, std::nullopt};
  written.mail.folder = target;
  if (folder.kind == FolderKind::kSearch)
    return folder.name + " shows what a search finds: no mail lies in it";
  if (store.read_only()) return written;
  auto failure =
      folder.kind == FolderKind::kMbox ? AppendToMbox(written, folder) : WriteFile(written, folder);
  if (failure) return *std::move(failure);
  return written;
}

// In the reverse order of writing.
void TakeBack(std::span<const Written> written) {
  std::error_code error;
  for (std::size_t i = written.size(); i-- > 0;) {
    if (written[i].mbox_size) {
      fs::resize_file(written[i].mail.source, *written[i].mbox_size, error);
    } else {
      fs::remove(written[i].mail.source, error);
    }
  }
}

// --- Taking mails from where they lie ---

// Rewrites an mbox without these mails, and tells the others where they are in it. Why it stays as it is.
std::optional<std::string> CutFromMbox(MailStore& store, const fs::path& file,
                                       std::span<const std::size_t> mails) {
  const auto bytes = ReadWholeFile(file);
  if (!bytes) return WhyUnreadable(file);
  std::vector<MboxSpan> cut;
  for (const MboxSpan& span : MboxSpans(*bytes)) {
    const bool wanted = std::any_of(mails.begin(), mails.end(), [&](std::size_t i) {
      return store.mails()[i].offset == span.mail && store.mails()[i].raw == MailOfSpan(*bytes, span);
    });
    if (wanted) cut.push_back(span);
  }
  if (cut.size() != mails.size()) return PathToUtf8(file) + " was changed since it was read";
  if (!ReplaceFile(file, WithoutSpans(*bytes, cut))) return "cannot write " + PathToUtf8(file);
  for (StoredMail& mail : store.mails()) {
    if (mail.place != MailPlace::kMbox || mail.source != file) continue;
    std::uint64_t before = 0;
    for (const MboxSpan& span : cut) before += span.end <= mail.offset ? span.end - span.begin : 0;
    mail.offset -= before;
  }
  return std::nullopt;
}

std::optional<std::string> TakeFromDisk(MailStore& store, std::span<const std::size_t> mails) {
  const StoredMail& first = store.mails()[mails[0]];
  if (store.read_only() || first.place == MailPlace::kMemory) return std::nullopt;
  const fs::path file = first.source;
  if (first.place == MailPlace::kMbox) return CutFromMbox(store, file, mails);
  std::error_code error;
  if (!fs::remove(file, error) && error) return "cannot remove " + PathToUtf8(file) + ": " + ReasonOf(error);
  return std::nullopt;
}

// Mails by what holds them: all of an mbox together, so that it is rewritten once; the others alone.
std::vector<std::vector<std::size_t>> ByFile(const MailStore& store, std::span<const std::size_t> mails) {
  std::vector<std::vector<std::size_t>> groups;
  std::map<fs::path, std::size_t> mboxes;
  std::set<std::size_t> seen;
  for (const std::size_t i : mails) {
    if (i >= store.mails().size() || !seen.insert(i).second) continue;
    const StoredMail& mail = store.mails()[i];
    const auto known = mboxes.find(mail.source);
    if (mail.place == MailPlace::kMbox && known != mboxes.end()) {
      groups[known->second].push_back(i);
      continue;
    }
    if (mail.place == MailPlace::kMbox) mboxes[mail.source] = groups.size();
    groups.push_back({i});
  }
  return groups;
}

// --- Moving ---

// A rename, which is whole or not done at all; false where the system cannot do that.
bool Rename(StoredMail& mail, const MailFolder& target) {
  const fs::path file = NewFile(mail, target);
  std::error_code error;
  fs::rename(mail.source, file, error);
  if (!error) mail.source = file;
  return !error;
}

std::optional<std::string> MoveGroup(MailStore& store, std::span<const std::size_t> group,
                                     std::size_t target) {
  const MailFolder& folder = store.folders()[target];
  StoredMail& first = store.mails()[group[0]];
  const bool renames = first.place == MailPlace::kFile && folder.kind == FolderKind::kFolder;
  if (renames && !store.read_only() && Rename(first, folder)) return first.folder = target, std::nullopt;
  std::vector<Written> written;
  std::optional<std::string> failure;
  for (const std::size_t i : group) {
    auto result = Write(store.mails()[i], target, store);
    if (auto* reason = std::get_if<std::string>(&result)) {
      failure = std::move(*reason);
      break;
    }
    written.push_back(std::get<Written>(std::move(result)));
  }
  if (!failure) failure = TakeFromDisk(store, group);
  if (failure) {
    if (!store.read_only()) TakeBack(written);
    return failure;
  }
  for (std::size_t i = 0; i < group.size(); ++i) store.mails()[group[i]] = std::move(written[i].mail);
  return std::nullopt;
}

void Note(Filed& filed, std::span<const std::size_t> group, std::optional<std::string> failure) {
  if (!failure) filed.mails.insert(filed.mails.end(), group.begin(), group.end());
  if (failure && filed.failure.empty()) filed.failure = *std::move(failure);
}

}  // namespace

Filed MoveMails(MailStore& store, std::span<const std::size_t> mails, std::size_t target) {
  Filed filed;
  std::vector<std::size_t> elsewhere;
  for (const std::size_t i : mails) {
    const bool there = i < store.mails().size() && store.mails()[i].folder == target;
    (there ? filed.mails : elsewhere).push_back(i);
  }
  for (const std::vector<std::size_t>& group : ByFile(store, elsewhere)) {
    Note(filed, group, MoveGroup(store, group, target));
  }
  return filed;
}

Filed CopyMails(MailStore& store, std::span<const std::size_t> mails, std::size_t target) {
  Filed filed;
  for (const std::size_t i : mails) {
    if (i >= store.mails().size()) continue;
    auto result = Write(store.mails()[i], target, store);
    if (auto* reason = std::get_if<std::string>(&result)) {
      Note(filed, {}, std::move(*reason));
      continue;
    }
    store.mails().push_back(std::get<Written>(std::move(result)).mail);
    filed.mails.push_back(i);
  }
  return filed;
}

Filed EraseMails(MailStore& store, std::span<const std::size_t> mails) {
  Filed filed;
  for (const std::vector<std::size_t>& group : ByFile(store, mails)) {
    auto failure = TakeFromDisk(store, group);
    if (!failure && !store.read_only()) {
      for (const std::size_t i : group) store.mails()[i].place = MailPlace::kMemory;
    }
    Note(filed, group, std::move(failure));
  }
  return filed;
}

}  // namespace wrenfold
