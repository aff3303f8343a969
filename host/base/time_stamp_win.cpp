#include "host/base/time_stamp_win.h"

#include <windows.h>

#include <cstdio>

namespace wrenfold {

std::string DateHeaderNow() {
  static constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  SYSTEMTIME now;
  GetLocalTime(&now);
  TIME_ZONE_INFORMATION zone{};
  const DWORD season = GetTimeZoneInformation(&zone);
  const LONG west = zone.Bias + (season == TIME_ZONE_ID_DAYLIGHT ? zone.DaylightBias : 0);
  const LONG minutes = west < 0 ? -west : west;
  char text[64];
  std::snprintf(text, sizeof text, "%s, %02u %s %04u %02u:%02u:%02u %c%02ld%02ld", kDays[now.wDayOfWeek],
                now.wDay, kMonths[now.wMonth - 1], now.wYear, now.wHour, now.wMinute, now.wSecond,
                west > 0 ? '-' : '+', minutes / 60, minutes % 60);
  return text;
}

std::string UniqueNameNow() {
  static unsigned counter = 0;
  SYSTEMTIME now;
  GetLocalTime(&now);
  char text[96];
  std::snprintf(text, sizeof text, "%04u%02u%02u-%02u%02u%02u.%03u-%lu-%u", now.wYear, now.wMonth, now.wDay,
                now.wHour, now.wMinute, now.wSecond, now.wMilliseconds, GetCurrentProcessId(), ++counter);
  return text;
}

}  // namespace wrenfold
