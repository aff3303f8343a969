// Words for moving through the mail list. Letter case does not count.
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

}  // namespace wfinfo
