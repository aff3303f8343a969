#include "src/dates/machine_clock_win.h"

#include <windows.h>

#include <cstddef>
#include <cstring>

#include "src/dates/date_format.h"

namespace wfinfo {
namespace {

static_assert(sizeof(SYSTEMTIME) == sizeof(CivilTime) &&
              offsetof(SYSTEMTIME, wDayOfWeek) == offsetof(CivilTime, weekday) &&
              offsetof(SYSTEMTIME, wMilliseconds) == offsetof(CivilTime, milliseconds));

}  // namespace

std::int64_t CurrentBias() {
  TIME_ZONE_INFORMATION zone = {};
  const DWORD answer = GetTimeZoneInformation(&zone);
  return MachineBias({static_cast<std::uint32_t>(answer), static_cast<std::int32_t>(zone.Bias),
                      static_cast<std::int32_t>(zone.StandardBias),
                      static_cast<std::int32_t>(zone.DaylightBias)});
}

CivilTime LocalNow() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  CivilTime time;
  std::memcpy(&time, &now, sizeof time);
  return time;
}

}  // namespace wfinfo
