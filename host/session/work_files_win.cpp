#include "host/session/work_files_win.h"

#include <filesystem>
#include <system_error>

#include "host/base/own_folder_win.h"
#include "host/mail/mail_store.h"
#include "host/session/written_mails_win.h"
#include "host/terminal/failure_win.h"

namespace wrenfold {
namespace {

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

// What the keyword commands work with.
std::optional<std::string> OpenCommandFiles(const Options& options, CommandState& commands) {
  const auto accounts =
      options.accounts.empty() ? DefaultAccounts(options) : PathFromUtf8(options.accounts.back());
  if (auto reason = commands.accounts.Open(accounts)) return reason;
  for (const std::string& book : options.books) {
    if (auto reason = commands.books.Open(PathFromUtf8(book))) return reason;
  }
  if (options.templates.empty()) return std::nullopt;
  const std::filesystem::path folder = PathFromUtf8(options.templates.back());
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error)) return "cannot read the templates " + PathToUtf8(folder);
  commands.templates.Open(folder);
  return std::nullopt;
}

}  // namespace

std::optional<std::string> OpenWorkFiles(const Options& options, HostState& state) {
  if (auto reason = OpenMails(options, state)) return reason;
  if (auto reason = OpenDrafts(options, state)) return reason;
  for (const std::string& reason : state.skipped_mails()) Complain(reason + " (skipped)");
  return OpenCommandFiles(options, state.commands);
}

}  // namespace wrenfold
