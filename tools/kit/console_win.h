// What the kit says while it runs: lines, and one line of progress where a console shows it. And Ctrl+C.
#pragma once

#include <string>

namespace kit {

void Say(const std::string& line);
void Complain(const std::string& line);  // on standard error

// In place of the last such line; nothing where the output is no console.
void ShowProgress(const std::string& line);
void ClearProgress();

// From here on Ctrl+C, Ctrl+Break and the closing of the console stop the tests, not the kit.
void TakeCtrlC();
bool StopIsWanted();
// The report is written: the console may go.
void TellDone();

}  // namespace kit
