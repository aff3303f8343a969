// Words for the flags of a mail and for character sets.
#pragma once

#include <cstdint>
#include <span>

#include "src/commands/keyword_table.h"

namespace wfinfo {

struct MailFlagName {
  std::string_view word;
  std::uint32_t bit;  // in the host's flag word
  bool writable;      // SetMailFlag may change it
};

// Bits that are more than their table row.
inline constexpr std::uint32_t kPriorityFlag = 0x00008000;
inline constexpr std::uint32_t kFoldingOffFlag = 0x00004000;  // "orikaeshi": set when folding is off
inline constexpr std::uint32_t kSentUnknownFlag = 0x00000040;
inline constexpr std::uint32_t kSentUnknownMark = 0x80000000;  // goes into the mask with the flag above

// Letter case counts. Two pairs of words share a bit: the host gives it its meaning by the kind of folder.
inline constexpr MailFlagName kMailFlagNames[] = {
    {"attach", 0x00010000, false},
    {"send", 0x00200000, true},
    {"messageid", 0x01000000, false},
    {"inreplyid", 0x02000000, false},
    {"mark", 0x04000000, true},
    {"cc", 0x08000000, false},
    {"encoded", 0x10000000, false},
    {"priority1", kPriorityFlag, false},
    {"orikaeshi", kFoldingOffFlag, true},
    {"sent", 0x00400000, true},
    {"html", 0x00020000, false},
    {"reply", 0x00040000, true},
    {"forward", 0x00080000, true},
    {"unread", 0x00100000, true},
    {"altered", 0x00001000, true},
    {"hot", 0x40000000, true},
    {"memo", 0x00000400, false},
    {"sentunknown", kSentUnknownFlag, true},
    {"spam", 0x00000020, false},
    {"remotemail_wantdownload", 0x00200000, true},
    {"remotemail_wantdelete", 0x00400000, true},
};

inline const MailFlagName* FindMailFlag(std::string_view text) {
  return FindWord(std::span<const MailFlagName>(kMailFlagNames), text, LetterCase::kCounts);
}

// Menu commands that choose a character set. "utf-7" has no setting of its own.
inline constexpr Keyword kCharSetRows[] = {
    {"", 45101},
    {"iso-2022-jp", 45101},
    {"japan", 45101},
    {"euro", 45102},
    {"iso-8859-1", 45102},
    {"windows-1252", 45102},
    {"gb2312", 45103},
    {"big5", 45104},
    {"korea", 45105},
    {"ks_c_5601", 45105},
    {"windows-1251", 45106},
    {"russian", 45106},
    {"windows-1250", 45107},
    {"iso-8859-2", 45107},
    {"centraleuro", 45107},
    {"tis-620", 45108},
    {"windows-874", 45108},
    {"iso-8859-11", 45108},
    {"thai", 45108},
    {"utf-8", 45109},
    {"utf-7", 45109},
};
inline constexpr KeywordTable kCharSets{kCharSetRows};

}  // namespace wfinfo
