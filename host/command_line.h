// What the small host was asked to do.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace wrenfold {

struct Options {
  std::vector<std::string> mails;   // files and folders, UTF-8
  std::vector<std::string> macros;  // run in this order
  bool trace = false;
  bool prompt = false;
  bool help = false;
  bool version = false;
  std::optional<bool> english;  // unset: as the system
};

struct UsageError {
  std::string text;
};

// `arguments` in UTF-8, without the program's name.
std::variant<Options, UsageError> ParseCommandLine(std::span<const std::string> arguments);

// The text of --help.
extern const std::string_view kUsage;

}  // namespace wrenfold
