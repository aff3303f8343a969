// Exports of the catalogue that need more than one request, or a step beside it.
#include "src/bridge/debug_log_win.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/host_window_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"

using namespace wfinfo;

namespace {

// Where the diagnostic lines of this file were written, as the debug log tells.
constexpr unsigned kLogSelectFolder = 1213;
constexpr unsigned kLogEnvChangedCalled = 3349;
constexpr unsigned kLogEnvChangedReturn = 3351;

constexpr int kHeaderViewCommand = 40044;  // of header view 0; the others follow
constexpr int kRestartCommand = 40443;
constexpr int kRestartCommandFlagged = 40444;
constexpr int kSelectFolderSubCommand = 0;  // code 8 also selects account groups

// What an editor was opened for: the answer to NewMailType.
enum class EditorPurpose : Slot { kNewMail = 0, kReply = 1, kForward = 2 };

const char* EditorMacroWhenOpenedFor(EditorPurpose purpose) {
  return NewMailType() == static_cast<Slot>(purpose) ? NewEditorMacro() : kNoText;
}

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

long long EnvChanged() noexcept {
  WriteDebugLog("wfinfo.dll: EnvChagned called", kLogEnvChangedCalled);  // spelled so on purpose
  const Slot answer = SendFrameRequest(70);
  WriteDebugLog("wfinfo.dll: EnvChanged return", kLogEnvChangedReturn);
  return answer;
}

long long SwitchHeaderView(int view) noexcept {
  return SendHostCommand(
      static_cast<int>(static_cast<unsigned>(kHeaderViewCommand) + static_cast<unsigned>(view)));
}

long long RestartTamarinMail(int flag) noexcept {
  return SendHostCommand(flag != 0 ? kRestartCommandFlagged : kRestartCommand);
}

const char* QuotedRootHtml() noexcept { return QuoteHtml(RootHtml()); }

const char* NewMailMacro() noexcept { return EditorMacroWhenOpenedFor(EditorPurpose::kNewMail); }
const char* ReplyMacro() noexcept { return EditorMacroWhenOpenedFor(EditorPurpose::kReply); }
const char* ForwardMacro() noexcept { return EditorMacroWhenOpenedFor(EditorPurpose::kForward); }

long long TamarinMailVersion() noexcept { return WrenfoldVersion(); }
long long WFInfoTamarinMailVersion() noexcept { return IsWrenfold() != 0 ? WrenfoldVersion() : 0; }
long long WFInfoTamarinMailVersionBeta() noexcept { return IsWrenfold() != 0 ? TamarinMailVersionBeta() : 0; }

long long IsWrenfoldMacroExecuting() noexcept { return IsTamarinMacroExecuting(); }
long long IsTamarinMailMacroExecuting() noexcept { return IsTamarinMacroExecuting(); }
