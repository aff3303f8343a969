// Why something that works on mails or folders cannot be done when there are none.
#pragma once

#include <string_view>

#include "host/writing/missing_mail.h"

namespace wrenfold {

inline constexpr char kNoMailsOpen[] = "no mails are open";  // and so there are no folders
inline constexpr char kNoMailSelected[] = "no mail is selected";
inline constexpr char kNotInList[] = "the list has no mail ";  // the place follows

// True for a reason that is no surprise where no mails were given at all. More may stand behind it.
constexpr bool IsForLackOfMails(std::string_view reason) {
  for (const std::string_view lack : {kNoOpenMail, kNeitherMail, kNoMailsOpen, kNoMailSelected, kNotInList}) {
    if (reason.starts_with(lack)) return true;
  }
  return false;
}

}  // namespace wrenfold
