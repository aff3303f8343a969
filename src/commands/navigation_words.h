// Words for moving through the mail list, replying, forwarding and opening the log. Letter case does
// not count.
#pragma once

#include "src/commands/keyword_table.h"

namespace wfinfo {

inline constexpr Keyword kNavigationTargetRows[] = {
    {"", 0}, {"neighbor", 0}, {"unread", 1}, {"mark", 2}, {"findflag", 3}};
inline constexpr KeywordTable kNavigationTargets{kNavigationTargetRows};

// No default: an empty direction is a mistake.
inline constexpr Keyword kDirectionRows[] = {{"down", 0}, {"up", 1}, {"next", 2}, {"prev", 3}};
inline constexpr KeywordTable kDirections{kDirectionRows};

inline constexpr Keyword kNavigationUnitRows[] = {{"", 0}, {"Mail", 0}, {"Page", 1}};
inline constexpr KeywordTable kNavigationUnits{kNavigationUnitRows};

// What happens at the end of the folder.
inline constexpr Keyword kRollModeRows[] = {{"", 0},
                                            {"Over", 1},
                                            {"Query", 2},
                                            {"Roll", 3},
                                            {"Super", 4},
                                            {"RollAccount", 5},
                                            {"RollAll", 6},
                                            {"RollFolderAccount", 7},
                                            {"RollFolderAll", 8}};
inline constexpr KeywordTable kRollModes{kRollModeRows};

inline constexpr Keyword kReplyKindRows[] = {{"", 0},           {"Query", 1},      {"All", 2},
                                             {"AllWithMe", 3},  {"Single", 4},     {"From", 5},
                                             {"QueryEvery", 6}, {"AllFrom", 7},    {"AllFromWithMe", 8},
                                             {"QueryAll", 9},   {"QueryFrom", 10}, {"QueryAllFrom", 11}};
inline constexpr KeywordTable kReplyKinds{kReplyKindRows};

inline constexpr Keyword kReplyAttachmentRows[] = {{"", 0}, {"CopyAttach", 1}};
inline constexpr KeywordTable kReplyAttachments{kReplyAttachmentRows};

inline constexpr Keyword kMultiReplyRows[] = {{"", 0}, {"QueryMultiReply", 1}, {"ForceMultiReply", 2}};
inline constexpr KeywordTable kMultiReplies{kMultiReplyRows};

inline constexpr Keyword kResendModeRows[] = {{"sendlater", 54}, {"sendnow", 53}, {"open", 101}};
inline constexpr KeywordTable kResendModes{kResendModeRows};

// Menu commands; any other text opens the log folder.
inline constexpr Keyword kLogKindRows[] = {{"direct", 40308}, {"decode", 40309}};
inline constexpr KeywordTable kLogKinds{kLogKindRows};
inline constexpr long long kOpenLogCommand = 40100;

}  // namespace wfinfo
