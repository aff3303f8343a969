// The progress line on this program's terminal.
#pragma once

namespace wrenfold {

// Lets long work show its progress when standard error is a terminal.
void ShowProgressOnTerminal();

}  // namespace wrenfold
