#include "host/terminal/progress.h"

namespace wrenfold {
namespace {

ProgressScreen* g_screen = nullptr;

std::string WithCommas(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
  return digits;
}

}  // namespace

void SetProgressScreen(ProgressScreen* screen) { g_screen = screen; }

Progress::Progress(std::string_view what, std::size_t of) : what_(what), of_(of) {
  if (g_screen != nullptr) began_ms_ = g_screen->NowMs();
}

Progress::~Progress() {
  if (shows_) g_screen->Show("");
}

void Progress::Step() {
  ++done_;
  if (g_screen == nullptr) return;
  const std::uint64_t now = g_screen->NowMs();
  if (now - began_ms_ < kSilentMs || (shows_ && now - shown_ms_ < kEveryMs)) return;
  shows_ = true;
  shown_ms_ = now;
  g_screen->Show(ProgressLine(what_, done_, of_, now - began_ms_));
}

std::string ProgressLine(std::string_view what, std::size_t done, std::size_t of, std::uint64_t elapsed_ms) {
  std::string line = std::string(what) + ": " + WithCommas(done);
  if (of > 0) line += " of " + WithCommas(of);
  if (elapsed_ms > 0) line += ", " + WithCommas(done * 1000 / elapsed_ms) + " a second";
  return line;
}

}  // namespace wrenfold
