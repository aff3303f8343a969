// Beginning answers and mails that hand others on; the macros of the editor, each where the editor was opened
// for it.
#include "src/bridge/host_protocol.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/keyword_parameter_win.h"
#include "src/commands/reply_words.h"

using namespace wfinfo;

namespace {

constexpr int kCodeResentForward = 104;
constexpr int kReplyCommand = 40019;

std::optional<Slot> MultiReply(const char* multi) {
  constexpr Message kUnknown = {
      "The 1st parameter of MakeReply or the 3rd parameter of MakeReplyCustom is invalid.",
      "MakeReplyの第１パラメータまたはMakeReplyCustomの第３パラメータが不正です。"};
  if (multi == nullptr) return 0;
  if (IsText(multi)) return CodeOrReport(kMultiReplies, multi, kUnknown);
  ReportError(kUnknown);
  return std::nullopt;
}

long long SendReply(Slot kind, Slot attach, Slot multi, long long option) {
  Slot block[] = {kReplyCommand, kind, attach, multi, option};
  return SendHostRequest(kCodeRunCommand, block);
}

// True for an optional text that is given and is `word`; an unreadable one is reported.
bool IsGivenWord(const char* text, const char* word) {
  return SameWord(OptionalText(text), word, LetterCase::kIgnored);
}

// What an editor was opened for: the answer to NewMailType.
enum class EditorPurpose : Slot { kNewMail = 0, kReply = 1, kForward = 2 };

const char* EditorMacroWhenOpenedFor(EditorPurpose purpose) {
  return NewMailType() == static_cast<Slot>(purpose) ? NewEditorMacro() : kNoText;
}

}  // namespace

long long MakeReply(const char* multi, long long option) noexcept {
  const auto mode = MultiReply(multi);
  return mode ? SendReply(0, 0, *mode, option) : 0;
}

long long MakeReplyCustom(const char* kind, const char* attach, const char* multi,
                          long long option) noexcept {
  const auto kind_code = CodeOrReport(
      kReplyKinds, TextOrEmpty(kind),
      {"The 1st parameter of MakeReplyCustom is invalid.", "MakeReplyCustomの第１パラメータが不正です。"});
  if (!kind_code) return 0;
  const auto attach_code = CodeOrReport(
      kReplyAttachments, TextOrEmpty(attach),
      {"The 2nd parameter of MakeReplyCustom is invalid.", "MakeReplyCustomの第２パラメータが不正です。"});
  if (!attach_code) return 0;
  const auto mode = MultiReply(multi);
  return mode ? SendReply(*kind_code, *attach_code, *mode, option) : 0;
}

long long MakeResentForward(long long mail, const char* mode, const char* log, const char* bcc) noexcept {
  // The mode gets no check of its own: an unreadable one is a wrong word like any other.
  const auto mode_code = CodeOrReport(kResendModes, IsReadableText(mode) ? mode : kNoText,
                                      {"The 2nd parameter of MakeResentForward is invalid.",
                                       "MakeResentForwardの第２パラメータが正しくありません。"});
  if (!mode_code) return 0;
  const Slot with_log = IsGivenWord(log, "log") ? 1 : 0;
  const Slot as_bcc = IsGivenWord(bcc, "bcc") ? kResendAsBcc : 0;
  Slot block[] = {mail, *mode_code + as_bcc, with_log};
  return SendHostRequest(kCodeResentForward, block);
}

const char* NewMailMacro() noexcept { return EditorMacroWhenOpenedFor(EditorPurpose::kNewMail); }
const char* ReplyMacro() noexcept { return EditorMacroWhenOpenedFor(EditorPurpose::kReply); }
const char* ForwardMacro() noexcept { return EditorMacroWhenOpenedFor(EditorPurpose::kForward); }
