#include <cstring>

#include "src/bridge/host_protocol.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/frame_menu_win.h"
#include "src/commands/keyword_parameter_win.h"
#include "src/commands/mail_words.h"
#include "src/text/host_text.h"

using namespace wfinfo;

namespace {

constexpr int kCodeChangeFlags = 97;
constexpr int kCodeCharSet = 193;

constexpr std::size_t kMessageRoom = 256;
constexpr std::size_t kShownName = 63;  // bytes of a wrong flag name that the message shows

void ReportUnknownFlag(const char* name) {
  char message[kMessageRoom];
  const char* const opening =
      Chosen({"Invalid flag parameter in GetMailFlag series function.\nflag name = ",
              "GetMailFlag等の関数で、フラグを指定する文字列が正しくありません。\nフラグ名 = "});
  const std::size_t length = std::strlen(opening);
  std::memcpy(message, opening, length);
  CopyWithinLimit(message + length, name, kShownName + 1);
  ReportError(message);
}

// The flag's bit, or 0 after a report.
std::uint32_t FlagBit(const char* name, bool for_writing) {
  if (!IsText(name)) return 0;
  const MailFlagName* const row = FindMailFlag(name);
  if (row == nullptr) {
    ReportUnknownFlag(name);
    return 0;
  }
  if (!for_writing || row->writable) return row->bit;
  ReportError({"A read only flag specified in SetMailFlag series function.",
               "SetMailFlag等で、書き換えできないフラグが指定されました。"});
  return 0;
}

// True for a number that is not 0, and for a text that does not begin with "0".
bool IsOn(long long value) {
  constexpr unsigned long long kFirstAddress = 4096;
  constexpr UINT_PTR kCheckedLength = 100;
  const auto* const text = FromSlot<const char*>(value);
  const bool is_text =
      static_cast<unsigned long long>(value) >= kFirstAddress && !IsBadStringPtrA(text, kCheckedLength);
  return is_text ? *text != '0' : value != 0;
}

}  // namespace

int GetMailFlag(const char* name) noexcept {
  const std::uint32_t bit = FlagBit(name, false);
  // The host is asked even for a name that was refused.
  const bool set = (static_cast<std::uint32_t>(SendHostRequest(kCodeMailState)) & bit) != 0;
  return (bit == kStateNoFolding ? !set : set) ? 1 : 0;
}

long long SetMailFlag(const char* name, int value) noexcept {
  const std::uint32_t bit = FlagBit(name, true);
  if (bit == 0) return 0;
  const bool set = (value != 0) != (bit == kStateNoFolding);
  Slot block[] = {ToSlot(set ? bit : 0u), ToSlot(bit == kStateSentUnknown ? bit | kSentUnknownMark : bit)};
  return SendHostRequest(kCodeChangeFlags, block);
}

int IsHighPriority() noexcept {
  const MenuItem item = FrameMenuItem(kMenuHighPriority);
  if (item.IsKnown() && !item.IsGrayed()) return item.IsChecked() ? 1 : 0;
  // Not a mail being written: the flag of the mail shown.
  return (SendHostRequest(kCodeMailState) & kStateHighPriority) != 0 ? 1 : 0;
}

int IsRequestNotification() noexcept { return FrameMenuItem(kMenuRequestNotification).IsChecked() ? 1 : 0; }

int SetHighPriority(long long value) noexcept {
  return ToggleMenuItem(FrameMenuItem(kMenuHighPriority), IsOn(value)) ? 1 : 0;
}

int SetRequestNotification(long long value) noexcept {
  return ToggleMenuItem(FrameMenuItem(kMenuRequestNotification), IsOn(value)) ? 1 : 0;
}

long long SetCharSet(const char* charset, int second) noexcept {
  const auto command = CodeOrReport(
      kCharSets, OptionalText(charset),
      {"The 1st parameter of SetCharSet is invalid.", "SetCharSetの第１パラメータが正しくありません。"});
  if (!command) return 0;
  Slot block[] = {*command, ToSlot(second)};
  return SendHostRequest(kCodeCharSet, block);
}
