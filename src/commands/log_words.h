// Words for what of a mail's log opens. Letter case does not count.
#pragma once

#include "src/commands/keyword_table.h"

namespace wfinfo {

// Menu commands; any other text opens the log folder.
inline constexpr Keyword kLogKindRows[] = {{"direct", 40308}, {"decode", 40309}};
inline constexpr KeywordTable kLogKinds{kLogKindRows};
inline constexpr long long kOpenLogCommand = 40100;

}  // namespace wfinfo
