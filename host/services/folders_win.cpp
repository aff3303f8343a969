// Folders: each folder with mails in it and each mbox file is one, known by its full path.
#include <filesystem>
#include <optional>

#include "host/base/ascii.h"
#include "host/charset/charsets.h"
#include "host/mail/mail_store.h"
#include "host/requests/request_server_win.h"
#include "host/services/folder_lookup_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

constexpr Slot kSelectFolder = 0;  // sub-command of code 8; 1 would select an account group

std::string PathOf(Request& request, std::size_t folder) {
  return SystemCharsets().Utf8ToHost(
      PathToUtf8(std::filesystem::absolute(request.state.folders()[folder].path)));
}

Answer Current(Request& request) { return request.AnswerText(PathOf(request, request.state.folder())); }

// Shows a folder: its first mail is opened.
Answer Select(Request& request) {
  if (request.Number(0) != kSelectFolder) return Request::NotServed();
  const auto folder = FolderOf(request, 1);
  if (!folder) return {};
  const std::vector<std::size_t> mails = request.state.MailsOf(*folder);
  return Request::AnswerNumber(!mails.empty() && request.state.Open(mails[0]) ? 1 : 0);
}

template <int kStep>
Answer Neighbour(Request& request) {
  const auto folder = FolderOf(request, 0);
  if (!folder) return {};
  // Stepping back from the first wraps to a number behind the last.
  const std::size_t neighbour = *folder + static_cast<std::size_t>(kStep);
  return request.AnswerText(neighbour < request.state.folders().size() ? PathOf(request, neighbour) : "");
}

// The menu's way to the same: opens the neighbour.
template <int kStep>
Answer Go(Request& request) {
  const std::size_t neighbour = request.state.folder() + static_cast<std::size_t>(kStep);
  const std::vector<std::size_t> mails = request.state.MailsOf(neighbour);
  return Request::AnswerNumber(!mails.empty() && request.state.Open(mails[0]) ? 1 : 0);
}

constexpr Service kServices[] = {
    {7, nullptr, WithRoot<Current>, "full path of the folder or mbox file of the open mail"},
    {8, "ITT", Select, "opens the first mail of a folder, named by its full path or name: 1"},
    {42, nullptr, WithRoot<Current>, "full path of the folder or mbox file of the root mail"},
    {137, nullptr, Neighbour<1>, "path of the folder behind, \"\" behind the last"},
    {138, nullptr, Neighbour<-1>, "path of the folder in front, \"\" before the first"},
    {174, nullptr, WithRoot<Current>, "full path of the folder or mbox file of the root mail"},
};

constexpr Command kCommands[] = {
    {40126, Go<1>, "opens the first mail of the folder behind"},
    {40127, Go<-1>, "opens the first mail of the folder in front"},
};

}  // namespace

const ServiceFamily kFoldersServices = {kServices, kCommands};

std::optional<std::size_t> FolderOf(Request& request, std::size_t slot) {
  if (!request.state.HasRoot()) return std::nullopt;
  if (request.Number(slot) == 0) return request.state.folder();
  const std::string_view wanted = request.Text(slot);
  for (std::size_t i = 0; i < request.state.folders().size(); ++i) {
    const std::string name = SystemCharsets().Utf8ToHost(request.state.folders()[i].name);
    if (EqualsIgnoringCase(PathOf(request, i), wanted) || EqualsIgnoringCase(name, wanted)) return i;
  }
  return std::nullopt;
}

std::optional<std::size_t> FolderOfPair(Request& request, std::size_t first_slot) {
  for (const std::size_t slot : {first_slot, first_slot + 1}) {
    if (!request.Text(slot).empty()) return FolderOf(request, slot);
  }
  return request.state.HasRoot() ? std::optional(request.state.folder()) : std::nullopt;
}

}  // namespace wrenfold
