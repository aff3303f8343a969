#include "host/session/drafts_of_run_win.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "host/base/own_folder_win.h"
#include "host/base/paths.h"
#include "host/base/safe_saving.h"
#include "host/base/time_stamp_win.h"
#include "host/charset/charsets.h"
#include "host/mail/mail_store.h"
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
std::optional<std::filesystem::path> Rescued(const HostState& state, const std::string& mail) {
  std::error_code error;
  const std::filesystem::path name = "unsent-" + UniqueNameNow() + ".eml";
  for (const auto& folder :
       {state.writing.drafts.parent_path(), std::filesystem::temp_directory_path(error)}) {
    if (!folder.empty() && !SaveSafely(folder / name, mail)) return folder / name;
  }
  return std::nullopt;
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
  if (state.writing.editing < state.mail_count() && state.Changes(state.writing.editing)) {
    TheTerminal().Error(
        "wrenfold: the changes to " +
        Quoted(SystemCharsets().HostToUtf8(state.Header(state.writing.editing, "Subject")), 60) +
        " are lost: SaveEditMail() was not called\n");
  }
  if (!KeepDraft(state)) return true;
  const std::string mail = DraftFile(*state.writing.draft, NewStamp(state));
  const auto file = Rescued(state, mail);
  TheTerminal().Error(file ? "wrenfold: it lies in " + PathToUtf8(*file) + " with all that belongs to it:\n"
                           : mail + "\n");
  if (!file) return false;
  TheTerminal().Error(Printable(SystemCharsets().HostToUtf8(state.CurrentText())) + "\n");
  return false;
}

}  // namespace wrenfold
