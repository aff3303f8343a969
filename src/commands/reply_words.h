// Words for answering mails and handing them on. Letter case does not count.
#pragma once

#include "src/commands/keyword_table.h"

namespace wfinfo {

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

}  // namespace wfinfo
