// Words for the flags of a mail and for character sets.
#pragma once

#include <cstdint>
#include <span>

#include "src/bridge/host_protocol.h"
#include "src/commands/keyword_table.h"

namespace wfinfo {

struct MailFlagName {
  std::string_view word;
  std::uint32_t bit;  // in the host's flag word
  bool writable;      // SetMailFlag may change it
};

// Letter case counts. Two pairs of words share a bit: the host gives it its meaning by the kind of folder.
// "orikaeshi" is set when folding is off.
inline constexpr MailFlagName kMailFlagNames[] = {
    {"attach", kStateAttachment, false},
    {"send", kStateSend, true},
    {"messageid", kStateMessageId, false},
    {"inreplyid", kStateInReplyTo, false},
    {"mark", kStateMarked, true},
    {"cc", kStateCc, false},
    {"encoded", kStateEncoded, false},
    {"priority1", kStateHighPriority, false},
    {"orikaeshi", kStateNoFolding, true},
    {"sent", kStateSent, true},
    {"html", kStateHtml, false},
    {"reply", kStateReplied, true},
    {"forward", kStateForwarded, true},
    {"unread", kStateUnread, true},
    {"altered", kStateAltered, true},
    {"hot", kStateHot, true},
    {"memo", kStateMemo, false},
    {"sentunknown", kStateSentUnknown, true},
    {"spam", kStateSpam, false},
    {"remotemail_wantdownload", kStateSend, true},
    {"remotemail_wantdelete", kStateSent, true},
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
