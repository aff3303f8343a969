// Formats of dates: the first 16 bytes are the time record, as wild as it may be, the rest is the format. The
// text never passes its room, is counted alike whatever the room, never grows beyond five bytes for one, and
// holds the escapes of the format and no others.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/demand.h"
#include "src/dates/date_format.h"
#include "src/text/host_text.h"

namespace {

using namespace wfinfo;

std::size_t EscapesOf(std::string_view text) {
  std::size_t count = 0;
  for (; !text.empty(); text.remove_prefix(UnitLength(text))) count += StartsWithEscape(text) ? 1 : 0;
  return count;
}

// A 0x1A that begins no escape: what is printed behind it may make it one.
bool HasStrayEscapeByte(std::string_view text) {
  for (; !text.empty(); text.remove_prefix(UnitLength(text))) {
    if (text[0] == kEscapeByte && UnitLength(text) == 1) return true;
  }
  return false;
}

void CheckDefaultForm(const CivilTime& time) {
  for (const std::int64_t bias : {std::int64_t{-540}, std::int64_t{0}, std::int64_t{-4'294'967'296}}) {
    char form[kDefaultFormRoom];
    Demand(DefaultDateForm(time, bias, form) <= sizeof form);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CivilTime time = {};
  const std::size_t record = size < sizeof time ? size : sizeof time;
  if (record > 0) std::memcpy(&time, data, record);
  const std::string format(reinterpret_cast<const char*>(data) + record, size - record);
  const std::size_t length = FormatDateText(format, time, nullptr, 0);
  Demand(length <= 5 * format.size());
  std::string whole(length, '#');
  Demand(FormatDateText(format, time, whole.data(), length) == length);
  const std::size_t room = length / 2;
  std::string half(room + 1, '#');
  Demand(FormatDateText(format, time, half.data(), room) == length);
  Demand(half[room] == '#' && half.compare(0, room, whole, 0, room) == 0);
  if (!HasStrayEscapeByte(format)) Demand(EscapesOf(whole) == EscapesOf(format));
  CheckDefaultForm(time);
  return 0;
}
