// The part of HostState that keeps marks: what mails have beside their files, read when they are added and
// written when it differs.
#include <algorithm>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/safe_saving.h"
#include "host/files/whole_file.h"
#include "host/requests/host_state.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

std::string FileName(const fs::path& path) { return PathToUtf8(path.filename()); }

// The text of a marks file: "" when there is none. Why it cannot be read.
std::optional<std::string> ReadMarksFile(const fs::path& file, std::string& text) {
  std::error_code error;
  text.clear();
  if (!fs::exists(file, error)) return std::nullopt;
  const auto size = fs::file_size(file, error);
  if (!error && size > kMostMarksBytes) return CannotRead(file, "it is too large to hold marks");
  auto bytes = ReadWholeFile(file);
  if (!bytes) return WhyUnreadable(file);
  text = *std::move(bytes);
  return std::nullopt;
}

std::string OddLines(const fs::path& file, const MarksText& text) {
  const std::size_t more = text.odd.size() - 1;
  return PathToUtf8(file) + ":" + std::to_string(text.first_odd) +
         ": this line keeps no mail's marks (skipped" +
         (more == 0 ? ")" : ", and " + std::to_string(more) + " more)");
}

// How many mails stand before each one in its mbox, from 1.
std::map<std::size_t, std::size_t> Places(const std::vector<StoredMail>& all,
                                          std::vector<std::size_t> mails) {
  std::ranges::stable_sort(mails, {}, [&](std::size_t i) { return all[i].offset; });
  std::map<std::size_t, std::size_t> places;
  std::map<std::size_t, std::size_t> counts;  // by folder, which is the mbox
  for (const std::size_t i : mails) {
    if (all[i].place == MailPlace::kMbox) places[i] = ++counts[all[i].folder];
  }
  return places;
}

}  // namespace

// --- A mail ---

// What differs from what a new start would find in the mail itself.
MailMarks HostState::MarksOf(std::size_t index) const {
  const StoredMail& mail = store_.mails()[index];
  const Memory& memory = memories_[index];
  const std::uint32_t first = StateOfFlags(mail.first_flags);
  const std::uint32_t now = (StateOfFlags(mail.flags) & ~memory.changed_mask) | memory.changed_bits;
  MailMarks marks;
  marks.mask = (first ^ now) & KeptStateBits();
  marks.bits = now & marks.mask;
  marks.colour = memory.colour;
  marks.bookmark = !folder_state_.bookmarks.empty() && folder_state_.bookmarks.contains(index);
  marks.others = memory.other_marks;
  return marks;
}

void HostState::TakeMarks(std::size_t index, const MailMarks& marks) {
  ChangeState(index, marks.bits, marks.mask);
  memories_[index].colour = marks.colour;
  memories_[index].other_marks = marks.others;
  if (marks.bookmark) folder_state_.bookmarks.insert(index);
}

// Also one that was only taken out of the list: it is there again at the next start.
bool HostState::LiesOnDisk(std::size_t index) const {
  const StoredMail& mail = store_.mails()[index];
  std::error_code error;
  return mail.place != MailPlace::kMemory && (!memories_[index].removed || fs::exists(mail.source, error));
}

std::optional<HostState::KeptMarks> HostState::MarksToKeep(std::size_t index) const {
  MailMarks marks = MarksOf(index);
  if (marks.IsEmpty() || !LiesOnDisk(index)) return std::nullopt;
  const StoredMail& mail = store_.mails()[index];
  return KeptMarks{MarksFolder(index), mail.source, mail.offset, std::move(marks)};
}

bool HostState::MarksDiffer(std::size_t index, const std::optional<KeptMarks>& now) const {
  return now != memories_[index].kept || (now && memories_[index].rewritten);
}

// --- The mails beside one file ---

fs::path HostState::MarksFolder(std::size_t index) const {
  const MailFolder& folder = folders()[store_.mails()[index].folder];
  return folder.kind == FolderKind::kMbox ? folder.path.parent_path() : folder.path;
}

std::vector<std::size_t> HostState::MailsBesideMarks(const fs::path& folder) const {
  std::vector<bool> here;
  for (const MailFolder& other : folders()) {
    const bool is_mbox = other.kind == FolderKind::kMbox;
    here.push_back(other.kind != FolderKind::kSearch &&
                   (is_mbox ? other.path.parent_path() : other.path) == folder);
  }
  std::vector<std::size_t> mails;
  for (std::size_t i = 0; i < mail_count(); ++i) {
    const StoredMail& mail = store_.mails()[i];
    if (mail.place != MailPlace::kMemory && here[mail.folder]) mails.push_back(i);
  }
  return mails;
}

std::vector<MarkableMail> HostState::Markable(const std::vector<std::size_t>& mails) const {
  const auto places = Places(store_.mails(), mails);
  std::vector<MarkableMail> markable;
  for (const std::size_t i : mails) {
    const auto place = places.find(i);
    const StoredMail& mail = store_.mails()[i];
    markable.push_back({FileName(mail.source), place == places.end() ? 0 : place->second, mail.raw});
  }
  return markable;
}

// --- Reading ---

void HostState::LoadMarks(std::size_t first) {
  std::set<fs::path> marks_folders;
  for (std::size_t i = first; i < mail_count(); ++i) {
    // Mails of one folder mostly follow each other.
    const bool follows = i > first && Mail(i).folder == Mail(i - 1).folder;
    if (!follows) marks_folders.insert(MarksFolder(i));
  }
  for (const fs::path& folder : marks_folders) {
    const fs::path file = folder / kMarksFile;
    std::string bytes;
    if (const auto reason = ReadMarksFile(file, bytes)) {
      if (complain) complain(*reason + " (marks are not kept there)");
      unsaved_told_.insert(folder);
      continue;
    }
    if (bytes.empty()) continue;
    const MarksText text = ReadMarks(bytes);
    if (!text.odd.empty() && complain) complain(OddLines(file, text));
    const std::vector<std::size_t> mails = MailsBesideMarks(folder);
    const std::vector<std::size_t> found = FindMarked(text.lines, Markable(mails));
    for (std::size_t n = 0; n < found.size(); ++n) {
      if (found[n] == kNoMarkable || mails[found[n]] < first) continue;
      const std::size_t mail = mails[found[n]];
      TakeMarks(mail, text.lines[n].marks);
      memories_[mail].kept = MarksToKeep(mail);
    }
  }
}

// --- Writing ---

// Where mails came to with marks before those that they left: a program that is ended between the two leaves
// marks twice, not none.
std::vector<fs::path> HostState::ChangedMarksFolders() const {
  std::vector<fs::path> changed;
  std::vector<fs::path> left;
  const auto add = [](std::vector<fs::path>& to, const fs::path& folder) {
    if (std::ranges::count(to, folder) == 0) to.push_back(folder);
  };
  for (std::size_t i = 0; i < memories_.size() && i < mail_count(); ++i) {
    const std::optional<KeptMarks> now = MarksToKeep(i);
    if (!MarksDiffer(i, now)) continue;
    if (now) add(changed, now->folder);
    if (memories_[i].kept) add(left, memories_[i].kept->folder);
  }
  for (const fs::path& folder : left) add(changed, folder);
  return changed;
}

// Another program may have changed the file since: of mails whose marks are as they were read, the line that
// is there stays.
std::vector<MarksLine> HostState::LinesToKeep(const MarksText& text,
                                              const std::vector<std::size_t>& mails) const {
  const std::vector<MarkableMail> markable = Markable(mails);
  std::vector<MailMarks> marks(mails.size());
  const std::vector<std::size_t> found = FindMarked(text.lines, markable);
  for (std::size_t n = 0; n < found.size(); ++n) {
    if (found[n] != kNoMarkable) marks[found[n]] = text.lines[n].marks;
  }
  std::set<std::string> mboxes;  // with marked mails
  for (std::size_t n = 0; n < mails.size(); ++n) {
    const std::optional<KeptMarks> now = MarksToKeep(mails[n]);
    if (MarksDiffer(mails[n], now)) marks[n] = now ? now->marks : MailMarks{};
    if (!marks[n].IsEmpty() && markable[n].place > 0) mboxes.insert(markable[n].file);
  }
  std::map<std::pair<std::string, std::string>, std::size_t> alike;  // mails by mbox and id
  for (const MarkableMail& mail : markable) {
    if (mboxes.contains(mail.file)) ++alike[{mail.file, MailId(mail.raw, false)}];
  }
  std::vector<MarksLine> lines;
  for (std::size_t n = 0; n < mails.size(); ++n) {
    const auto& [file, place, raw] = markable[n];
    if (marks[n].IsEmpty()) continue;
    std::string id = MailId(raw, false);
    if (place > 0 && alike[{file, id}] > 1) id = MailId(raw, true);
    lines.push_back({file, place, std::move(id), std::move(marks[n])});
  }
  return lines;
}

// Of files that are there but were not read: `--mail` may name one file of many.
std::vector<MarksLine> HostState::LinesOfOthers(const MarksText& text, const fs::path& folder,
                                                const std::vector<std::size_t>& mails) const {
  std::set<std::string> read;
  for (const std::size_t i : mails) read.insert(Lower(FileName(store_.mails()[i].source)));
  for (const MailFolder& other : folders()) {
    const bool here = other.kind == FolderKind::kMbox && other.path.parent_path() == folder;
    if (here) read.insert(Lower(FileName(other.path)));
  }
  std::vector<MarksLine> lines;
  for (const MarksLine& line : text.lines) {
    std::error_code error;
    if (!read.contains(Lower(line.file)) && fs::exists(folder / PathFromUtf8(line.file), error))
      lines.push_back(line);
  }
  return lines;
}

std::optional<std::string> HostState::SaveMarksOf(const fs::path& folder) {
  const fs::path file = folder / kMarksFile;
  const FileHold hold(file);
  if (hold.failure()) return hold.failure();
  std::string bytes;
  if (auto reason = ReadMarksFile(file, bytes)) return reason;
  MarksText text = ReadMarks(bytes);
  const std::vector<std::size_t> mails = MailsBesideMarks(folder);
  std::vector<MarksLine> lines = LinesToKeep(text, mails);
  for (MarksLine& line : LinesOfOthers(text, folder, mails)) lines.push_back(std::move(line));
  text.lines = std::move(lines);
  const std::string written = WriteMarks(text);
  std::error_code error;
  if (written.empty()) {
    fs::remove(file, error);
    if (error) return "cannot remove " + PathToUtf8(file) + ": " + ReasonOf(error);
  } else if (written != bytes) {
    if (auto reason = WriteSafely(file, written)) return reason;
  }
  NoteKept(folder, mails);
  return std::nullopt;
}

void HostState::NoteKept(const fs::path& folder, const std::vector<std::size_t>& mails) {
  for (Memory& memory : memories_) {
    if (memory.kept && memory.kept->folder == folder) memory.kept.reset();
  }
  for (const std::size_t i : mails) {
    memories_[i].kept = MarksToKeep(i);
    memories_[i].rewritten = false;
  }
}

bool HostState::SaveMarks() {
  // While a mail is being added its memory is not there yet.
  if (read_only() || memories_.size() != mail_count()) return true;
  bool saved = true;
  for (const fs::path& folder : ChangedMarksFolders()) {
    const auto reason = SaveMarksOf(folder);
    if (!reason) continue;
    saved = false;
    if (unsaved_told_.insert(folder).second && complain) complain("marks of mails are not kept: " + *reason);
  }
  return saved;
}

}  // namespace wrenfold
