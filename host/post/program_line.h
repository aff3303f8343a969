// The command line of a program that the user names: taken apart, and put together for the system.
//
//   line = *( argument " " )     argument = bytes / DQUOTE bytes DQUOTE, which may hold blanks
//   "{file}" in an argument stands for the mail's file
//
//   sendmail -t
//   "C:\Program Files\curl\curl.exe" -T {file} smtp://mail.example.com
//
// No shell takes part: only blanks and double quotes mean something.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

struct ProgramLine {
  std::vector<std::string> arguments;  // the program is the first
  bool wants_file = false;             // some argument has "{file}"; else the mail comes on standard input
};

// nullopt when there is no program, or a quote does not close.
std::optional<ProgramLine> ParseProgramLine(std::string_view line);

// The line for CreateProcess: each argument in quotes where the C runtime needs them, "{file}" replaced by
// `file`. nullopt when a batch file would read something else out of the file's path than a name: the command
// interpreter looks at percent signs, exclamation marks and carets even between quotes.
std::optional<std::string> SystemLine(const ProgramLine& line, std::string_view file);

}  // namespace wrenfold
