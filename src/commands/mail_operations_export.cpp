// The ways to view a mail's header.
#include "src/bridge/host_request_win.h"
#include "src/catalogue/declarations.h"

using namespace wfinfo;

namespace {

constexpr int kHeaderViewCommand = 40044;  // of header view 0; the others follow

}  // namespace

long long SwitchHeaderView(int view) noexcept {
  return SendHostCommand(
      static_cast<int>(static_cast<unsigned>(kHeaderViewCommand) + static_cast<unsigned>(view)));
}
