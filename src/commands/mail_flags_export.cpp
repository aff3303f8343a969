// The flags of a mail, among them those that are items of its menu, and the character set.
#include "src/bridge/host_protocol.h"
#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/flag_parameters_win.h"
#include "src/commands/frame_menu_win.h"
#include "src/commands/keyword_parameter_win.h"
#include "src/commands/mail_words.h"

using namespace wfinfo;

namespace {

constexpr int kCodeChangeFlags = 97;
constexpr int kCodeCharSet = 193;

bool CurrentMailIs(MailState bit) { return (SendHostRequest(kCodeMailState) & bit) != 0; }

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

long long IsUnread() noexcept { return CurrentMailIs(kStateUnread) ? 1 : 0; }

long long IsMarked() noexcept { return CurrentMailIs(kStateMarked) ? 1 : 0; }

int IsHighPriority() noexcept {
  const MenuItem item = FrameMenuItem(kMenuHighPriority);
  if (item.IsKnown() && !item.IsGrayed()) return item.IsChecked() ? 1 : 0;
  // Not a mail being written: the flag of the mail shown.
  return CurrentMailIs(kStateHighPriority) ? 1 : 0;
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
