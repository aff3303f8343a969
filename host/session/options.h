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
  // Of several the last counts.
  std::vector<std::string> accounts;     // file
  std::vector<std::string> templates;    // folder
  std::vector<std::string> books;        // address books, files; all count, the last is selected
  std::vector<std::string> drafts;       // folder
  std::vector<std::string> send_macros;  // run before a mail is sent
  bool strict_mails = false;             // a file in a folder that cannot be read is an error
  bool read_only = false;                // filing changes no file
  bool trace = false;
  bool prompt = false;
  bool help = false;
  bool version = false;
  std::optional<bool> english;  // unset: as the system

  // Simple MAPI: serving other programs, which is also what happens without any argument; and registration.
  bool serve = false;
  std::string home;                 // "" : the usual one
  std::optional<unsigned> slow_ms;  // these four: over the settings file
  std::optional<unsigned> modal_ms;
  bool deaf = false;
  bool die = false;
  bool register_mapi = false;
  bool unregister_mapi = false;
  bool yes = false;  // do not ask
};

struct UsageError {
  std::string text;
};

// `arguments` in UTF-8, without the program's name.
std::variant<Options, UsageError> ParseCommandLine(std::span<const std::string> arguments);

// The text of --help.
extern const std::string_view kUsage;

}  // namespace wrenfold
