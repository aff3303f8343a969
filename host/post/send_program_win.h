// Really sending: a mail handed to a program that the user names.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "src/base/unique_win.h"

namespace wrenfold {

// Held while a mail of the outbox is handed on, so that no other host hands it on too; invalid when one does
// (ERROR_SHARING_VIOLATION). Goes with its holder; one that a crash of the system left is nobody's.
wfinfo::UniqueFile ClaimMail(const std::filesystem::path& file);

// Runs `line` (see program_line.h; UTF-8) with a copy of the mail as its standard input, unless the line
// takes the copy's name; `file` is held meanwhile, and a mail whose file another program has open is not
// sent. Its output goes to our standard error. Exit code 0 means sent; returns why it is not, else nullopt.
std::optional<std::string> SendWithProgram(const std::string& line, const std::filesystem::path& file,
                                           std::string_view mail);

}  // namespace wrenfold
