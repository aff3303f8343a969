// Questions to the user: answered by a script, by "--yes", or at the terminal.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/terminal/answers.h"

namespace wrenfold {

// Who answers: first the script; behind its end nobody is asked with `proposals_only`, else the terminal.
void SetAnswers(ScriptedAnswers script, bool proposals_only);

// While this is on, nobody is asked, the script included.
void SetQuiet(bool quiet);

// The answer; "" takes what the question proposes; nullopt at the end of the input. A question that is not
// asked at the terminal is told with its answer on standard error.
std::optional<std::string> AskUser(std::string_view question);

// Asks whether to do it: "y" and "yes" agree, and so does `proposals_only`; an empty line and the end of the
// input do not. The question shows on standard error.
bool UserAgrees(std::string_view question);

}  // namespace wrenfold
