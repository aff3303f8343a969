#include "host/base/time_stamp_win.h"

#include <windows.h>

#include <bit>
#include <cstdint>
#include <cstdio>

#include "src/dates/date_format.h"

namespace wrenfold {

std::string DateHeaderNow() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  TIME_ZONE_INFORMATION zone{};
  const DWORD answer = GetTimeZoneInformation(&zone);
  const std::int64_t bias = wfinfo::MachineBias({answer, zone.Bias, zone.StandardBias, zone.DaylightBias});
  char text[wfinfo::kDefaultFormRoom];
  return {text, wfinfo::DefaultDateForm(std::bit_cast<wfinfo::CivilTime>(now), bias, text)};
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
