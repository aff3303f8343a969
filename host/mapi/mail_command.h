// The command lines that other programs' mails arrive as.
//
//   line     = word *( " " argument )
//   word     = "sendnow" / "unsentmail" / "newmail"
//   argument = keyword "=" ( quoted / escaped )     keywords in any case: Macro Subject body To Cc Bcc attach
//              template sign
//   quoted   = DQUOTE as it stands DQUOTE    may hold blanks
//   escaped  = bytes, a separator as "%20"   ends at a blank
//   Attach   = path [ "*" name ]             the "*" between them stands as it is
//
//   sendnow Subject=Hello body=Dear%20Sir To=Jo%20%3Cjo@x%2Ejp%3E Attach=C%3A\a%2Etxt*b%2Etxt
//   newmail attach="C:\a b.txt" template=1 sign=1
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wrenfold {

enum class MailCommand { kSendNow, kStoreUnsent, kNewMail };

// Macro, subject and body are host text. Recipients and files are the calling program's own bytes: Shift-JIS
// or UTF-8 (Charsets::ForeignToUtf8).
struct CommandLineRequest {
  struct File {
    std::string path;
    std::string name;  // that the reader sees; "" : as the path ends
  };

  MailCommand command = MailCommand::kNewMail;
  std::string macro;
  std::optional<std::string> subject;
  std::optional<std::string> body;
  std::string to, cc, bcc;  // lists separated by ", "
  std::vector<File> files;
  bool use_template = false;
  bool sign = false;
};

// nullopt when the line does not begin with one of the three words. Arguments that are not known are passed
// by; a "%" without two hexadecimal digits stands for itself.
std::optional<CommandLineRequest> ParseMailCommand(std::string_view line);

// The word of a command.
std::string_view WordOf(MailCommand command);

}  // namespace wrenfold
