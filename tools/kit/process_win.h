// A program run to its end, or to the end of its time.
#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "tools/kit/verdict.h"

namespace kit {

struct Start {
  std::wstring program;
  std::vector<std::wstring> arguments;
  std::wstring folder;
  std::string input;
  bool errors_apart = false;
  int seconds = 120;
};

// Whether the user wants the kit to stop; waited for beside each program.
void SetStopEvent(HANDLE event);

// Runs it with its output in files of `scratch`, whose names begin with `name`. The programs that it started end with
// it at the latest.
Ended Run(const Start& start, const std::wstring& scratch, const std::wstring& name);

// A command line that a program reads back as these words.
std::wstring CommandLine(const std::wstring& program, const std::vector<std::wstring>& arguments);

}  // namespace kit
