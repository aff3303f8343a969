// Words for kinds of templates. Letter case does not count.
#pragma once

#include "src/commands/keyword_table.h"

namespace wfinfo {

inline constexpr Keyword kTemplateKindRows[] = {{"newmail", 0}, {"reply", 1}, {"forward", 2}, {"sign", 3}};
inline constexpr KeywordTable kTemplateKinds{kTemplateKindRows};
inline constexpr unsigned kTemplateKindCount = 4;

}  // namespace wfinfo
