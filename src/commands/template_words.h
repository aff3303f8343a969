// Words for kinds of templates and for what is counted in a folder. Letter case does not count.
#pragma once

#include "src/commands/keyword_table.h"

namespace wfinfo {

inline constexpr Keyword kTemplateKindRows[] = {{"newmail", 0}, {"reply", 1}, {"forward", 2}, {"sign", 3}};
inline constexpr KeywordTable kTemplateKinds{kTemplateKindRows};
inline constexpr unsigned kTemplateKindCount = 4;

// Any other text counts all mails.
inline constexpr Keyword kMailCountRows[] = {
    {"recent", 1}, {"unread", 2}, {"mark", 3}, {"priority1", 4}, {"hot", 5}};
inline constexpr KeywordTable kMailCounts{kMailCountRows};
inline constexpr long long kCountAllMails = 0;

}  // namespace wfinfo
