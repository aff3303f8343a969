// Moving to the mail that a macro describes in words.
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/keyword_parameter_win.h"
#include "src/commands/navigation_words.h"

using namespace wfinfo;

namespace {

constexpr int kCodeNextUnread = 61;
constexpr int kCodePrevUnread = 62;
constexpr int kCodeNextPrev = 91;

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
