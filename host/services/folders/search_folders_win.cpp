// Folders that show what a search finds, and the search settings of a macro.
#include "host/charset/charsets.h"
#include "host/mail/find_pack.h"
#include "host/mail/missing_mail.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/folder_lookup_win.h"

namespace wrenfold {
namespace {

bool IsSearch(Request& request, std::size_t folder) {
  return request.state.folders()[folder].kind == FolderKind::kSearch;
}

Answer NoSearch(Request& request, std::size_t folder) {
  return request.Fail(request.state.folders()[folder].name + " is no grep folder");
}

// folder pair, find pack. The first text is the new folder's path; the second the folder that it searches.
Answer Make(Request& request) {
  HostState& state = request.state;
  if (state.folders().empty()) return request.Fail(kNoMailsOpen);
  const std::string path = SystemCharsets().HostToUtf8(request.Text(0));
  const std::string pack = SystemCharsets().HostToUtf8(request.Text(2));
  if (path.empty()) return request.Fail("no folder is named");
  if (pack.empty()) return request.Fail("a grep folder needs a find pack");
  const std::string_view no_place = NoPlaceOf(request.Text(2));
  if (!no_place.empty()) return request.Fail(WhyNoPlace(no_place));
  if (state.tree().Find(path, state.folder()))
    return request.Fail("there is a folder \"" + path + "\" already");
  std::optional<std::size_t> searched;
  if (request.Number(1) != 0 && !request.Text(1).empty()) {
    searched = FolderOf(request, 1);
    if (!searched) return NoFolder(request);
  }
  auto made = state.tree().MakeSearch(path, state.folder(), pack, searched);
  if (auto* reason = std::get_if<std::string>(&made)) return request.Fail(std::move(*reason));
  return Request::Done(true);
}

Answer FindPack(Request& request, std::size_t folder) {
  if (!IsSearch(request, folder)) return NoSearch(request, folder);
  return request.AnswerText(SystemCharsets().Utf8ToHost(request.state.tree().Property(folder, "findpack")));
}

Answer FindFolder(Request& request, std::size_t folder) {
  if (!IsSearch(request, folder)) return NoSearch(request, folder);
  const std::string where = request.state.tree().Property(folder, "findfolder");
  if (where.empty()) return request.AnswerText("");
  const auto searched = request.state.tree().Find(where, folder);
  return searched ? request.AnswerText(FolderPath(request, *searched))
                  : request.Fail("no folder \"" + where + "\"");
}

Answer SetSearchAgain(Request& request) {
  request.state.folder_state().search_again = request.Number(0) != 0;
  return Request::Done(true);
}

enum SearchState : Slot { kNeverSearched = 1, kUpToDate = 2, kMailsChanged = 3 };

// Asking does not make it search.
Answer State(Request& request) {
  HostState& state = request.state;
  const std::string name = NameOfPair(request, 0);
  const auto folder = state.folders().empty() ? std::nullopt
                      : name.empty()          ? std::optional(state.folder())
                                              : state.tree().Find(name, state.folder());
  if (!folder) return request.Fail("no folder \"" + name + "\"");
  if (!IsSearch(request, *folder)) return NoSearch(request, *folder);
  const SearchResult& search = state.folder_state().searches[*folder];
  return Request::AnswerNumber(!search.searched ? kNeverSearched : search.stale ? kMailsChanged : kUpToDate);
}

// --- The find pack of a macro ---

Answer RestoreFindPackAtEnd(Request& request) {
  auto& kept = request.state.folder_state().find_pack_to_restore;
  if (!kept) kept = request.state.commands.find_pack;
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {249, nullptr, Make,
     "makes a [grep folder](#grep-folders) of that path (first text) that searches the second folder, or "
     "everywhere; its settings stay in folders.txt"},
    {251, nullptr, WithFolder<FindPack>, "the find pack of a grep folder"},
    {252, nullptr, WithFolder<FindFolder>,
     "full path of the folder that a grep folder searches, \"\" for everywhere"},
    {253, nullptr, SetSearchAgain,
     "whether grep folders search again by themselves once mails came, went or moved; they do at first"},
    {255, nullptr, State,
     "of a grep folder: 1 not searched yet, 2 what it shows is right, 3 mails changed since; else 0"},
    {305, nullptr, RestoreFindPackAtEnd, "when the macro ends, the find pack becomes what it is now"},
};

}  // namespace

const ServiceFamily kSearchFoldersServices = {kServices, {}};

}  // namespace wrenfold
