// English names of weekdays and months; an abbreviation is the first three letters.
#pragma once

#include <cstddef>
#include <string_view>

namespace wfinfo {

inline constexpr std::size_t kNameAbbreviation = 3;

inline constexpr std::string_view kWeekdayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                     "Thursday", "Friday", "Saturday"};
inline constexpr std::string_view kMonthNames[] = {"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};

}  // namespace wfinfo
