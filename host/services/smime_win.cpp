// What the S/MIME family asks for: the number by which a certificate is remembered, and texts as UTF-16.
#include <windows.h>

#include <cstdint>

#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "src/base/slot.h"

namespace wrenfold {
namespace {

constexpr Slot kLongestSerial = 4096;  // bytes; anything above is no serial number

// CRC-32 (the reversed polynomial 0xEDB88320) over the bytes of a serial number.
std::uint32_t Crc32(const std::uint8_t* bytes, std::size_t count) {
  std::uint32_t value = 0xFFFFFFFF;
  for (std::size_t i = 0; i < count; ++i) {
    value ^= bytes[i];
    for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320u : 0u);
  }
  return ~value;
}

// Address and count of the bytes.
Answer ChoiceNumber(Request& request) {
  const auto* const bytes = wfinfo::FromSlot<const std::uint8_t*>(request.Number(0));
  const Slot count = request.Number(1);
  if (count < 0 || count > kLongestSerial || IsBadReadPtr(bytes, static_cast<UINT_PTR>(count))) return {};
  return Request::AnswerNumber(Crc32(bytes, static_cast<std::size_t>(count)));
}

// The address of the text in UTF-16, good until the next such request.
Answer ToWide(Request& request) {
  static std::u16string wide;
  wide = SystemCharsets().FromHostText(request.Text(0));
  return Request::AnswerNumber(wfinfo::ToSlot(wide.c_str()));
}

constexpr Service kServices[] = {
    {216, "AI", ChoiceNumber, "CRC-32 of the serial number; 0 for more than 4096 bytes"},
    {313, "T", ToWide, "the text in UTF-16"},
};

}  // namespace

const ServiceFamily kSmimeServices = {kServices, {}};

}  // namespace wrenfold
