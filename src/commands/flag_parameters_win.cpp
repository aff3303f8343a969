#include "src/commands/flag_parameters_win.h"

#include <windows.h>

#include "src/base/slot.h"
#include "src/bridge/report_win.h"
#include "src/commands/mail_words.h"

namespace wfinfo {
namespace {

constexpr std::size_t kShownName = 63;  // bytes of a wrong flag name that the message shows

}  // namespace

std::uint32_t FlagBit(const char* name, bool for_writing) {
  if (!IsText(name)) return 0;
  const MailFlagName* const row = FindMailFlag(name);
  if (row == nullptr) {
    ReportErrorAbout({"Invalid flag parameter in GetMailFlag series function.\nflag name = ",
                      "GetMailFlag等の関数で、フラグを指定する文字列が正しくありません。\nフラグ名 = "},
                     name, kShownName);
    return 0;
  }
  if (!for_writing || row->writable) return row->bit;
  ReportError({"A read only flag specified in SetMailFlag series function.",
               "SetMailFlag等で、書き換えできないフラグが指定されました。"});
  return 0;
}

bool IsOn(long long value) {
  constexpr unsigned long long kFirstAddress = 4096;
  constexpr UINT_PTR kCheckedLength = 100;
  const auto* const text = FromSlot<const char*>(value);
  const bool is_text =
      static_cast<unsigned long long>(value) >= kFirstAddress && !IsBadStringPtrA(text, kCheckedLength);
  return is_text ? *text != '0' : value != 0;
}

}  // namespace wfinfo
