// Transmissions of what a macro chooses.
#include "src/bridge/host_protocol.h"
#include "src/bridge/host_request_win.h"
#include "src/catalogue/declarations.h"

using namespace wfinfo;

namespace {

constexpr int kCodeSelectTransmit = 71;
constexpr int kTransmitCommand = 40024;

// Tells the frame what the next transmission concerns. Only the low 32 bits of its answer count.
bool SelectTransmit(long long value) {
  Slot block[] = {value};
  return static_cast<int>(SendFrameRequest(kCodeSelectTransmit, block)) != 0;
}

}  // namespace

long long TransmitCustom(long long value) noexcept {
  if (!SelectTransmit(value)) return 0;
  Slot block[] = {kTransmitCommand};
  return SendFrameRequest(kCodeRunCommand, block);
}

long long StartTransmitCustom(long long value) noexcept {
  return SelectTransmit(value) ? StartHostCommand(kTransmitCommand) : 0;
}
