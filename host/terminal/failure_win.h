// How the program tells its user what went wrong or should be known, and its exit codes.
#pragma once

#include <string>

namespace wrenfold {

inline constexpr int kFine = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;
inline constexpr int kInterrupted = 130;  // as a shell says of a program that Ctrl+C ended

// "wrenfold: REASON" on standard error; returns `code`. May be several lines.
int Fail(const std::string& reason, int code = kFailed);

// The same of what did not fail.
void Tell(const std::string& notice);

// The same of a line that others wrote: what could command the terminal is made visible.
void Complain(const std::string& line);

}  // namespace wrenfold
