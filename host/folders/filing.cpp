#include "host/folders/filing.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <system_error>
#include <utility>
#include <variant>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/free_name.h"
#include "host/files/renaming.h"
#include "host/files/whole_file.h"
#include "host/folders/mail_exchange.h"
#include "host/mail/mbox.h"
#include "host/mail/mbox_adding.h"
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

// As which a folder takes a mail for its own; a file that was named on the command line may have any name.
fs::path MailFileName(const StoredMail& mail) {
  if (mail.place != MailPlace::kFile)
    return PathFromUtf8(ExportName(AsExported(mail), ExportNaming::kDate, 0) + ".eml");
  fs::path name = mail.source.filename();
  if (Lower(PathToUtf8(name.extension())) != ".eml") name += ".eml";
  return name;
}

using UsedNumbers = std::map<fs::path, std::size_t>;  // by name, of those that were given

// A name that no file has, and none that is being written.
fs::path NewFile(const StoredMail& mail, const MailFolder& target, UsedNumbers& used) {
  const fs::path name = MailFileName(mail);
  const auto taken = [](const fs::path& file) {
    std::error_code error;
    return fs::exists(file, error) || fs::exists(BesideFile(file), error);
  };
  return FreeName(target.path / name, taken, used[name]);
}

std::string WasChanged(const fs::path& file) { return PathToUtf8(file) + " was changed since it was read"; }

// Whether the bytes of its file have the mail where it was read.
bool StillHold(std::string_view bytes, const StoredMail& mail) {
  if (!IsMbox(bytes)) return mail.offset == 0 && bytes == mail.raw;
  const std::vector<MboxSpan> spans = MboxSpans(bytes);
  return std::any_of(spans.begin(), spans.end(), [&](const MboxSpan& span) {
    return span.mail == mail.offset && MailOfSpan(bytes, span) == mail.raw;
  });
}

// Why a mail with a file of its own is not to be taken from there.
std::optional<std::string> WhyNotTake(const StoredMail& mail) {
  const auto bytes = ReadWholeFile(mail.source);
  if (!bytes) return WhyUnreadable(mail.source);
  return StillHold(*bytes, mail) ? std::nullopt : std::optional(WasChanged(mail.source));
}

// Beside the name that it is to have.
std::optional<std::string> WriteFile(Written& written, const MailFolder& target, UsedNumbers& used) {
  StoredMail& mail = written.mail;
  const bool own_file = mail.place == MailPlace::kFile;
  const fs::path file = NewFile(mail, target, used);
  // The file itself, which may hold more than the mail: a "From " line in front of it.
  const auto bytes = own_file ? ReadWholeFile(mail.source) : std::optional(mail.raw);
  if (!bytes) return WhyUnreadable(mail.source);
  if (own_file && !StillHold(*bytes, mail)) return WasChanged(mail.source);
  const WriteOutcome outcome = WriteWholeFile(BesideFile(file), *bytes);
  if (!outcome) {
    std::error_code error;
    fs::remove(BesideFile(file), error);
    return WhyUnwritable(file, outcome.reason);
  }
  mail.source = file;
  if (!own_file) mail.offset = 0;
  mail.place = MailPlace::kFile;
  return std::nullopt;
}

// Gives a file that was written beside its name.
std::optional<std::string> Name(const Written& written) {
  const fs::path& file = written.mail.source;
  const std::error_code error = RenameToNew(BesideFile(file), file);
  return error ? std::optional(CannotWrite(file, ReasonOf(error))) : std::nullopt;
}

// The last bytes of a file.
std::string EndingOf(const fs::path& file, std::uintmax_t size) {
  constexpr std::uintmax_t kSeparator = 4;  // bytes: two line ends
  return ReadBytes(file, size - std::min(size, kSeparator), static_cast<std::size_t>(kSeparator))
      .value_or("");
}

// All of them in one go.
std::optional<std::string> AppendToMbox(std::span<Written> mails, const MailFolder& target) {
  TakeBackAdding(target.path);
  std::error_code error;
  const std::uintmax_t size = fs::file_size(target.path, error);
  if (error) return CannotRead(target.path, ReasonOf(error));
  std::string text;
  std::string ending = EndingOf(target.path, size);
  for (Written& written : mails) {
    text += MboxSeparator(ending);
    const std::string entry = MboxEntry(AsExported(written.mail));
    ending = entry;
    written.mbox_size = size;
    written.mail.source = target.path;
    written.mail.offset = size + text.size() + entry.find('\n') + 1;
    written.mail.place = MailPlace::kMbox;
    // The entry ends its last line, and so does the mail when it is taken out again.
    written.mail.raw = MailOfSpan(entry, MboxSpans(entry)[0]);
    text += entry;
  }
  return AddToMbox(target.path, text);
}

// In the reverse order of writing.
void TakeBack(std::span<const Written> written) {
  std::error_code error;
  for (std::size_t i = written.size(); i-- > 0;) {
    if (written[i].mbox_size) {
      fs::resize_file(written[i].mail.source, *written[i].mbox_size, error);
    } else if (!fs::remove(BesideFile(written[i].mail.source), error)) {
      fs::remove(written[i].mail.source, error);
    }
  }
}

// The files beside their names, then all get them: little time passes between the first and the last.
std::optional<std::string> WriteFiles(std::vector<Written>& mails, const MailFolder& target) {
  std::optional<std::string> failure;
  UsedNumbers used;
  std::size_t count = 0;  // of those that were written
  while (count < mails.size() && !(failure = WriteFile(mails[count], target, used))) ++count;
  for (std::size_t i = 0; i < mails.size() && !failure; ++i) failure = Name(mails[i]);
  if (failure) TakeBack(std::span(mails).first(count));
  return failure;
}

// The mails as they are in `target`, or why they cannot all be there; then none is.
std::variant<std::vector<Written>, std::string> Write(std::span<const std::size_t> mails, std::size_t target,
                                                      const MailStore& store) {
  const MailFolder& folder = store.folders()[target];
  std::vector<Written> written;
  for (const std::size_t i : mails) {
    written.push_back({store.mails()[i], std::nullopt});
    written.back().mail.folder = target;
  }
  if (folder.kind == FolderKind::kSearch)
    return folder.name + " shows what a search finds: no mail lies in it";
  if (store.read_only()) return written;
  auto failure =
      folder.kind == FolderKind::kMbox ? AppendToMbox(written, folder) : WriteFiles(written, folder);
  if (failure) return *std::move(failure);
  return written;
}

// --- Taking mails from where they lie ---

// An mbox without some of its mails, which lies beside it until it takes its place.
struct MboxCut {
  fs::path file;
  std::vector<MboxSpan> spans;
};

// Writes it, or tells why that is not possible.
std::variant<MboxCut, std::string> PrepareCut(const MailStore& store, const fs::path& file,
                                              std::span<const std::size_t> mails) {
  TakeBackAdding(file);
  const auto bytes = ReadWholeFile(file);
  if (!bytes) return WhyUnreadable(file);
  std::map<std::uint64_t, std::size_t> by_offset;
  for (const std::size_t i : mails) by_offset[store.mails()[i].offset] = i;
  MboxCut cut{file, {}};
  for (const MboxSpan& span : MboxSpans(*bytes)) {
    const auto mail = by_offset.find(span.mail);
    if (mail != by_offset.end() && store.mails()[mail->second].raw == MailOfSpan(*bytes, span))
      cut.spans.push_back(span);
  }
  if (cut.spans.size() != mails.size()) return WasChanged(file);
  const WriteOutcome outcome = WriteWholeFile(BesideFile(file), WithoutSpans(*bytes, cut.spans));
  if (outcome) return cut;
  std::error_code error;
  fs::remove(BesideFile(file), error);
  return WhyUnwritable(file, outcome.reason);
}

// Puts it in its place, and tells the mails left where they are in it. Why the mbox stays as it is.
std::optional<std::string> CommitCut(MailStore& store, const MboxCut& cut) {
  if (const std::error_code failure = RenameOver(BesideFile(cut.file), cut.file)) {
    std::error_code error;
    fs::remove(BesideFile(cut.file), error);
    return CannotWrite(cut.file, ReasonOf(failure));
  }
  std::vector<std::uint64_t> cut_before{0};  // of the first spans, how many bytes
  for (const MboxSpan& span : cut.spans) cut_before.push_back(cut_before.back() + span.end - span.begin);
  for (StoredMail& mail : store.mails()) {
    if (mail.place != MailPlace::kMbox || mail.source != cut.file) continue;
    const auto behind =
        std::upper_bound(cut.spans.begin(), cut.spans.end(), mail.offset,
                         [](std::uint64_t at, const MboxSpan& span) { return at < span.end; });
    mail.offset -= cut_before[static_cast<std::size_t>(behind - cut.spans.begin())];
  }
  return std::nullopt;
}

std::optional<std::string> TakeFromDisk(MailStore& store, std::span<const std::size_t> mails) {
  const StoredMail& first = store.mails()[mails[0]];
  if (store.read_only() || first.place == MailPlace::kMemory) return std::nullopt;
  const fs::path file = first.source;
  if (first.place == MailPlace::kMbox) {
    const auto cut = PrepareCut(store, file, mails);
    if (const auto* reason = std::get_if<std::string>(&cut)) return *reason;
    return CommitCut(store, std::get<MboxCut>(cut));
  }
  std::error_code error;
  if (fs::exists(file, error)) {
    if (auto reason = WhyNotTake(first)) return reason;
  }
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

// What other hosts leave alone while a mail is filed: the file that holds it, and where it goes to.
std::vector<fs::path> HeldFor(const MailStore& store, const StoredMail& mail, const MailFolder* target) {
  std::vector<fs::path> files;
  if (store.read_only()) return files;
  if (mail.place != MailPlace::kMemory) files.push_back(mail.source);
  if (target != nullptr && target->kind != FolderKind::kSearch) files.push_back(target->path);
  return files;
}

// --- Moving ---

// A rename, which is whole or not done at all; false where the system cannot do that: to another volume.
bool Rename(StoredMail& mail, const MailFolder& target) {
  UsedNumbers used;
  const fs::path file = NewFile(mail, target, used);
  if (RenameToNew(mail.source, file)) return false;
  mail.source = file;
  return true;
}

// Out of an mbox: its new file is ready before anything shows in `target`, so that an interrupted move leaves
// mails twice only between the two renames, or while files get their names.
std::variant<std::vector<Written>, std::string> WriteAndTake(MailStore& store,
                                                             std::span<const std::size_t> group,
                                                             std::size_t target) {
  const StoredMail& first = store.mails()[group[0]];
  const bool cuts = first.place == MailPlace::kMbox && !store.read_only();
  std::optional<MboxCut> cut;
  if (cuts) {
    auto prepared = PrepareCut(store, fs::path(first.source), group);
    if (auto* reason = std::get_if<std::string>(&prepared)) return std::move(*reason);
    cut = std::get<MboxCut>(std::move(prepared));
  }
  auto written = Write(group, target, store);
  if (std::holds_alternative<std::string>(written)) {
    std::error_code error;
    if (cut) fs::remove(BesideFile(cut->file), error);
    return written;
  }
  auto failure = cut ? CommitCut(store, *cut) : TakeFromDisk(store, group);
  if (!failure) return written;
  if (!store.read_only()) TakeBack(std::get<std::vector<Written>>(written));
  return *std::move(failure);
}

std::optional<std::string> MoveGroup(MailStore& store, std::span<const std::size_t> group,
                                     std::size_t target) {
  const MailFolder& folder = store.folders()[target];
  StoredMail& first = store.mails()[group[0]];
  const FileHold hold(HeldFor(store, first, &folder));
  if (hold.failure()) return hold.failure();
  const bool renames = first.place == MailPlace::kFile && folder.kind == FolderKind::kFolder;
  if (first.place == MailPlace::kFile && !store.read_only()) {
    if (auto reason = WhyNotTake(first)) return reason;
  }
  if (renames && !store.read_only() && Rename(first, folder)) return first.folder = target, std::nullopt;
  auto result = WriteAndTake(store, group, target);
  if (auto* reason = std::get_if<std::string>(&result)) return std::move(*reason);
  auto& written = std::get<std::vector<Written>>(result);
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
    const FileHold hold(HeldFor(store, store.mails()[i], &store.folders()[target]));
    if (hold.failure()) {
      Note(filed, {}, hold.failure());
      continue;
    }
    auto result = Write(std::span(&i, 1), target, store);
    if (auto* reason = std::get_if<std::string>(&result)) {
      Note(filed, {}, std::move(*reason));
      continue;
    }
    store.mails().push_back(std::move(std::get<std::vector<Written>>(result)[0].mail));
    filed.mails.push_back(i);
  }
  return filed;
}

Filed EraseMails(MailStore& store, std::span<const std::size_t> mails) {
  Filed filed;
  for (const std::vector<std::size_t>& group : ByFile(store, mails)) {
    const FileHold hold(HeldFor(store, store.mails()[group[0]], nullptr));
    auto failure = hold.failure() ? hold.failure() : TakeFromDisk(store, group);
    if (!failure && !store.read_only()) {
      for (const std::size_t i : group) store.mails()[i].place = MailPlace::kMemory;
    }
    Note(filed, group, std::move(failure));
  }
  return filed;
}

}  // namespace wrenfold
