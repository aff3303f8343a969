#include "host/terminal/progress_win.h"

#include <windows.h>

#include "host/terminal/progress.h"
#include "host/terminal/terminal_win.h"

namespace wrenfold {
namespace {

class TerminalScreen : public ProgressScreen {
 public:
  std::uint64_t NowMs() override { return GetTickCount64(); }
  void Show(std::string_view line) override { TheTerminal().ShowPassing(line); }
};

}  // namespace

void ShowProgressOnTerminal() {
  static TerminalScreen screen;
  if (TheTerminal().ShowsErrors()) SetProgressScreen(&screen);
}

}  // namespace wrenfold
