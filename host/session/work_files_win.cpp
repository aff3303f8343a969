#include "host/session/work_files_win.h"

#include <filesystem>
#include <system_error>

#include "host/base/line_complaint.h"
#include "host/base/paths.h"
#include "host/files/file_reasons.h"
#include "host/files/left_files.h"
#include "host/files/own_folder_win.h"
#include "host/files/whole_file.h"
#include "host/mail/mail_store.h"
#include "host/mapi/server_win.h"
#include "host/post/program_line.h"
#include "host/services/desktop/application_win.h"
#include "host/session/drafts_of_run_win.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/questions_win.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> OpenMails(const Options& options, HostState& state) {
  const auto unreadable =
      options.strict_mails ? MailStore::Unreadable::kRefuse : MailStore::Unreadable::kSkip;
  for (const std::string& mail : options.mails) {
    if (auto reason = state.AddMails(PathFromUtf8(mail), unreadable)) return reason;
  }
  return std::nullopt;
}

// accounts.txt beside the first mail; without mails, beside the program.
std::filesystem::path DefaultAccounts(const Options& options) {
  constexpr char kName[] = "accounts.txt";
  std::error_code error;
  if (options.mails.empty()) return std::filesystem::path(OwnFolder()) / kName;
  const std::filesystem::path mails = PathFromUtf8(options.mails[0]);
  return (std::filesystem::is_directory(mails, error) ? mails : mails.parent_path()) / kName;
}

// A file that the user names and that is not there is mistyped more often than wanted.
void TellMissingFile(const Options& options, const fs::path& accounts) {
  std::error_code error;
  if (options.accounts.empty() || fs::exists(accounts, error)) return;
  Tell("there is no file " + PathToUtf8(accounts) + ": it will be made with the first account");
}

// What the keyword commands work with.
std::optional<std::string> OpenCommandFiles(const Options& options, CommandState& commands) {
  const auto accounts =
      options.accounts.empty() ? DefaultAccounts(options) : PathFromUtf8(options.accounts.back());
  if (auto reason = commands.accounts.Open(accounts)) return reason;
  TellMissingFile(options, accounts);
  for (const std::string& line : commands.accounts.Complaints()) Complain(line);
  for (const std::string& book : options.books) {
    if (auto reason = commands.books.Open(PathFromUtf8(book))) return reason;
    for (const LineComplaint& complaint : commands.books.selected().complaints())
      Complain(ToldLine(PathFromUtf8(book), complaint));
  }
  if (options.templates.empty()) return std::nullopt;
  const std::filesystem::path folder = PathFromUtf8(options.templates.back());
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error))
    return "cannot read the templates " + PathToUtf8(folder) + ": there is no such folder";
  commands.templates.Open(folder);
  return std::nullopt;
}

// Where inbox, outbox and settings are unless an option says so: kOwnFolder beside the first mail or folder
// of mails; without mails the home, whose outbox is that of the mails of other programs.
fs::path PostFolder(const Options& options) {
  if (options.mails.empty()) return PathFromUtf8(MapiHome(options.home));
  const fs::path mails = PathFromUtf8(options.mails[0]);
  const fs::path named = mails.has_filename() ? mails : mails.parent_path();
  return (named.filename() == "." || named.filename() == ".." ? named / ".." : named.parent_path()) /
         kOwnFolder;
}

fs::path LastOr(const std::vector<std::string>& given, const fs::path& otherwise) {
  return given.empty() ? otherwise : PathFromUtf8(given.back());
}

// Where mails wait becomes no folder of mails, beside a mail that --mail names alone.
void LeaveOutPostFolders(const Options& options, HostState& state) {
  for (const std::vector<std::string>* given : {&options.inboxes, &options.outboxes, &options.imaps}) {
    if (!given->empty()) state.LeaveOut(PathFromUtf8(given->back()));
  }
}

// Receiving empties a folder and sending takes all of its mails: no folder that is read is to be either.
std::optional<std::string> WhyMailFolder(const HostState& state, const char* name,
                                         const std::vector<std::string>& given) {
  const auto read = given.empty() ? std::nullopt : state.ReadsFrom(PathFromUtf8(given.back()));
  if (!read) return std::nullopt;
  const MailFolder& folder = state.folders()[*read];
  std::error_code error;
  const bool is_top = fs::equivalent(folder.path, PathFromUtf8(given.back()), error) && !error &&
                      fs::equivalent(folder.path, state.trees()[folder.tree].root, error) && !error;
  return std::string(name) + " " + given.back() +
         (is_top ? " is the folder of mails that --mail names: take another one"
                 : " is one of the folders of mails below " + PathToUtf8(state.trees()[folder.tree].root) +
                       ": take one outside of it");
}

std::optional<std::string> CheckPostFolders(const Options& options, const HostState& state) {
  for (const auto& [name, given] :
       {std::pair{"--inbox", &options.inboxes}, std::pair{"--outbox", &options.outboxes},
        std::pair{"--imap", &options.imaps}}) {
    if (auto reason = WhyMailFolder(state, name, *given)) return reason;
  }
  return std::nullopt;
}

std::optional<std::string> OpenPostOffice(const Options& options, HostState& state) {
  PostOffice& post = state.commands.post;
  const fs::path folder = PostFolder(options);
  const fs::path outbox = LastOr(options.outboxes, folder / "outbox");
  std::error_code error;
  if (fs::exists(outbox, error) && !fs::is_directory(outbox, error))
    return PathToUtf8(outbox) + " cannot be the outbox: it is no folder";
  post.inbox = LastOr(options.inboxes, folder / "inbox");
  post.imap = LastOr(options.imaps, "");
  const std::string left = ToldAsLeft(UnfinishedFilesOf(outbox));
  if (!left.empty()) Complain(left);
  post.mails = folder / "mails";
  post.outbox.Open(outbox, (outbox.has_filename() ? outbox : outbox.parent_path()).parent_path() / "Sent");
  for (const auto& given : {options.inboxes, options.imaps}) {
    if (!given.empty() && !fs::is_directory(PathFromUtf8(given.back()), error))
      return "there is no folder " + given.back();
  }
  if (!options.send_with.empty()) {
    post.send_with = options.send_with.back();
    if (!ParseProgramLine(post.send_with)) return "no program in --send-with '" + post.send_with + "'";
  }
  state.commands.application.config_file = folder / "config.txt";
  return ReadConfig(state);
}

std::optional<std::string> OpenAnswers(const Options& options) {
  if (options.answers.empty()) return SetAnswers(ScriptedAnswers(), options.yes), std::nullopt;
  const auto script = ReadWholeFile(PathFromUtf8(options.answers.back()));
  if (!script) {
    return "cannot read the answers " + options.answers.back() + ": " +
           ReasonUnreadable(PathFromUtf8(options.answers.back()));
  }
  SetAnswers(ScriptedAnswers(*script), options.yes);
  return std::nullopt;
}

}  // namespace

std::optional<std::string> OpenWorkFiles(const Options& options, HostState& state) {
  if (auto reason = OpenMails(options, state)) return reason;
  if (auto reason = OpenDrafts(options, state)) return reason;
  if (auto reason = CheckPostFolders(options, state)) return reason;
  LeaveOutPostFolders(options, state);
  for (const std::string& reason : state.skipped_mails())
    Complain(reason + (reason.starts_with("cannot read ") ? " (skipped)" : ""));
  if (auto reason = OpenCommandFiles(options, state.commands)) return reason;
  if (auto reason = OpenPostOffice(options, state)) return reason;
  return OpenAnswers(options);
}

}  // namespace wrenfold
