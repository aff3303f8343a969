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
  std::vector<std::string> inboxes;      // these three: folder
  std::vector<std::string> outboxes;
  std::vector<std::string> imaps;
  std::vector<std::string> send_with;  // command line
  std::vector<std::string> answers;    // to questions, file
  bool strict_mails = false;           // a file in a folder that cannot be read is an error
  bool read_only = false;              // filing changes no file
  bool strict = false;                 // a call that fails stops the macro
  bool trace = false;
  std::vector<std::string> traced;      // exports and codes that the trace is limited to
  std::vector<std::string> trace_json;  // file
  bool prompt = false;
  bool help = false;
  bool version = false;
  std::optional<bool> english;  // unset: as the system

  // Simple MAPI: serving other programs, which is also what happens without any argument; and registration.
  bool serve = false;
  bool window = false;              // a window tells that it serves
  std::string home;                 // "" : the usual one
  std::optional<unsigned> slow_ms;  // these four: over the settings file
  std::optional<unsigned> modal_ms;
  bool deaf = false;
  bool die = false;
  bool register_mapi = false;
  bool unregister_mapi = false;
  bool stop = false;
  bool yes = false;  // do not ask
};

struct UsageError {
  std::string text;
};

// `arguments` in UTF-8, without the program's name. One that stands alone, as a file that was dropped on the
// program does, is a mail or a macro by its name; `is_folder` tells the folders, which are mails too. Mails
// alone are shown at the prompt.
std::variant<Options, UsageError> ParseCommandLine(
    std::span<const std::string> arguments,
    bool (*is_folder)(const std::string& name) = [](const std::string&) { return false; });

// The text of --help.
extern const std::string_view kUsage;

}  // namespace wrenfold
