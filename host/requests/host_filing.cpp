// The half of HostState that knows folders: which mails each shows, and what filing changes.
#include <algorithm>
#include <utility>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/files/file_hold.h"
#include "host/files/file_reasons.h"
#include "host/files/whole_file.h"
#include "host/folders/filing.h"
#include "host/folders/mail_exchange.h"
#include "host/mail/find_pack.h"
#include "host/requests/host_state.h"
#include "host/requests/shown_list.h"

namespace wrenfold {
namespace {

constexpr auto kNoFolder = static_cast<std::size_t>(-1);

bool Holds(const std::vector<std::size_t>& list, std::size_t mail) {
  return std::find(list.begin(), list.end(), mail) != list.end();
}

}  // namespace

// --- The list ---

std::vector<std::size_t> HostState::MailsOf(std::size_t folder) const {
  std::vector<std::size_t> indices;
  const auto search = folder_state_.searches.find(folder);
  if (search != folder_state_.searches.end()) {
    for (const std::size_t i : search->second.found) {
      if (!memories_[i].removed) indices.push_back(i);
    }
    return indices;
  }
  for (std::size_t i = 0; i < mail_count(); ++i) {
    if (store_.mails()[i].folder == folder && !memories_[i].removed) indices.push_back(i);
  }
  return indices;
}

void HostState::ShowFolder(std::size_t folder) {
  EnsureSearched(folder);
  folder_ = folder;
  const std::vector<std::size_t> list = OrderedMails(*this, folder);
  root_ = list.empty() ? kNoMail : list[0];
  selection.SelectOpenMail();
}

HostState::ListPlace HostState::PlaceInList() {
  ListPlace place{OrderedMails(*this, folder_), 0, false};
  const auto at = std::find(place.list.begin(), place.list.end(), root_);
  place.root_listed = at != place.list.end();
  // A mail of no folder stands where it would, had it come in the order of reading.
  place.position = static_cast<std::size_t>(
      place.root_listed
          ? at - place.list.begin()
          : std::count_if(place.list.begin(), place.list.end(), [this](std::size_t i) { return i < root_; }));
  return place;
}

void HostState::ReturnTo(const ListPlace& place) {
  EnsureSearched(folder_);
  const std::vector<std::size_t> list = OrderedMails(*this, folder_);
  if (!place.root_listed || Holds(list, root_)) return;
  selection.SelectOpenMail();
  // The first one behind that is still listed, else the last one in front.
  for (std::size_t i = place.position; i < place.list.size(); ++i) {
    if (Holds(list, place.list[i])) return void(root_ = place.list[i]);
  }
  root_ = list.empty() ? kNoMail : list.back();
}

// --- Search folders ---

void HostState::MailsChanged() {
  for (auto& [folder, search] : folder_state_.searches) search.stale = true;
}

void HostState::EnsureSearched(std::size_t folder) {
  if (folders()[folder].kind != FolderKind::kSearch) return;
  const SearchResult& search = folder_state_.searches[folder];
  if (!search.searched || (search.stale && folder_state_.search_again)) Search(folder);
}

void HostState::Search(std::size_t folder) {
  SearchResult& search = folder_state_.searches[folder];
  search = {{}, true, false};
  const std::string pack = SystemCharsets().Utf8ToHost(tree_.Property(folder, "findpack"));
  const std::string where = tree_.Property(folder, "findfolder");
  const auto searched = tree_.Find(where, folder);
  // A folder that is gone holds nothing.
  if (!where.empty() && !searched) return;
  for (std::size_t i = 0; i < mail_count(); ++i) {
    if (memories_[i].removed || (searched && Mail(i).folder != *searched)) continue;
    if (Finds(pack, Message(i).text)) search.found.push_back(i);
  }
}

std::optional<std::string> HostState::Refresh(std::size_t folder) {
  const ListPlace place = PlaceInList();
  if (folders()[folder].kind == FolderKind::kSearch) {
    Search(folder);
    ReturnTo(place);
    return std::nullopt;
  }
  const std::size_t before = mail_count();
  const MailStore::Changes changes = store_.ReadAgain(folder);
  memories_.resize(mail_count());
  LoadMarks(before);
  for (const std::size_t i : changes.gone) memories_[i].removed = true;
  MailsChanged();
  ReturnTo(place);
  // The folder was empty before.
  if (!HasRoot() && folder == folder_) ShowFolder(folder);
  return changes.failure.empty() ? std::nullopt : std::optional(changes.failure);
}

// --- Filing ---

std::vector<std::size_t> HostState::Filable(std::span<const std::size_t> mails, std::string& failure) const {
  std::vector<std::size_t> filable;
  for (const std::size_t i : mails) {
    if (i < mail_count() && !memories_[i].removed) {
      filable.push_back(i);
    } else if (failure.empty()) {
      failure = "the mail lies in no folder";
    }
  }
  return filable;
}

std::string HostState::MoveMails(std::span<const std::size_t> mails, std::size_t target) {
  const ListPlace place = PlaceInList();
  std::string failure;
  const Filed filed = wrenfold::MoveMails(store_, Filable(mails, failure), target);
  MailsChanged();
  if (!filed.mails.empty()) selection.SelectOpenMail();
  ReturnTo(place);
  SaveMarks();
  return filed.failure.empty() ? failure : filed.failure;
}

std::string HostState::CopyMails(std::span<const std::size_t> mails, std::size_t target) {
  const Filed filed = wrenfold::CopyMails(store_, mails, target);
  memories_.resize(mail_count());
  for (std::size_t n = 0; n < filed.mails.size(); ++n) {
    Memory& copy = memories_[mail_count() - filed.mails.size() + n];
    const Memory& copied = memories_[filed.mails[n]];
    copy.changed_mask = copied.changed_mask;
    copy.changed_bits = copied.changed_bits;
    copy.colour = copied.colour;
    copy.other_marks = copied.other_marks;
  }
  MailsChanged();
  EnsureSearched(folder_);
  SaveMarks();
  return filed.failure;
}

std::string HostState::DeleteMails(std::span<const std::size_t> mails) {
  std::string failure;
  std::vector<std::size_t> erased;
  std::map<std::size_t, std::vector<std::size_t>> moved;                  // by the trash that they go to
  std::map<std::size_t, std::variant<std::size_t, std::string>> trashes;  // by tree
  for (const std::size_t i : Filable(mails, failure)) {
    const std::size_t tree = folders()[Mail(i).folder].tree;
    if (!trashes.contains(tree)) trashes[tree] = tree_.MakeWithRole(tree, "trash");
    const auto& trash = trashes[tree];
    if (const auto* reason = std::get_if<std::string>(&trash)) {
      failure = *reason;
    } else if (std::get<std::size_t>(trash) == Mail(i).folder) {
      erased.push_back(i);
    } else {
      moved[std::get<std::size_t>(trash)].push_back(i);
    }
  }
  const ListPlace place = PlaceInList();
  for (const auto& [trash, group] : moved) {
    const std::string reason = MoveMails(group, trash);
    if (failure.empty()) failure = reason;
  }
  const Filed gone = EraseMails(store_, erased);
  for (const std::size_t i : gone.mails) memories_[i].removed = true;
  if (!gone.mails.empty()) selection.SelectOpenMail();
  MailsChanged();
  ReturnTo(place);
  SaveMarks();
  return failure.empty() ? gone.failure : failure;
}

std::string HostState::TakeOutOfMbox(std::size_t draft) {
  const MailPlace place =
      std::exchange(Mail(draft).place, MailPlace::kMbox);  // one that was opened alone too
  const bool was_read_only = read_only();
  set_read_only(false);
  const Filed gone = EraseMails(store_, std::span(&draft, 1));
  set_read_only(was_read_only);
  if (!gone.failure.empty()) return Mail(draft).place = place, gone.failure;
  memories_[draft].alone = false;
  Remove(draft);
  MailsChanged();
  return "";
}

std::string HostState::AddMail(std::string raw, std::size_t folder, std::uint32_t flags) {
  std::vector<StoredMail> mails(1);
  mails[0].raw = std::move(raw);
  mails[0].flags = flags;
  mails[0].first_flags = FlagsOf(mails[0].raw);
  return Import(std::move(mails), folder);
}

std::string HostState::Import(std::vector<StoredMail> mails, std::size_t folder) {
  const std::vector<std::size_t> added = Append(std::move(mails));
  const Filed filed = wrenfold::CopyMails(store_, added, folder);
  // What was copied is no mail of its own.
  TakeOut(added);
  SaveMarks();
  return filed.failure;
}

std::string HostState::Receive(const std::filesystem::path& file, std::size_t folder, bool stays) {
  const FileHold hold(file);
  if (hold.failure()) return *hold.failure();
  const auto bytes = ReadWholeFile(file);
  if (!bytes) return WhyUnreadable(file);
  if (bytes->empty()) return CannotRead(file, "the file is empty");
  const bool named_mbox = Lower(PathToUtf8(file.extension())) == ".mbox";
  if (named_mbox && !IsMbox(*bytes)) return CannotRead(file, kNoMbox);
  auto mails = MailsOfFile(*bytes, IsMbox(*bytes) ? ImportType::kMbox : ImportType::kEml);
  if (!mails) return CannotRead(file, "no mail is in it");
  const bool is_mbox = named_mbox || mails->size() > 1;
  for (StoredMail& mail : *mails) {
    mail.source = file;
    mail.place = is_mbox ? MailPlace::kMbox : MailPlace::kFile;
    mail.flags &= ~std::uint32_t{kMailRead | kMailOld};
    mail.folder = kNoFolder;
  }
  const std::vector<std::size_t> added = Append(*std::move(mails));
  const Filed filed =
      stays ? wrenfold::CopyMails(store_, added, folder) : wrenfold::MoveMails(store_, added, folder);
  if (stays || !filed.failure.empty()) TakeOut(added);
  MailsChanged();
  memories_.resize(mail_count());
  if (!HasRoot() && folder == folder_) ShowFolder(folder);  // it was empty before
  SaveMarks();
  // An mbox is left, which holds no mail.
  std::error_code error;
  if (is_mbox && !stays && filed.failure.empty() && !read_only()) std::filesystem::remove(file, error);
  return filed.failure;
}

std::vector<std::size_t> HostState::Append(std::vector<StoredMail> mails) {
  std::vector<std::size_t> added;
  for (StoredMail& mail : mails) {
    added.push_back(store_.mails().size());
    store_.mails().push_back(std::move(mail));
  }
  return added;
}

void HostState::TakeOut(const std::vector<std::size_t>& added) {
  const auto first = store_.mails().begin() + static_cast<std::ptrdiff_t>(added.empty() ? 0 : added[0]);
  store_.mails().erase(first, first + static_cast<std::ptrdiff_t>(added.size()));
  memories_.resize(mail_count());
  MailsChanged();
}

// --- Files ---

std::size_t HostState::FolderAt(const std::filesystem::path& path) {
  const std::size_t folder = store_.FolderAt(path);
  tree_.Load();
  return folder;
}

std::optional<std::size_t> HostState::MailAt(const std::filesystem::path& file, std::uint64_t offset) const {
  std::error_code error;
  for (std::size_t i = 0; i < mail_count(); ++i) {
    const StoredMail& mail = store_.mails()[i];
    if (mail.offset == offset && !IsGone(i) && std::filesystem::equivalent(mail.source, file, error))
      return i;
  }
  return std::nullopt;
}

// The mail that was read from there, if it is. Changes that nobody saved are worth more than what
// something else wrote to its file since.
std::optional<std::size_t> HostState::KnownMail(const StoredMail& read) {
  auto known = MailAt(read.source, read.offset);
  // An mbox ends each mail with a line end.
  const auto differs = [&] { return known && Trim(Mail(*known).raw) != Trim(read.raw); };
  if (!differs() || memories_[*known].edited) return known;
  if (Mail(*known).place == MailPlace::kMbox) {
    Refresh(Mail(*known).folder);
    return MailAt(read.source, read.offset);
  }
  TakeRewritten(*known, read.raw, 0);
  MailsChanged();
  return known;
}

std::optional<std::string> HostState::OpenFile(const std::filesystem::path& file, std::uint64_t offset) {
  if (IsMarksFile(PathToUtf8(file.filename()))) return CannotRead(file, kMarksAreNoMail);
  const auto bytes = ReadWholeFile(file);
  if (!bytes) return WhyUnreadable(file);
  std::vector<StoredMail> mails = IsMbox(*bytes) ? SplitMbox(*bytes) : std::vector<StoredMail>{};
  if (mails.empty() && !bytes->empty()) mails.emplace_back().raw = *bytes;
  for (StoredMail& mail : mails) {
    if (mail.offset != offset) continue;
    mail.source = file;
    if (const auto known = KnownMail(mail)) return Open(*known), std::nullopt;
    mail.folder = folder_;
    mail.flags = mail.first_flags = FlagsOf(mail.raw);
    store_.mails().push_back(std::move(mail));
    memories_.resize(mail_count());
    memories_.back().removed = memories_.back().alone = true;
    return Open(mail_count() - 1), std::nullopt;
  }
  return PathToUtf8(file) + " holds no mail at byte " + std::to_string(offset);
}

}  // namespace wrenfold
