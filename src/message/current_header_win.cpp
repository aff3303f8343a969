#include "src/message/current_header_win.h"

#include "src/bridge/host_request_win.h"
#include "src/bridge/report_win.h"
#include "src/bridge/results_win.h"

namespace wfinfo {
namespace {

constexpr int kCodeCurrentHeader = 3;

// Room behind the length that the host told, for a value that grows until it is asked again.
constexpr Slot kSpareRoom = 256;

// Asks for occurrence `n` of a header of the current mail; the host writes it to `room` and answers its
// full length.
Slot AskCurrentHeader(const char* name, char* room, Slot size, int n) {
  Slot block[] = {ToSlot(name), ToSlot(room), size, n};
  const Slot length = SendHostRequest(kCodeCurrentHeader, block);
  room[size - 1] = '\0';
  return length;
}

// The same for a value that is too long for the short-result buffer.
const char* LongCurrentHeader(const char* name, Slot length, int n) {
  // Added unsigned: a length that no memory can hold stays one.
  char* const room = NewResultBlock(static_cast<std::size_t>(length) + static_cast<std::size_t>(kSpareRoom));
  if (room == nullptr) return kNoText;
  if (AskCurrentHeader(name, room, length + kSpareRoom, n) != length) {
    ReportError("CurrentHeader/CurrentHeader2 internal error ?");
  }
  return KeepLongResult(room);
}

}  // namespace

const char* CurrentHeaderValue(const char* name, int n) {
  g_resultText[0] = '\0';
  const Slot length = AskCurrentHeader(name, g_resultText, kShortResultSize, n);
  if (length < static_cast<Slot>(kShortResultSize - 1)) return g_resultText;
  return LongCurrentHeader(name, length, n);
}

}  // namespace wfinfo
