// Why something that works on a mail cannot be done without one.
#pragma once

namespace wrenfold {

inline constexpr char kNoOpenMail[] = "no mail is open";
inline constexpr char kNoWrittenMail[] = "no mail is being written";
inline constexpr char kNeitherMail[] = "no mail is open or being written";

}  // namespace wrenfold
