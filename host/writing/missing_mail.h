// Why something that works on a mail cannot be done without one.
#pragma once

namespace wrenfold {

inline constexpr char kNoOpenMail[] = "no mail is open";
inline constexpr char kNoWrittenMail[] = "no mail is being written";
inline constexpr char kNoMailWindow[] = "no mail is being written, or open in a window of its own";
inline constexpr char kMailWindowBehind[] = "the window of the mail being written is not in front";
inline constexpr char kNeitherMail[] = "no mail is open or being written";

}  // namespace wrenfold
