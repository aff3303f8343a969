#include "host/post/inbox_folder.h"

#include <algorithm>
#include <system_error>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/files/free_name.h"
#include "host/files/whole_file.h"
#include "host/folders/filing.h"
#include "host/mime/sections.h"
#include "host/post/outbox_folder.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDeleted = "deleted";

}  // namespace

std::optional<fs::path> AccountFolder(const fs::path& server, std::string_view account) {
  const bool is_name = !account.empty() && account.find_first_of("/\\:*?\"<>|") == account.npos &&
                       account != "." && account != ".." && !EqualsIgnoringCase(account, kDeleted) &&
                       !account.ends_with(' ') && !account.ends_with('.');  // Windows drops these
  if (!is_name) return std::nullopt;
  return server / PathFromUtf8(account);
}

std::size_t DeleteOnServer(const fs::path& server, const std::vector<std::string>& ids) {
  std::size_t count = 0;
  std::error_code error;
  for (const fs::path& file : MailFilesOf(server)) {
    const auto raw = ReadWholeFile(file);
    const std::string id(raw ? Trim(FindHeader(SplitMessage(*raw), "Message-ID")) : "");
    if (id.empty() || std::ranges::find(ids, id) == ids.end()) continue;
    fs::create_directories(server / kDeleted, error);
    count += MoveFileTo(file, FreeName(server / kDeleted / file.filename())) ? 0 : 1;
  }
  return count;
}

}  // namespace wrenfold
