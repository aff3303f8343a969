#include <windows.h>

#include "src/bridge/host_protocol.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/keyword_parameter_win.h"
#include "src/commands/navigation_words.h"

using namespace wfinfo;

namespace {

constexpr int kCodeNextUnread = 61;
constexpr int kCodePrevUnread = 62;
constexpr int kCodeSelectTransmit = 71;
constexpr int kCodeNextPrev = 91;
constexpr int kCodeResentForward = 104;
constexpr int kReplyCommand = 40019;
constexpr int kTransmitCommand = 40024;

// Moving never refuses: a wrong word is reported and counts as 0.
Slot CodeOrZero(const KeywordTable& table, const char* text, const Message& unknown) {
  return CodeOrReport(table, TextOrEmpty(text), unknown).value_or(0);
}

Slot RollMode(const char* roll) {
  return CodeOrZero(
      kRollModes, roll,
      {"The 1st parameter of NextUnreadCustom/PrevUnreadCustom or the 4th parameter of NextPrevCustom "
       "is invalid.",
       "NextUnreadCustom/PrevUnreadCustomの第１パラメータまたは"
       "NextPrevCustomの第４パラメータが不正です。"});
}

long long MoveToUnread(int code, const char* roll) {
  Slot block[] = {RollMode(roll)};
  return SendHostRequest(code, block);
}

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

// Tells the frame what the next transmission concerns. Only the low 32 bits of its answer count.
bool SelectTransmit(long long value) {
  Slot block[] = {value};
  return static_cast<int>(SendFrameRequest(kCodeSelectTransmit, block)) != 0;
}

}  // namespace

long long NextPrevCustom(const char* target, const char* direction, const char* unit, const char* roll,
                         int option) noexcept {
  Slot block[] = {
      CodeOrZero(
          kNavigationTargets, target,
          {"The 1st parameter of NextPrevCustom is invalid.", "NextPrevCustomの第１パラメータが不正です。"}),
      CodeOrZero(
          kDirections, direction,
          {"The 2nd parameter of NextPrevCustom is invalid.", "NextPrevCustomの第２パラメータが不正です。"}),
      CodeOrZero(
          kNavigationUnits, unit,
          {"The 3rd parameter of NextPrevCustom is invalid.", "NextPrevCustomの第３パラメータが不正です。"}),
      RollMode(roll), ToSlot(option)};
  return SendHostRequest(kCodeNextPrev, block);
}

long long NextUnreadCustom(const char* roll) noexcept { return MoveToUnread(kCodeNextUnread, roll); }

long long PrevUnreadCustom(const char* roll) noexcept { return MoveToUnread(kCodePrevUnread, roll); }

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

long long OpenLog(const char* kind) noexcept {
  return SendHostCommand(static_cast<int>(KeywordOr(kLogKinds, OptionalText(kind), kOpenLogCommand)));
}

long long TransmitCustom(long long value) noexcept {
  if (!SelectTransmit(value)) return 0;
  Slot block[] = {kTransmitCommand};
  return SendFrameRequest(kCodeRunCommand, block);
}

long long StartTransmitCustom(long long value) noexcept {
  return SelectTransmit(value) ? StartHostCommand(kTransmitCommand) : 0;
}
