// Really sending: a mail handed to a program that the user names.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace wrenfold {

// Runs `line` (see program_line.h; UTF-8) with `file` as its standard input, unless the line takes the file's
// name. Its output goes to our standard error. Exit code 0 means sent; returns why it is not, else nullopt.
std::optional<std::string> SendWithProgram(const std::string& line, const std::filesystem::path& file);

}  // namespace wrenfold
