#include "host/shared/folder_lookup_win.h"

#include "host/charset/charsets.h"
#include "host/mail/missing_mail.h"
#include "host/shared/folder_paths_win.h"

namespace wrenfold {

std::string FolderPath(Request &request, std::size_t folder) {
  return HostPath(request.state.folders()[folder].path);
}

std::optional<std::size_t> FolderOf(Request &request, std::size_t slot) {
  HostState &state = request.state;
  std::optional<std::size_t> folder;
  if (state.folders().empty()) {
    request.Fail(kNoMailsOpen);
  } else if (request.Number(slot) == 0) {
    folder = state.folder();
  } else {
    const std::string wanted = SystemCharsets().HostToUtf8(request.Text(slot));
    folder = state.tree().Find(wanted, state.folder());
    if (!folder) request.Fail("no folder \"" + wanted + "\"");
  }
  if (folder) state.EnsureSearched(*folder);
  return folder;
}

std::optional<std::size_t> FolderOfPair(Request &request, std::size_t first_slot) {
  for (const std::size_t slot : {first_slot, first_slot + 1}) {
    if (!request.Text(slot).empty()) return FolderOf(request, slot);
  }
  for (const std::size_t slot : {first_slot, first_slot + 1}) {
    if (request.Number(slot) == 0 || request.HasText(slot)) continue;
    request.Fail("a folder is named by a text");
    return std::nullopt;
  }
  if (!request.state.folders().empty()) return request.state.folder();
  request.Fail(kNoMailsOpen);
  return std::nullopt;
}

std::string NameOfPair(Request &request, std::size_t first_slot) {
  const std::string_view first = request.Text(first_slot);
  return SystemCharsets().HostToUtf8(first.empty() ? request.Text(first_slot + 1) : first);
}

Answer NoFolder(Request &) { return {.explained = true}; }

}  // namespace wrenfold
