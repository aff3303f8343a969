#include "host/session/drafts_of_run_win.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "host/base/paths.h"
#include "host/base/time_stamp_win.h"
#include "host/charset/charsets.h"
#include "host/files/own_folder_win.h"
#include "host/files/safe_saving.h"
#include "host/mail/mail_store.h"
#include "host/shared/changed_mail_win.h"
#include "host/shared/written_mail_win.h"
#include "host/terminal/terminal_text.h"
#include "host/terminal/terminal_win.h"
#include "host/writing/draft_file.h"

namespace wrenfold {
namespace {

// Where drafts are: as told; else beside the mails, or without mails beside the accounts.
std::filesystem::path DraftsFolder(const Options& options) {
  constexpr char kName[] = "Drafts";
  if (!options.drafts.empty()) return PathFromUtf8(options.drafts.back());
  if (options.mails.empty() && !options.accounts.empty()) {
    return PathFromUtf8(options.accounts.back()).parent_path() / kName;
  }
  if (options.mails.empty()) return std::filesystem::path(OwnFolder()) / kName;
  std::error_code error;
  const std::filesystem::path mails = PathFromUtf8(options.mails[0]);
  return (std::filesystem::is_directory(mails, error) ? mails : mails.parent_path()) / kName;
}

// Another place for a mail that its folder cannot take: beside that folder, where it is a draft in the
// next run, else among the temporary files. Nothing when there is none.
std::optional<std::filesystem::path> Rescued(const HostState& state, const std::string& mail,
                                             const std::string& kind) {
  std::error_code error;
  const std::filesystem::path name = kind + "-" + UniqueNameNow() + ".eml";
  for (const auto& folder :
       {state.writing.drafts.parent_path(), std::filesystem::temp_directory_path(error)}) {
    if (!folder.empty() && !SaveSafely(folder / name, mail)) return folder / name;
  }
  return std::nullopt;
}

std::string Title(HostState& state, std::size_t mail) {
  return Quoted(SystemCharsets().HostToUtf8(state.Header(mail, "Subject")), 60);
}

// Changes to received mails that their files did not take. False when there are any.
bool KeepUnsaved(HostState& state) {
  bool all_saved = true;
  for (const auto& [mail, reason] : state.writing.unsaved) {
    if (mail >= state.mail_count() || !state.Changes(mail)) continue;
    all_saved = false;
    const std::string changed = ChangedMail(state, mail);
    const auto file = Rescued(state, changed, "unsaved");
    TheTerminal().Error(
        "wrenfold: the changes to " + Title(state, mail) + " were not saved: " + reason + "\n" +
        (file ? "wrenfold: the changed mail lies in " + PathToUtf8(*file) + "\n" : changed + "\n"));
  }
  return all_saved;
}

bool HoldsMails(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (entry->path().extension() == ".eml") return true;
  }
  return false;
}

}  // namespace

std::optional<std::string> OpenDrafts(const Options& options, HostState& state) {
  WritingState& writing = state.writing;
  writing.drafts = DraftsFolder(options);
  writing.uploads = writing.drafts.parent_path() / "OneDrive";
  if (!options.send_macros.empty()) writing.send_macro = options.send_macros.back();
  std::error_code error;
  if (!options.drafts.empty() && std::filesystem::exists(writing.drafts, error) &&
      !std::filesystem::is_directory(writing.drafts, error))
    return PathToUtf8(writing.drafts) + " cannot hold the drafts: it is no folder";
  // Without mails drafts are left alone unless they are named.
  const bool wanted = !options.mails.empty() || !options.drafts.empty();
  const auto path = writing.drafts.lexically_normal();
  const bool known = std::any_of(state.folders().begin(), state.folders().end(),
                                 [&path](const MailFolder& folder) { return folder.path == path; });
  if (!wanted || known || !HoldsMails(writing.drafts)) return std::nullopt;
  return state.AddMails(writing.drafts,
                        options.strict_mails ? MailStore::Unreadable::kRefuse : MailStore::Unreadable::kSkip);
}

bool KeepAtEnd(HostState& state) {
  const std::size_t editing = state.writing.editing;
  if (editing < state.mail_count() && state.Changes(editing) && !state.writing.unsaved.contains(editing)) {
    TheTerminal().Error("wrenfold: the changes to " + Title(state, editing) +
                        " are lost: SaveEditMail() was not called\n");
  }
  const bool all_saved = KeepUnsaved(state);
  if (!KeepDraft(state)) return all_saved;
  const std::string mail = DraftFile(*state.writing.draft, NewStamp(state));
  const auto file = Rescued(state, mail, "unsent");
  TheTerminal().Error(file ? "wrenfold: it lies in " + PathToUtf8(*file) + " with all that belongs to it:\n"
                           : mail + "\n");
  if (!file) return false;
  TheTerminal().Error(Printable(SystemCharsets().HostToUtf8(state.CurrentText())) + "\n");
  return false;
}

}  // namespace wrenfold
