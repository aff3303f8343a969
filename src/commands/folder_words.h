// Words for what is counted in a folder. Letter case does not count.
#pragma once

#include "src/commands/keyword_table.h"

namespace wfinfo {

// Any other text counts all mails.
inline constexpr Keyword kMailCountRows[] = {
    {"recent", 1}, {"unread", 2}, {"mark", 3}, {"priority1", 4}, {"hot", 5}};
inline constexpr KeywordTable kMailCounts{kMailCountRows};
inline constexpr long long kCountAllMails = 0;

}  // namespace wfinfo
