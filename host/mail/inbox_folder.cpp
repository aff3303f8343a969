#include "host/mail/inbox_folder.h"

#include <algorithm>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/whole_file.h"
#include "host/mail/mail_store.h"
#include "host/mail/outbox_folder.h"
#include "host/mime/message.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDeleted = "deleted";

bool MakeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  return fs::is_directory(folder, error);
}

}  // namespace

std::optional<fs::path> AccountFolder(const fs::path& server, std::string_view account) {
  const bool is_name = !account.empty() && account.find_first_of("/\\:*?\"<>|") == account.npos &&
                       account != "." && account != ".." && !EqualsIgnoringCase(account, kDeleted) &&
                       !account.ends_with(' ') && !account.ends_with('.');  // Windows drops these
  if (!is_name) return std::nullopt;
  return server / PathFromUtf8(account);
}

std::variant<fs::path, std::string> TakeMail(const fs::path& file, const fs::path& folder) {
  const auto raw = ReadWholeFile(file);
  if (!raw) return "cannot read " + PathToUtf8(file);
  if (raw->empty()) return "cannot read " + PathToUtf8(file) + ": the file is empty";
  if (!MakeFolder(folder)) return "cannot make the folder " + PathToUtf8(folder);
  fs::path target = FreePath(folder, file.filename());
  if (auto reason = MoveFileTo(file, target)) return *std::move(reason);
  return target;
}

std::optional<std::string> CopyMail(std::string_view raw, const fs::path& folder, const fs::path& name) {
  if (!MakeFolder(folder)) return "cannot make the folder " + PathToUtf8(folder);
  if (!ReplaceFile(folder / name, raw)) return "cannot write " + PathToUtf8(folder / name);
  return std::nullopt;
}

std::size_t DeleteOnServer(const fs::path& server, const std::vector<std::string>& ids) {
  std::size_t count = 0;
  for (const fs::path& file : MailFilesOf(server)) {
    const auto raw = ReadWholeFile(file);
    const std::string id(raw ? Trim(FindHeader(SplitMessage(*raw), "Message-ID")) : "");
    if (id.empty() || std::ranges::find(ids, id) == ids.end()) continue;
    count += std::holds_alternative<fs::path>(TakeMail(file, server / kDeleted)) ? 1 : 0;
  }
  return count;
}

}  // namespace wrenfold
