// How the program was started, as far as it behaves by that: from a console, by a double click, with files
// dropped on it, or by a program that wants no window.
#pragma once

namespace wrenfold {

struct StartFacts {
  bool has_arguments = false;
  bool has_options = false;             // one of them at least
  unsigned long console_processes = 0;  // that share the console; 0 without one
  bool is_hidden = false;               // the starter wants no window, as the library does
};

enum class StartManner {
  kPlain,
  kWindow,    // a double click: serves, and a window says so
  kStayOpen,  // dropped files: the console ends with the program, and so stays until a key is pressed
};

// Whoever gives options, or starts the program hidden, may not be there to press a key or close a window.
constexpr StartManner MannerOf(const StartFacts& facts) {
  if (facts.console_processes != 1 || facts.is_hidden || facts.has_options) return StartManner::kPlain;
  return facts.has_arguments ? StartManner::kStayOpen : StartManner::kWindow;
}

}  // namespace wrenfold
