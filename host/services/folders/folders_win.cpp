// Folders: which there are, known by their full path; going to another; making and deleting them.
#include <algorithm>
#include <filesystem>
#include <optional>

#include "host/base/ascii.h"
#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/mail/mail_store.h"
#include "host/mail/missing_mail.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/folder_lookup_win.h"

namespace wrenfold {
namespace {

// Sub-commands of code 8.
constexpr Slot kSelectFolder = 0;
constexpr Slot kSelectAccountGroup = 1;

Answer Current(Request& request) {
  if (request.state.folders().empty()) return request.Fail(kNoMailsOpen);
  return request.AnswerText(FolderPath(request, request.state.folder()));
}

Answer RootsFolder(Request& request) {
  return request.AnswerText(FolderPath(request, request.state.Mail(request.state.root()).folder));
}

// Shows a folder: its first mail is opened.
Answer Show(Request& request, std::size_t folder) {
  request.state.ShowFolder(folder);
  return Request::Done(true);
}

// Each tree of folders is an account group, known by the name or the full path of its top.
Answer SelectTree(Request& request) {
  HostState& state = request.state;
  const std::string wanted = SystemCharsets().HostToUtf8(request.Text(1));
  for (std::size_t tree = 0; tree < state.trees().size(); ++tree) {
    const std::filesystem::path top = std::filesystem::absolute(state.trees()[tree].root).lexically_normal();
    if (!EqualsIgnoringCase(PathToUtf8(top), wanted) &&
        !EqualsIgnoringCase(PathToUtf8(top.filename()), wanted))
      continue;
    std::optional<std::size_t> first;
    for (std::size_t i = 0; i < state.folders().size(); ++i) {
      if (state.folders()[i].removed || state.folders()[i].tree != tree) continue;
      if (!state.MailsOf(i).empty()) return Show(request, i);
      if (!first) first = i;
    }
    if (first) return Show(request, *first);
  }
  return request.Fail("no account group \"" + wanted + "\"");
}

Answer Select(Request& request) {
  if (request.Number(0) == kSelectAccountGroup) return SelectTree(request);
  if (request.Number(0) != kSelectFolder) return request.Fail("no such form of code 8");
  return WithFolder<Show, 1>(request);
}

// True when a walk goes on from a folder once it is named by its path, as macros do it.
bool IsFoundByPath(Request& request, std::size_t folder) {
  const std::string path = SystemCharsets().HostToUtf8(FolderPath(request, folder));
  return request.state.tree().Find(path, request.state.folder()) == folder;
}

// The next folder that is there. One whose path means another would lead a walk back for ever.
std::optional<std::size_t> Neighbour(Request& request, std::size_t folder, int step) {
  const std::vector<MailFolder>& folders = request.state.folders();
  // Stepping back from the first wraps to a number behind the last.
  while ((folder += static_cast<std::size_t>(step)) < folders.size()) {
    if (!folders[folder].removed && IsFoundByPath(request, folder)) return folder;
  }
  return std::nullopt;
}

template <int kStep>
Answer NeighbourPath(Request& request, std::size_t folder) {
  const auto neighbour = Neighbour(request, folder, kStep);
  return request.AnswerText(neighbour ? FolderPath(request, *neighbour) : "");
}

// The menu's way to the same: goes to the neighbour.
template <int kStep>
Answer Go(Request& request) {
  const auto neighbour = Neighbour(request, request.state.folder(), kStep);
  return neighbour ? Show(request, *neighbour) : request.None("there is no folder that way");
}

// --- Making and deleting ---

Answer Make(Request& request) {
  const std::string name = NameOfPair(request, 0);
  if (request.state.folders().empty())
    return request.Fail(std::string(kNoMailsOpen) + ": there is no place for folders");
  const std::size_t before = request.state.folders().size();
  auto made = request.state.tree().Make(name, request.state.folder());
  if (auto* reason = std::get_if<std::string>(&made)) return request.Fail(std::move(*reason));
  if (std::get<std::size_t>(made) < before) return request.Fail("there is a folder \"" + name + "\" already");
  return Request::Done(true);
}

// A pair that names nothing means no folder here: the current one is not deleted by mistake.
std::optional<std::size_t> ToDelete(Request& request) {
  if (!NameOfPair(request, 0).empty()) return FolderOfPair(request, 0);
  request.Fail("no folder is named");
  return std::nullopt;
}

Answer MayDelete(Request& request) {
  const auto folder = ToDelete(request);
  if (!folder) return NoFolder(request);
  auto reason = request.state.tree().WhyNotDelete(*folder);
  return reason ? request.Fail(*std::move(reason)) : Request::Done(true);
}

// Mails go to the trash first; the folder goes when nothing is left in it.
Answer Delete(Request& request) {
  HostState& state = request.state;
  const auto folder = ToDelete(request);
  if (!folder) return NoFolder(request);
  if (auto reason = state.tree().WhyNotDelete(*folder)) return request.Fail(*std::move(reason));
  const std::vector<std::size_t> branch = state.tree().Branch(*folder);
  const bool current = std::find(branch.begin(), branch.end(), state.folder()) != branch.end();
  for (const std::size_t i : branch) {
    if (state.folders()[i].kind == FolderKind::kSearch) continue;
    if (std::string reason = state.DeleteMails(state.MailsOf(i)); !reason.empty())
      return request.Fail(reason);
  }
  auto reason = state.tree().Delete(*folder);
  if (reason) return request.Fail(*std::move(reason));
  if (current) {
    // The first folder of the tree is its top, which is never deleted.
    const std::size_t tree = state.folders()[*folder].tree;
    for (std::size_t i = 0; i < state.folders().size(); ++i) {
      if (state.folders()[i].removed || state.folders()[i].tree != tree) continue;
      return Show(request, i);
    }
  }
  return Request::Done(true);
}

Answer Refresh(Request& request, std::size_t folder) {
  auto reason = request.state.Refresh(folder);
  return reason ? request.Fail(*std::move(reason)) : Request::Done(true);
}

constexpr Service kServices[] = {
    {7, nullptr, Current,
     "full path of the folder that the mail list shows: a folder, an mbox file or a search folder"},
    {8, nullptr, Select,
     "goes to a folder (full path, path in its tree, or name alone) and opens its first mail; "
     "`SelectAccountGroup` goes to the first folder with mails of a tree: each `--mail` is a group, named as "
     "the folder at its top"},
    {42, nullptr, WithRoot<RootsFolder>, "full path of the folder in which the root mail lies"},
    {69, nullptr, Make,
     "makes a directory: a full path, or one in the tree of the current folder, with the folders above it; 0 "
     "when it is there already"},
    {137, nullptr, WithFolder<NeighbourPath<1>>, "path of the next folder, \"\" behind the last"},
    {138, nullptr, WithFolder<NeighbourPath<-1>>, "path of the folder before, \"\" before the first"},
    {174, nullptr, WithRoot<RootsFolder>, "as 42"},
    {188, nullptr, WithFolder<Refresh>,
     "reads the files of the folder again: new mails are added, those whose file is gone leave; a search "
     "folder searches again"},
    {246, nullptr, MayDelete,
     "1 when the folder can be deleted; not the top of a tree, the trash, or what holds other files than "
     "mails"},
    {260, nullptr, Delete,
     "moves the mails of the folder and of those below it to the trash, then removes the folders; one that "
     "is not empty then is kept"},
};

constexpr Command kCommands[] = {
    {40126, Go<1>, "goes to the next folder"},
    {40127, Go<-1>, "goes to the folder before"},
};

}  // namespace

const ServiceFamily kFoldersServices = {kServices, kCommands};

}  // namespace wrenfold
