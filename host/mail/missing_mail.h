// Why something that works on mails or folders cannot be done when there are none.
#pragma once

#include <string_view>

namespace wrenfold {

inline constexpr char kNoOpenMail[] = "no mail is open";
inline constexpr char kNoWrittenMail[] = "no mail is being written";
inline constexpr char kNoMailWindow[] = "no mail is being written, or open in a window of its own";
inline constexpr char kMailWindowBehind[] = "the window of the mail being written is not in front";
inline constexpr char kNeitherMail[] = "no mail is open or being written";
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
