// Choosing and deleting folders, and counting their mails.
#include "src/bridge/debug_log_win.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/folder_pair_win.h"
#include "src/commands/folder_words.h"

using namespace wfinfo;

namespace {

// Where the diagnostic lines of this file were written, as the debug log tells.
constexpr unsigned kLogSelectFolder = 1213;

constexpr int kCodeFolderMailCount = 139;

constexpr int kSelectFolderSubCommand = 0;  // code 8 also selects account groups

}  // namespace

long long SelectFolder(const char* folder1, const char* folder2) noexcept {
  if (!IsTextOrNull(folder1) || !IsTextOrNull(folder2)) {
    WriteDebugLog("wfinfo.dll: SelectFolder parameter is invalid", kLogSelectFolder);
    return 0;
  }
  Slot block[] = {kSelectFolderSubCommand, ToSlot(folder1), ToSlot(folder2)};
  return SendFrameRequest(8, block);
}

long long DeleteFolder(const char* folder1, const char* folder2) noexcept {
  if (!IsTextOrNull(folder1) || !IsTextOrNull(folder2)) return 0;
  Slot block[] = {ToSlot(folder1), ToSlot(folder2)};
  if (SendHostRequest(246, block) == 0) return 0;
  Slot confirmed[] = {ToSlot(folder1), ToSlot(folder2)};
  return SendHostRequest(260, confirmed);
}

long long GetFolderMailCount(const char* folder1, const char* folder2, const char* kind) noexcept {
  if (!IsFolderPair(folder1, folder2) || !IsTextOrNull(kind)) return 0;
  const Slot counted = kind == nullptr ? kCountAllMails : KeywordOr(kMailCounts, kind, kCountAllMails);
  Slot block[] = {ToSlot(folder1), ToSlot(folder2), counted};
  return SendFrameRequest(kCodeFolderMailCount, block);
}
