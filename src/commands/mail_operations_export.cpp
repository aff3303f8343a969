// The ways to view a mail: its header, its log.
#include "src/bridge/host_request_win.h"
#include "src/catalogue/declarations.h"
#include "src/commands/keyword_parameter_win.h"
#include "src/commands/log_words.h"

using namespace wfinfo;

namespace {

constexpr int kHeaderViewCommand = 40044;  // of header view 0; the others follow

}  // namespace

long long SwitchHeaderView(int view) noexcept {
  return SendHostCommand(
      static_cast<int>(static_cast<unsigned>(kHeaderViewCommand) + static_cast<unsigned>(view)));
}

long long OpenLog(const char* kind) noexcept {
  return SendHostCommand(static_cast<int>(KeywordOr(kLogKinds, OptionalText(kind), kOpenLogCommand)));
}
